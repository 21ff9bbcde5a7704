// The formats of 32-bit codes. Each begins with format (0) and a zero word, length (4) and language (8), double words;
// format 8 goes on with is32 (12), 8192 bytes, numGroups (8204) and groups (8208); format 10 with startCharCode (12),
// numChars (16) and glyphs (20); 12 and 13 with numGroups (12) and groups (16). A group: startCharCode (0), endCharCode
// (4), startGlyphID (8).

#include "Tests/VornFontTesterStructure_cmap.h"

void VornFontTesterStructure_cmap::CheckStatedSize(uint64_t iEncoding, uint64_t iSize, uint64_t iStated,
                                                   const char* iLess, const char* iGreater) const {
  if (iSize < iStated) ReportResult(Severity::kMinorError, iLess, {iEncoding, iSize, iStated});
  if (iSize > iStated) ReportResult(Severity::kFatalError, iGreater, {iEncoding, iSize, iStated});
}

void VornFontTesterStructure_cmap::CheckGroups(uint64_t iEncoding, const Tova::RecordArray& iGroups,
                                               const char* iBadCharacters, const char* iBadGlyphs) const {
  if (!MayCheck(iGroups.Held())) return;
  for (uint64_t g = 0; g < iGroups.Held(); ++g) {
    const uint32_t tFirst = iGroups[g].U32(0);
    const uint32_t tLast = iGroups[g].U32(4);
    const uint32_t tGlyph = iGroups[g].U32(8);
    if (tFirst > tLast) {
      ReportResult(Severity::kMinorError, iBadCharacters, {iEncoding, g, tFirst, tLast});
    } else if (const uint64_t tLastGlyph = uint64_t{tGlyph} + (tLast - tFirst); tLastGlyph >= GlyphCount()) {
      ReportResult(Severity::kMinorError, iBadGlyphs, {iEncoding, g, tGlyph, tLastGlyph});
    }
  }
}

void VornFontTesterStructure_cmap::ValidCMap8(uint64_t iEncoding, Tova::ByteView iBytes) const {
  const Tova::RecordArray tGroups(iBytes, 8208, iBytes.U32(8204), 12);
  CheckStatedSize(iEncoding, 12 * tGroups.Claimed() + 8212,
                  iBytes.U32(4),  // quirk: cmap8-size. 4 more than the header takes
                  "Encoding %d (format 8.0), calculated size (%d) is less than the size stated in the header (%d)",
                  "Encoding %d (format 8.0), calculated size (%d) is greater than the size stated in the header (%d)");
  CheckGroups(iEncoding, tGroups, "Encoding %d (format 8.0), group %d, invalid character range (0x%04X-0x%04X)",
              "Encoding %d (format 8.0), group %d, invalid glyph range (%d-%d)");
}

void VornFontTesterStructure_cmap::ValidCMap10(uint64_t iEncoding, Tova::ByteView iBytes) const {
  const Tova::RecordArray tGlyphs(iBytes, 20, iBytes.U32(16), 2);
  CheckStatedSize(iEncoding, 2 * tGlyphs.Claimed() + 14,
                  iBytes.U32(4),  // quirk: cmap10-size. 6 fewer than the header takes
                  "Encoding %d (format 10.0), calculated size (%d) is less than the size stated in the header (%d)",
                  "Encoding %d (format 10.0), calculated size (%d) is greater than the size stated in the header (%d)");
  for (uint64_t j = 0; j < tGlyphs.Held() && MayCheck(1); ++j) {
    const uint16_t tGlyph = tGlyphs[j].U16(0);
    if (tGlyph >= GlyphCount()) {
      ReportResult(Severity::kFatalError,
                   "Encoding %d (format 10.0), character 0x%04X is mapped to illegal glyph %d (maximum glyph ID is %d)",
                   {iEncoding, j + iBytes.LittleU32(12), tGlyph, GlyphCount()});  // quirk: cmap-unswapped
    }
  }
}

void VornFontTesterStructure_cmap::ValidCMap12(uint64_t iEncoding, Tova::ByteView iBytes) const {
  const Tova::RecordArray tGroups(iBytes, 16, iBytes.U32(12), 12);
  CheckStatedSize(iEncoding, 12 * tGroups.Claimed() + 16, iBytes.U32(4),
                  "Encoding %d (format 12.0), calculated size (%d) is less than the size stated in the header (%d)",
                  "Encoding %d (format 12.0), calculated size (%d) is greater than the size stated in the header (%d)");
  CheckGroups(iEncoding, tGroups, "Encoding %d (format 12.0), group %d, invalid character range (0x%04X-0x%04X)",
              "Encoding %d (format 12.0), group %d, invalid glyph range (%d-%d)");
}

void VornFontTesterStructure_cmap::ValidCMap13(uint64_t iEncoding, Tova::ByteView iBytes) const {
  const Tova::RecordArray tGroups(iBytes, 16, iBytes.U32(12), 12);
  CheckStatedSize(iEncoding, 12 * tGroups.Claimed() + 16, iBytes.U32(4),
                  "Encoding %d (format 13.0), calculated size (%d) is less than the size stated in the header (%d)",
                  "Encoding %d (format 13.0), calculated size (%d) is greater than the size stated in the header (%d)");
  for (uint64_t g = 0; g < tGroups.Held() && MayCheck(1); ++g) {
    const uint32_t tFirst = tGroups[g].U32(0);
    const uint32_t tLast = tGroups[g].U32(4);
    const uint32_t tGlyph = tGroups[g].U32(8);
    if (tFirst > tLast) {
      ReportResult(Severity::kMinorError,
                   "Encoding %d (format 13.0), group %d, invalid character range (0x%04X-0x%04X)",
                   {iEncoding, g, tFirst, tLast});
    } else if (tGlyph >= GlyphCount()) {
      ReportResult(Severity::kMinorError, "Encoding %d (format 13.0), group %d, invalid glyph index (%d)",
                   {iEncoding, g, tGlyph});
    }
  }
}
