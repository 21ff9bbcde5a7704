#include "Tests/VornFontTesterStructure_vmtx.h"

void VornFontTesterStructure_vmtx::CheckTable(const FTFontTable_vmtx& iTable) const {
  const Texts tTexts = {
      .tooSmall = Severity::kMajorError,
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
  CheckMetricsTable(iTable, iTable.GetFont()->CountVerticalLongMetrics(), tTexts);
}
