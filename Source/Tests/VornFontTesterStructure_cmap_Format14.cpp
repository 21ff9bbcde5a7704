// Format 14: what a variation selector does to a character. A default table lists characters that keep the glyph of the
// font's Unicode encoding, a non-default table characters that get another. format (0), a word; length (2);
// numVarSelectorRecords (6); records (10) of varSelector (0), 24 bits, defaultUVSOffset (3) and nonDefaultUVSOffset
// (7). A default table: a count and ranges of startUnicodeValue (0), 24 bits, and additionalCount (3), a byte; a
// non-default one: a count and mappings of unicodeValue (0), 24 bits, and glyphID (3).

#include "TableAccess/FTLimits.h"
#include "Tests/VornFontTesterStructure_cmap.h"

void VornFontTesterStructure_cmap::ValidCMap14(uint64_t iEncoding, Tova::ByteView iBytes) const {
  uint64_t tIndex = 0;
  const FTEncoding* tUnicode = GetTable()->GetFont()->FindFontUnicodeEncoding(tIndex);
  if (!tUnicode) {
    ReportResult(Severity::kFatalError,
                 "There is no encoding in the 'cmap' which can be used as the basis for a Unicode encoding");
    return;
  }
  const Tova::RecordArray tRecords(iBytes, 10, iBytes.U32(6), 11);
  uint64_t tSize = 11 * tRecords.Claimed() + 10;
  for (uint64_t r = 0; r < tRecords.Held() && MayCheck(1); ++r) {
    const Tova::ByteView tRecord = tRecords[r];
    const uint32_t tSelector = tRecord.U24(0);
    if (const uint32_t tOffset = tRecord.U32(3); tOffset != 0) {
      tSize += CheckDefaultTable(iEncoding, r, tSelector, iBytes.From(tOffset), *tUnicode);
    }
    if (const uint32_t tOffset = tRecord.U32(7); tOffset != 0) {
      tSize += CheckNonDefaultTable(iEncoding, r, tSelector, iBytes.From(tOffset));
    }
  }
  CheckStatedSize(iEncoding, tSize, iBytes.U32(2),
                  "Encoding %d (format 14), calculated size (%d) is less than the size stated in the header (%d)",
                  "Encoding %d (format 14), calculated size (%d) is greater than the size stated in the header (%d)");
}

uint64_t VornFontTesterStructure_cmap::CheckDefaultTable(uint64_t iEncoding, uint64_t iRecord, uint32_t iSelector,
                                                         Tova::ByteView iTable, const FTEncoding& iUnicode) const {
  const Tova::RecordArray tRanges(iTable, 4, iTable.U32(0), 4);
  for (uint64_t q = 0; q < tRanges.Held(); ++q) {
    const uint32_t tFirst = tRanges[q].U24(0);
    const uint32_t tFurther = tRanges[q].U8(3);
    if (!MayCheck(tFurther + 1)) break;
    GetTable()->GetFont()->SpendWork(kFTStepsOfLookUp * (tFurther + 1));
    for (uint32_t tCharacter = tFirst; tCharacter <= tFirst + tFurther; ++tCharacter) {
      const uint32_t tGlyph = iUnicode.CharacterToGlyph(tCharacter);
      if (tGlyph == 0xFFFF) {
        ReportResult(Severity::kTechnicalError,
                     "Encoding %d (format 14), table %d, default range %d, variation selector U+%04X, character U+%04X "
                     "mapped to invalid glyph (-1).",
                     {iEncoding, iRecord, q, iSelector, tCharacter});
        continue;
      }
      if (tGlyph == 0) {
        ReportResult(Severity::kTechnicalError,
                     "Encoding %d (format 14), table %d, default range %d, variation selector U+%04X, character U+%04X "
                     "mapped to glyph 0.",
                     {iEncoding, iRecord, q, iSelector, tCharacter});
      }
      if (tGlyph >= GlyphCount()) {
        ReportResult(Severity::kMajorError,
                     "Encoding %d (format 14), table %d, default range %d, variation selector U+%04X, character U+%04X "
                     "mapped to nonexistent glyph (%d), glyph count == %d.",
                     {iEncoding, iRecord, q, iSelector, tCharacter, tGlyph, GlyphCount()});
      }
    }
  }
  return 4 * tRanges.Claimed() + 4;
}

uint64_t VornFontTesterStructure_cmap::CheckNonDefaultTable(uint64_t iEncoding, uint64_t iRecord, uint32_t iSelector,
                                                            Tova::ByteView iTable) const {
  const Tova::RecordArray tMappings(iTable, 4, iTable.U32(0), 5);
  for (uint64_t q = 0; q < tMappings.Held() && MayCheck(1); ++q) {
    const uint32_t tCharacter = tMappings[q].U24(0);
    const uint32_t tGlyph = tMappings[q].U16(3);
    if (tGlyph == 0) {
      ReportResult(Severity::kMajorError,
                   "Encoding %d (format 14), table %d, nondefault mapping %d, variation selector U+%04X, character "
                   "U+%04X mapped to glyph 0.",
                   {iEncoding, iRecord, q, iSelector, tCharacter});
    }
    if (tGlyph == 0xFFFF) {
      ReportResult(Severity::kMajorError,
                   "Encoding %d (format 14), table %d, nondefault mapping %d, variation selector U+%04X, character "
                   "U+%04X mapped to invalid glyph (-1).",
                   {iEncoding, iRecord, q, iSelector, tCharacter});
    }
    if (tGlyph >= GlyphCount()) {
      ReportResult(Severity::kMajorError,
                   "Encoding %d (format 14), table %d, nondefault mapping %d, variation selector U+%04X, character "
                   "U+%04X mapped to nonexistent glyph (%d), glyph count == %d.",
                   {iEncoding, iRecord, q, iSelector, tCharacter, tGlyph, GlyphCount()});
    }
  }
  return 5 * tMappings.Claimed() + 4;
}
