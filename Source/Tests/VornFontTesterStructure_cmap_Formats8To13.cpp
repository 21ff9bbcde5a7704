// The formats of 32-bit codes.

#include "Tests/VornFontTesterStructure_cmap.h"

bool VornFontTesterStructure_cmap::ValidCMap8(uint64_t iEncoding, Tova::ByteView iBytes) const {
  const uint64_t tFatalBefore = _fFatalFindings;
  const Tova::RecordArray tGroups(iBytes, 8208, iBytes.U32(8204), 12);
  const uint64_t tLength = iBytes.U32(4);
  const uint64_t tSize = 12 * tGroups.Claimed() + 8212;  // 4 more than the header takes
  if (tSize < tLength) {
    ReportResult(kVornFontTestSeverityMinorError,
                 "Encoding %d (format 8.0), calculated size (%d) is less than the size stated in the header (%d)",
                 {iEncoding, tSize, tLength});
  } else if (tSize > tLength) {
    ReportResult(kVornFontTestSeverityFatalError,
                 "Encoding %d (format 8.0), calculated size (%d) is greater than the size stated in the header (%d)",
                 {iEncoding, tSize, tLength});
  }
  PrepareChecks(tGroups.Held());
  for (uint64_t g = 0; g < tGroups.Held(); ++g) {
    const uint32_t tFirst = tGroups[g].U32(0);
    const uint32_t tLast = tGroups[g].U32(4);
    const uint32_t tGlyph = tGroups[g].U32(8);
    if (tFirst > tLast) {
      ReportResult(kVornFontTestSeverityMinorError,
                   "Encoding %d (format 8.0), group %d, invalid character range (0x%04X-0x%04X)",
                   {iEncoding, g, tFirst, tLast});
    } else if (const uint64_t tLastGlyph = uint64_t{tGlyph} + (tLast - tFirst); tLastGlyph >= GlyphCount()) {
      ReportResult(kVornFontTestSeverityMinorError, "Encoding %d (format 8.0), group %d, invalid glyph range (%d-%d)",
                   {iEncoding, g, tGlyph, tLastGlyph});
    }
  }
  return _fFatalFindings == tFatalBefore;
}

bool VornFontTesterStructure_cmap::ValidCMap10(uint64_t iEncoding, Tova::ByteView iBytes) const {
  const uint64_t tFatalBefore = _fFatalFindings;
  const Tova::RecordArray tGlyphs(iBytes, 20, iBytes.U32(16), 2);
  const uint64_t tLength = iBytes.U32(4);
  const uint64_t tSize = 2 * tGlyphs.Claimed() + 14;  // 6 fewer than the header takes
  if (tSize < tLength) {
    ReportResult(kVornFontTestSeverityMinorError,
                 "Encoding %d (format 10.0), calculated size (%d) is less than the size stated in the header (%d)",
                 {iEncoding, tSize, tLength});
  } else if (tSize > tLength) {
    ReportResult(kVornFontTestSeverityFatalError,
                 "Encoding %d (format 10.0), calculated size (%d) is greater than the size stated in the header (%d)",
                 {iEncoding, tSize, tLength});
  }
  PrepareChecks(tGlyphs.Held());
  for (uint64_t j = 0; j < tGlyphs.Held(); ++j) {
    const uint16_t tGlyph = tGlyphs[j].U16(0);
    if (tGlyph >= GlyphCount()) {
      ReportResult(kVornFontTestSeverityFatalError,
                   "Encoding %d (format 10.0), character 0x%04X is mapped to illegal glyph %d (maximum glyph ID is %d)",
                   {iEncoding, j + iBytes.LittleU32(12), tGlyph, GlyphCount()});
    }
  }
  return _fFatalFindings == tFatalBefore;
}

bool VornFontTesterStructure_cmap::ValidCMap12(uint64_t iEncoding, Tova::ByteView iBytes) const {
  const uint64_t tFatalBefore = _fFatalFindings;
  const Tova::RecordArray tGroups(iBytes, 16, iBytes.U32(12), 12);
  const uint64_t tLength = iBytes.U32(4);
  const uint64_t tSize = 12 * tGroups.Claimed() + 16;
  if (tSize < tLength) {
    ReportResult(kVornFontTestSeverityMinorError,
                 "Encoding %d (format 12.0), calculated size (%d) is less than the size stated in the header (%d)",
                 {iEncoding, tSize, tLength});
  } else if (tSize > tLength) {
    ReportResult(kVornFontTestSeverityFatalError,
                 "Encoding %d (format 12.0), calculated size (%d) is greater than the size stated in the header (%d)",
                 {iEncoding, tSize, tLength});
  }
  PrepareChecks(tGroups.Held());
  for (uint64_t g = 0; g < tGroups.Held(); ++g) {
    const uint32_t tFirst = tGroups[g].U32(0);
    const uint32_t tLast = tGroups[g].U32(4);
    const uint32_t tGlyph = tGroups[g].U32(8);
    if (tFirst > tLast) {
      ReportResult(kVornFontTestSeverityMinorError,
                   "Encoding %d (format 12.0), group %d, invalid character range (0x%04X-0x%04X)",
                   {iEncoding, g, tFirst, tLast});
    } else if (const uint64_t tLastGlyph = uint64_t{tGlyph} + (tLast - tFirst); tLastGlyph >= GlyphCount()) {
      ReportResult(kVornFontTestSeverityMinorError, "Encoding %d (format 12.0), group %d, invalid glyph range (%d-%d)",
                   {iEncoding, g, tGlyph, tLastGlyph});
    }
  }
  return _fFatalFindings == tFatalBefore;
}

bool VornFontTesterStructure_cmap::ValidCMap13(uint64_t iEncoding, Tova::ByteView iBytes) const {
  const uint64_t tFatalBefore = _fFatalFindings;
  const Tova::RecordArray tGroups(iBytes, 16, iBytes.U32(12), 12);
  const uint64_t tLength = iBytes.U32(4);
  const uint64_t tSize = 12 * tGroups.Claimed() + 16;
  if (tSize < tLength) {
    ReportResult(kVornFontTestSeverityMinorError,
                 "Encoding %d (format 13.0), calculated size (%d) is less than the size stated in the header (%d)",
                 {iEncoding, tSize, tLength});
  } else if (tSize > tLength) {
    ReportResult(kVornFontTestSeverityFatalError,
                 "Encoding %d (format 13.0), calculated size (%d) is greater than the size stated in the header (%d)",
                 {iEncoding, tSize, tLength});
  }
  PrepareChecks(tGroups.Held());
  for (uint64_t g = 0; g < tGroups.Held(); ++g) {
    const uint32_t tFirst = tGroups[g].U32(0);
    const uint32_t tLast = tGroups[g].U32(4);
    const uint32_t tGlyph = tGroups[g].U32(8);
    if (tFirst > tLast) {
      ReportResult(kVornFontTestSeverityMinorError,
                   "Encoding %d (format 13.0), group %d, invalid character range (0x%04X-0x%04X)",
                   {iEncoding, g, tFirst, tLast});
    } else if (tGlyph >= GlyphCount()) {
      ReportResult(kVornFontTestSeverityMinorError, "Encoding %d (format 13.0), group %d, invalid glyph index (%d)",
                   {iEncoding, g, tGlyph});
    }
  }
  return _fFatalFindings == tFatalBefore;
}
