#include "Tests/VornFontTesterMetricsTable.h"

#include "TableAccess/FTLimits.h"
void VornFontTesterMetricsTable::CheckMetricsTable(const FTFontTable_hmtx& iTable, uint16_t iLongCount,
                                                   const Texts& iTexts) const {
  if (CheckSize(iTable, iLongCount, iTexts)) CheckGlyphs(iTable, iTexts);
}

bool VornFontTesterMetricsTable::CheckSize(const FTFontTable_hmtx& iTable, uint64_t iLongCount,
                                           const Texts& iTexts) const {
  const uint64_t tSize = iTable.GetSize();
  const uint64_t tGlyphCount = iTable.GetFont()->CountFontGlyphs();
  const uint64_t tLongSize = 4 * iLongCount;
  if (tSize < tLongSize) ReportResult(iTexts.tooSmall, iTexts.longMetricsCut, {tLongSize, tSize});
  if (iLongCount > tGlyphCount) {
    ReportResult(Severity::kMinorError, iTexts.moreThanGlyphs, {iLongCount, tGlyphCount});
  } else if (tGlyphCount > iLongCount) {
    const uint64_t tExpected = 2 * (iLongCount + tGlyphCount);
    if (tSize < tExpected) {
      ReportResult(iTexts.tooSmall, iTexts.metricsCut, {tExpected, tSize});
      return false;
    }
    if (tSize > tExpected + 3) {
      ReportResult(Severity::kMinorError, iTexts.tooLarge, {tExpected, tSize});
    }
  }
  return tSize >= tLongSize;
}

void VornFontTesterMetricsTable::CheckFirstGlyphs(const FTFontTable_hmtx& iTable, const Texts& iTexts) const {
  {
    const At tHere(*this, {.glyph = 0});
    if (iTable.GetMetrics(0).advance == 0) ReportResult(Severity::kMinorError, iTexts.glyph0Zero);
  }
  const At tHere(*this, {.glyph = 1});
  if (const uint16_t tAdvance = iTable.GetMetrics(1).advance; tAdvance != 0) {
    ReportResult(Severity::kMinorError, iTexts.glyph1NotZero, {tAdvance});
  }
}

void VornFontTesterMetricsTable::CheckGlyphs(const FTFontTable_hmtx& iTable, const Texts& iTexts) const {
  CheckFirstGlyphs(iTable, iTexts);
  const uint16_t tEm = iTable.GetFont()->GetFontUnitsPerEm();
  const int tLimit = Tova::WrapSigned16(int64_t{tEm} * 2) / 5;
  const uint16_t tGlyphCount = iTable.GetFont()->CountFontGlyphs();
  iTable.GetFont()->SpendWork(kFTStepsOfGlyph * tGlyphCount);
  for (uint16_t tGlyph = 0; tGlyph < tGlyphCount; ++tGlyph) {
    const At tHere(*this, {.glyph = tGlyph});
    const FTGlyphMetrics tMetrics = iTable.GetMetrics(tGlyph);
    const int16_t tSideBearing = Tova::WrapSigned16(tMetrics.sideBearing);
    if (tMetrics.advance > tEm) {
      ReportResult(Severity::kInformation, iTexts.beyondEm, {tGlyph, tMetrics.advance, tEm});
    }
    // quirk: bearing-as-width. It is the side bearing that is held against 40 percent of the em, and whose value the
    // message gives.
    if (tSideBearing > tLimit) {
      ReportResult(Severity::kInformation, iTexts.bearingBeyondEm, {tGlyph, tSideBearing, tLimit});
    }
  }
}
