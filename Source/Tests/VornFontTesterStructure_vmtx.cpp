#include "Tests/VornFontTesterStructure_vmtx.h"

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
  const Texts tTexts = {
      .tooSmall = kVornFontTestSeverityMajorError,
      .longMetricsCut =
          "The table is too small to accomodate the font's long vertical metrics; it should be at "
          "least %d bytes in size but is only %d",
      .moreThanGlyphs = "There are more long vertical metrics in the font (%d) than glyphs (%d)",
      .metricsCut = "The table is too small; it should be at least %d bytes in size but is only %d",
      .tooLarge = "The table is too large and may be corrupt; it should be %d bytes in size but is %d",
      .glyph0Zero =
          "Glyph 0 has a height of zero; since it is used for undisplayable characters, it should be "
          "non-zero.",
      .glyph1NotZero = "Glyph 1 has a height of %d; it should be zero",
      .beyondEm = "Glyph %d has a height of %d, which is greater than the font's em (%d); this may be incorrect.",
      .bearingBeyondEm =
          "Glyph %d has a height of %d, which is greater than 40 percent of the font's em (that is, "
          "%d); this may be incorrect.",
  };
  CheckMetricsTable(*iTable, iTable->GetFont()->CountVerticalLongMetrics(), tTexts);
}
