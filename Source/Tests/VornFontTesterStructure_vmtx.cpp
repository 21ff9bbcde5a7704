#include "Tests/VornFontTesterStructure_vmtx.h"

#include "TableAccess/FontClasses/FTFont_sfnt.h"

Tova::Array TestUsability_vmtx(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions) {
  return RunTester<VornFontTesterStructure_vmtx, FTFont_sfnt>(iFont, iMessages, iOptions);
}

bool VornFontTesterStructure_vmtx::ExecuteTest() const {
  const auto* tFont = dynamic_cast<const FTFont_sfnt*>(GetFont());
  if (!tFont || !tFont->HasTaggedTable(FTFontTable_vmtx::kTag)) return false;
  CheckStructure_vmtx(tFont->FindTable<FTFontTable_vmtx>());
  return true;
}

void VornFontTesterStructure_vmtx::CheckStructure_vmtx(const FTFontTable_vmtx* iTable) const {
  if (CheckSize(*iTable)) CheckGlyphs(*iTable);
}

bool VornFontTesterStructure_vmtx::CheckSize(const FTFontTable_vmtx& iTable) const {
  const uint64_t tSize = iTable.GetSize();
  const uint64_t tGlyphCount = iTable.GetFont()->CountFontGlyphs();
  const uint64_t tLongCount = iTable.GetFont()->CountVerticalLongMetrics();
  if (tSize < 4 * tLongCount) {
    ReportResult(kVornFontTestSeverityMajorError,
                 "The table is too small to accomodate the font's long vertical metrics; it should be at least %d "
                 "bytes in size but is only %d",
                 {4 * tLongCount, tSize});
  }
  if (tLongCount > tGlyphCount) {
    ReportResult(kVornFontTestSeverityMinorError,
                 "There are more long vertical metrics in the font (%d) than glyphs (%d)", {tLongCount, tGlyphCount});
  } else if (tGlyphCount > tLongCount) {
    const uint64_t tExpected = 2 * (tLongCount + tGlyphCount);
    if (tSize < tExpected) {
      ReportResult(kVornFontTestSeverityMajorError,
                   "The table is too small; it should be at least %d bytes in size but is only %d", {tExpected, tSize});
      return false;
    }
    if (tSize > tExpected + 3) {
      ReportResult(kVornFontTestSeverityMinorError,
                   "The table is too large and may be corrupt; it should be %d bytes in size but is %d",
                   {tExpected, tSize});
    }
  }
  return tSize >= 4 * tLongCount;
}

void VornFontTesterStructure_vmtx::CheckGlyphs(const FTFontTable_vmtx& iTable) const {
  if (iTable.GetMetrics(0).advance == 0) {
    ReportResult(kVornFontTestSeverityMinorError,
                 "Glyph 0 has a height of zero; since it is used for undisplayable characters, it should be non-zero.");
  }
  if (const uint16_t tAdvance = iTable.GetMetrics(1).advance; tAdvance != 0) {
    ReportResult(kVornFontTestSeverityMinorError, "Glyph 1 has a height of %d; it should be zero", {tAdvance});
  }
  const uint16_t tEm = iTable.GetFont()->GetFontUnitsPerEm();
  const int tLimit = Tova::WrapSigned16(int64_t{tEm} * 2) / 5;
  const uint16_t tGlyphCount = iTable.GetFont()->CountFontGlyphs();
  for (uint16_t tGlyph = 0; tGlyph < tGlyphCount; ++tGlyph) {
    const FTGlyphMetrics tMetrics = iTable.GetMetrics(tGlyph);
    const int16_t tSideBearing = Tova::WrapSigned16(tMetrics.sideBearing);
    if (tMetrics.advance > tEm) {
      ReportResult(kVornFontTestSeverityInformation,
                   "Glyph %d has a height of %d, which is greater than the font's em (%d); this may be incorrect.",
                   {tGlyph, tMetrics.advance, tEm});
    }
    // It is the side bearing that is held against 40 percent of the em, and whose value the message gives.
    if (tSideBearing > tLimit) {
      ReportResult(kVornFontTestSeverityInformation,
                   "Glyph %d has a height of %d, which is greater than 40 percent of the font's em (that is, %d); "
                   "this may be incorrect.",
                   {tGlyph, tSideBearing, tLimit});
    }
  }
}
