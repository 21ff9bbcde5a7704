#include "Tests/VornFontTesterStructure_hmtx.h"

void VornFontTesterStructure_hmtx::CheckTable(const FTFontTable_hmtx& iTable) const {
  const Texts tTexts = {
      .tooSmall = Severity::kFatalError,
      .longMetricsCut =
          "The table is too small to accomodate the font's long horizontal metrics; it should be at "
          "least %d bytes in size but is only %d",
      .moreThanGlyphs = "There are more long horizontal metrics in the font (%d) than glyphs (%d)",
      .metricsCut = "The table is too small; it should be at least %d bytes in size but is only %d",
      .tooLarge = "The table is too large and may be corrupt; it should be %d bytes in size but is %d",
      .glyph0Zero =
          "Glyph 0 has a width of zero; since it is used for undisplayable characters, it should be "
          "non-zero.",
      .glyph1NotZero = "Glyph 1 has a width of %d; it should be zero",
      .beyondEm = "Glyph %d has a width of %d, which is greater than the font's em (%d); this may be incorrect.",
      .bearingBeyondEm =
          "Glyph %d has a width of %d, which is greater than 40 percent of the font's em (that is, "
          "%d); this may be incorrect.",
  };
  CheckMetricsTable(iTable, iTable.GetFont()->CountHorizontalLongMetrics(), tTexts);
}
