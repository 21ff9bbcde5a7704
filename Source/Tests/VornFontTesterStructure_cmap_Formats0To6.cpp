// The formats of 8- and 16-bit codes but format 4. Each begins with format (0), length (2) and language (4), words;
// format 0 goes on with glyphIdArray (6), 256 bytes; format 2 with subHeaderKeys (6), 256 words, and subHeaders (518),
// 8 bytes each; format 6 with firstCode (6), entryCount (8) and glyphIdArray (10).

#include "Tests/VornFontTesterStructure_cmap.h"

void VornFontTesterStructure_cmap::ValidCMap0(uint64_t iEncoding, Tova::ByteView iBytes) const {
  if (const uint32_t tLength = iBytes.U16(2); tLength != 262) {
    ReportResult(Severity::kFatalError, "Encoding %d (format 0), bad length: %d", {iEncoding, tLength});
  }
  if (const uint32_t tFormat = iBytes.U16(0); tFormat != 0) {
    ReportResult(Severity::kTechnicalError, "Encoding %d (format 0), bad format: %d", {iEncoding, tFormat});
  }
  for (uint32_t tCode = 0; tCode < 256; ++tCode) {
    const uint32_t tGlyph = iBytes.U8(6 + tCode);
    if (tGlyph >= GlyphCount()) {
      ReportResult(Severity::kFatalError, "Encoding %d (format 0), glyph index (%d) out of range (0-%d)",
                   {iEncoding, tGlyph, GlyphCount()});
    }
  }
}

void VornFontTesterStructure_cmap::ValidCMap2(uint64_t iEncoding, Tova::ByteView iBytes) const {
  const std::bitset<256> tReferenced = CheckSubheaderKeys(iEncoding, iBytes);
  uint64_t tLast = 255;
  while (tLast > 0 && !tReferenced[tLast]) --tLast;
  const uint64_t tSubheadersEnd = 526 + 8 * tLast;
  const uint64_t tLength = iBytes.U16(2);
  if (tSubheadersEnd >= tLength) {
    ReportResult(Severity::kFatalError, "Encoding %d (format 2), length incorrect start == %d, end == %d",
                 {iEncoding, tSubheadersEnd, tLength});
  }
  GlyphRange tRange;  // of the last subheader that a key leads to
  for (uint64_t k = 0; k <= tLast; ++k) {
    if (tReferenced[k]) {
      tRange = CheckSubheader(iEncoding, iBytes, k, tSubheadersEnd);
    } else {
      CheckUnreferencedSubheader(iEncoding, iBytes, k, tRange);
    }
  }
}

std::bitset<256> VornFontTesterStructure_cmap::CheckSubheaderKeys(uint64_t iEncoding, Tova::ByteView iBytes) const {
  std::bitset<256> tReferenced;
  for (uint64_t tKey = 0; tKey < 256; ++tKey) {
    const uint32_t tValue = iBytes.U16(6 + 2 * tKey);
    if (tValue > 2040) {
      ReportResult(Severity::kMajorError, "Encoding %d (format 2), subheader key %ld has the suspicious value %hu",
                   {iEncoding, tKey, tValue});
    } else if (tValue % 8 != 0) {
      ReportResult(Severity::kFatalError,
                   "Encoding %d (format 2), subheader key %ld, value, 0x%02X, not a multiple of 8",
                   {iEncoding, tKey, tValue});
    } else {
      tReferenced.set(tValue / 8);
    }
  }
  return tReferenced;
}

VornFontTesterStructure_cmap::GlyphRange VornFontTesterStructure_cmap::CheckSubheader(uint64_t iEncoding,
                                                                                      Tova::ByteView iBytes,
                                                                                      uint64_t iSubheader,
                                                                                      uint64_t iSubheadersEnd) const {
  const uint64_t tAt = 518 + 8 * iSubheader;
  const uint32_t tOffset = iBytes.U16(tAt + 6);
  const GlyphRange tRange{tAt + 6 + tOffset, iBytes.U16(tAt + 2), iBytes.U16(tAt + 4)};
  if (tRange.count == 0 || tRange.count > 256) {
    ReportResult(Severity::kMinorError, "Encoding %d (format 2), subheader %ld suspicious entry count %d",
                 {iEncoding, iSubheader, tRange.count});
  }
  if (tRange.position < iSubheadersEnd) {
    ReportResult(Severity::kFatalError, "Encoding %d (format 2), subheader %ld idRangeOffset 0x%04X is too small",
                 {iEncoding, iSubheader, tOffset});
  } else if (tRange.position + 2 * tRange.count > iBytes.U16(2)) {
    ReportResult(Severity::kFatalError, "Encoding %d (format 2), subheader %ld idRangeOffset 0x%04X is too big",
                 {iEncoding, iSubheader, tOffset});
  }
  return tRange;
}

/// A subheader that no key leads to is judged by the glyphs of the range before it.
void VornFontTesterStructure_cmap::CheckUnreferencedSubheader(uint64_t iEncoding, Tova::ByteView iBytes,
                                                              uint64_t iSubheader, const GlyphRange& iRange) const {
  if (!MayCheck(iRange.count)) return;
  for (uint64_t j = 0; j < iRange.count; ++j) {
    const uint64_t tAt = iRange.position + 2 * j;
    if (iBytes.U16(tAt) + iRange.delta >= GlyphCount()) {
      ReportResult(Severity::kFatalError, "Encoding %d (format 2), subheader %ld produces out of range glyph index %d",
                   {iEncoding, iSubheader, iBytes.LittleU16(tAt) + iRange.delta});
    } else {
      ReportResult(Severity::kMinorError, "Encoding %d (format 2), subheader %ld never referenced",
                   {iEncoding, iSubheader});
    }
  }
}

void VornFontTesterStructure_cmap::ValidCMap6(uint64_t iEncoding, Tova::ByteView iBytes, bool iSingleByte) const {
  const uint32_t tFirst = iBytes.U16(6);
  const uint32_t tCount = iBytes.U16(8);
  if (iBytes.U16(2) == 0) {
    ReportResult(Severity::kFatalError, "Encoding %d (format 6), negative length: %d", {iEncoding, 0});
  }
  if (tCount == 0) {
    ReportResult(Severity::kMajorError, "Encoding %d (format 6), entryCount is 0", {iEncoding});
  }
  if (iSingleByte && tFirst > 255) {
    ReportResult(Severity::kFatalError, "Encoding %d (format 6), bad first code (0x%02X)", {iEncoding, tFirst});
  }
  if (iSingleByte && tCount > 256) {
    ReportResult(Severity::kTechnicalError, "Encoding %d (format 6), bad entry count (%d) ", {iEncoding, tCount});
  }
  if (tCount > 0 && iBytes.U16(10) == 0) {
    ReportResult(Severity::kTechnicalError, "Encoding %d (format 6), subtable begins with glyph 0 (wasted space)",
                 {iEncoding});
  }
  if (tCount > 0 && iBytes.U16(10 + 2 * (tCount - 1)) == 0) {
    ReportResult(Severity::kTechnicalError, "Encoding %d (format 6), subtable ends with glyph 0 (wasted space)",
                 {iEncoding});
  }
  for (uint32_t j = 0; j < tCount && MayCheck(1); ++j) {
    const uint64_t tAt = 10 + 2 * uint64_t{j};
    if (iBytes.U16(tAt) >= GlyphCount()) {
      ReportResult(Severity::kFatalError, "Encoding %d (format 6), glyph index %d, glyph ID (%d) out of range (0-%d)",
                   {iEncoding, j, iBytes.LittleU16(tAt), GlyphCount()});
    }
  }
}
