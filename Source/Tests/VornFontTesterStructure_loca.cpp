#include "Tests/VornFontTesterStructure_loca.h"

#include "TableAccess/FTLimits.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TableAccess/TableClasses/FTFontTable_glyf.h"
#include "TableAccess/TableClasses/FTFontTable_head.h"

void VornFontTesterStructure_loca::CheckTable(const FTFontTable_loca& iTable) const {
  const FTFont_sfnt& tFont = SfntFont();
  const uint16_t tGlyphCount = tFont.CountFontGlyphs();
  const auto* tTable_glyf = tFont.FindTable<FTFontTable_glyf>();
  const auto* tTable_head = tFont.FindTable<FTFontTable_head>();
  if (iTable.GetSize() == 0) {
    ReportResult(Severity::kFatalError, "Required table ('loca') is missing!");
    return;
  }
  if (!tTable_glyf) {
    ReportResult(Severity::kFatalError, "Required table ('glyf') is missing!");
    return;
  }
  if (!tTable_head) {
    ReportResult(Severity::kFatalError, "Required table ('head') is missing!");
    return;
  }
  const uint64_t tEntries = uint64_t{tGlyphCount} + 1;
  const uint64_t tExpected = tTable_head->FontUsesLongGlyphOffsets() ? 4 * tEntries : (2 * tEntries + 3) / 4 * 4;
  CheckSize(iTable.GetSize(), tExpected);
  CheckOffsets(iTable, tGlyphCount, tTable_glyf->GetSize());
}

void VornFontTesterStructure_loca::CheckSize(uint64_t iSize, uint64_t iExpected) const {
  // quirk: loca-odd-length. The number given is the size that the table should have, and only an odd size is reported.
  if (iSize % 2 != 0) {
    ReportResult(Severity::kMinorError, "The length of the table is %d bytes; it should be a multiple of four.",
                 {iExpected});
  }
  if (iSize > iExpected) {
    ReportResult(Severity::kMinorError, "The length of the table is %d bytes; it should be %d.", {iSize, iExpected});
  } else if (iExpected > (iSize + 3) / 4 * 4) {  // the padding may be missing
    ReportResult(Severity::kFatalError, "The length of the table is %d bytes; it should be %d.", {iSize, iExpected});
  }
}

void VornFontTesterStructure_loca::CheckOffsets(const FTFontTable_loca& iTable, uint16_t iGlyphCount,
                                                uint64_t iGlyfSize) const {
  iTable.GetFont()->SpendWork(kFTStepsOfGlyph * iGlyphCount);
  // quirk: loca-ends. An offset is judged as the start of its glyph; the one that ends the last glyph is not looked at.
  for (uint32_t tGlyph = 0; tGlyph < iGlyphCount; ++tGlyph) {
    const At tHere(*this, {.glyph = tGlyph});
    const uint64_t tOffset = iTable.GetGlyphOffset(static_cast<uint16_t>(tGlyph));
    if (tGlyph + 1 < iGlyphCount) {
      const uint64_t tNextOffset = iTable.GetGlyphOffset(static_cast<uint16_t>(tGlyph + 1));
      if (tOffset > tNextOffset) {
        ReportResult(Severity::kFatalError,
                     "Entries %d and %d are out of order; their 'glyf' table offsets are 0x%08X and 0x%08X, "
                     "respectively.",
                     {tGlyph, tGlyph + 1, tOffset, tNextOffset});
      }
    }
    if (tOffset > iGlyfSize) {
      ReportResult(Severity::kFatalError,
                   "Entry %d has a 'glyf' table offset of %d, which is greater than the length of the 'glyf' table "
                   "(%d bytes).",
                   {tGlyph, tOffset, iGlyfSize});
    }
  }
}
