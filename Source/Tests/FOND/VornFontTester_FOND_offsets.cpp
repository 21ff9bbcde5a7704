#include "Tests/FOND/VornFontTester_FOND_offsets.h"

namespace {

constexpr int64_t kStyleMappingHeaderSize = 58;

/// Whether the style mapping table lies in the resource, and so does the glyph encoding it names.
bool IsValidStyleMapping(const FTFont_FOND& iFamily, uint32_t iOffset) {
  const int64_t tStyle = static_cast<int32_t>(iOffset);
  if (tStyle < 0 || tStyle > iFamily.Length()) return false;
  const int32_t tGlyphEncoding = iFamily.S32At(tStyle + 2);
  if (tStyle == 0 || tGlyphEncoding == 0) return true;
  return tStyle + tGlyphEncoding >= 0 && tStyle + tGlyphEncoding <= iFamily.Length();
}

}  // namespace

void VornFontTester_FOND_offsets::CheckOffsets_FOND(const FTFont_FOND& iFamily) const {
  const uint32_t tFATEnd = 54 + 6 * (uint32_t{iFamily.U16At(52)} + 1);
  CheckStyleMapping(iFamily, tFATEnd);
  CheckKerningAndWidths(iFamily, tFATEnd);
  CheckOffsetTable(iFamily, tFATEnd);
}

void VornFontTester_FOND_offsets::CheckStyleMapping(const FTFont_FOND& iFamily, uint32_t iFATEnd) const {
  const uint32_t tStyle = StyleMappingOffset(iFamily);
  if (tStyle == 0) return;
  const At tHere(*this, {.offset = tStyle});
  const int64_t tHeaderEnd = tStyle + kStyleMappingHeaderSize;
  if (tStyle >= iFamily.Length()) {
    ReportResult(Severity::kMajorError,
                 "The style mapping table offset (0x%08X) is beyond the end of the FOND (0x%08X)",
                 {tStyle, iFamily.Length()});
  } else if (tHeaderEnd >= iFamily.Length()) {
    ReportResult(Severity::kMajorError, "The style mapping table header extends %d bytes beyond the end of the FOND",
                 {tHeaderEnd - iFamily.Length()});
  } else if (!IsValidStyleMapping(iFamily, tStyle)) {
    ReportResult(Severity::kMinorError, "The style mapping table is invalid");
  }
  if (iFATEnd > tStyle) {
    ReportResult(Severity::kMinorError,
                 "The style mapping table offset (0x%08X) is before the end of the FOND's FAT (0x%08X)",
                 {tStyle, iFATEnd});
  }
}

void VornFontTester_FOND_offsets::CheckKerningAndWidths(const FTFont_FOND& iFamily, uint32_t iFATEnd) const {
  if (const uint32_t tKerning = KerningOffset(iFamily); tKerning != 0) {
    const At tHere(*this, {.offset = tKerning});
    if (tKerning >= iFamily.Length()) {
      ReportResult(Severity::kMajorError, "The kerning table offset (0x%08X) is beyond the end of the FOND (0x%08X)",
                   {tKerning, iFamily.Length()});
    }
    if (iFATEnd > tKerning) {
      ReportResult(Severity::kMinorError,
                   "The kerning table offset (0x%08X) is before the end of the FOND's FAT (0x%08X)",
                   {tKerning, iFATEnd});
    }
  }
  if (const uint32_t tWidths = WidthOffset(iFamily); tWidths != 0) {
    const At tHere(*this, {.offset = tWidths});
    if (tWidths >= iFamily.Length()) {
      ReportResult(Severity::kMajorError, "The width table offset (0x%08X) is beyond the end of the FOND (0x%08X)",
                   {tWidths, iFamily.Length()});
    }
    if (iFATEnd > tWidths) {
      ReportResult(Severity::kMinorError,
                   "The width table offset (0x%08X) is before the end of the FOND's FAT (0x%08X)", {tWidths, iFATEnd});
    }
  }
}

void VornFontTester_FOND_offsets::CheckOffsetTable(const FTFont_FOND& iFamily, int64_t iTable) const {
  const int64_t tEnd = iFamily.Length();
  const bool tOtherTableIsThere =
      WidthOffset(iFamily) == iTable || KerningOffset(iFamily) == iTable || StyleMappingOffset(iFamily) == iTable;
  if (tEnd <= iTable || tOtherTableIsThere) {
    ReportResult(Severity::kInformation, "The FOND has no offset table.");
    return;
  }
  if (tEnd <= iTable + 2) {
    ReportResult(Severity::kMajorError, "Offset table entry count extends beyond the end of the FOND");
    return;
  }
  const int16_t tCount = Tova::WrapSigned16(iFamily.U16At(iTable) + 1);
  const int64_t tTableEnd = iTable + 2 + 4 * int64_t{tCount};
  if (tEnd < tTableEnd) {
    ReportResult(Severity::kMajorError,
                 "The offset table ends at 0x%08X, which is beyond the end of the table (0x%08X)", {tTableEnd, tEnd});
    return;
  }
  for (int i = 0; i < tCount; ++i) {
    const int64_t tAt = iTable + 2 + 4 * int64_t{i};
    const uint32_t tOffset = iFamily.U32At(tAt);
    if (tOffset < tEnd) continue;
    const At tHere(*this, {.offset = tAt});
    ReportResult(Severity::kMajorError, "Offset %d (0x%08X) is beyond the end of the table (0x%08X)",
                 {i, tOffset, tEnd});
  }
}
