#include "Tests/VornFontTesterStructure_hhea.h"

#include <algorithm>
#include <cstdlib>

#include "TableAccess/FTLimits.h"
#include "TableAccess/TableClasses/FTFontTable_fdsc.h"
#include "TableAccess/TableClasses/FTFontTable_glyf.h"
#include "TableAccess/TableClasses/FTFontTable_hmtx.h"
#include "TableAccess/TableClasses/FTFontTable_loca.h"
#include "TableAccess/TableClasses/FTFontTable_post.h"
#include "Tests/Cordic.h"

namespace {

// 16.16.
constexpr int32_t kOne = 1 << 16;
constexpr int32_t k90Degrees = 90 << 16;

}  // namespace

void VornFontTesterStructure_hhea::CheckTable(const FTFontTable_hhea& iTable) const {
  const FTFont_sfnt& tFont = SfntFont();
  if (tFont.IsSbitOnly()) {
    ReportResult(Severity::kInformation, "table is redundant for sbit-only fonts and has not been checked.");
    return;
  }
  const auto* tHeader = tFont.FindTable<FTFontTable_head>();
  const bool tHasOutlines = tFont.HasTrueTypeGlyphs();
  const bool tHasLocations = tFont.FindTable<FTFontTable_loca>() != nullptr;
  if (tHasOutlines && !tHeader) ReportResult(Severity::kFatalError, "'head' table is needed for 'hhea' test.");
  if (tHasOutlines && !tHasLocations) ReportResult(Severity::kFatalError, "'loca' table is needed for 'hhea' test.");
  if (!tHeader) return;
  CheckLineMetrics(iTable, tHeader->UnitsPerEm());
  if (tHasOutlines && tHasLocations && ExecuteTestsWithSeverity(Severity::kMinorError)) {
    CheckExtremes(iTable, GetHorizontalExtremeGlyphMetrics(tFont));
  }
  CheckCaretSlope(iTable);
  CheckCaretAgainstPost(iTable, tFont);
  CheckCaretAgainstFdsc(iTable, tFont);
  CheckReservedWords(iTable);
  CheckLongMetrics(iTable, tFont.CountFontGlyphs());
}

void VornFontTesterStructure_hhea::CheckLineMetrics(const FTFontTable_hhea& iTable, uint16_t iEm) const {
  const int tAscent = iTable.Ascender();
  const int tDescent = iTable.Descender();
  if (iTable.Version() != 0x00010000) {
    ReportResult(Severity::kTechnicalError, "Bad version number: 0x%lx", {iTable.Version()});
  }
  if (tAscent < 1) {
    ReportResult(Severity::kMinorError, "ascent (%d) less than or equal to zero", {tAscent});
  }
  if (iEm * 0.4 > tAscent) {
    ReportResult(Severity::kMinorError, "ascent (%d) is smaller than %.2f  of the em (%d)", {tAscent, 40.0, iEm});
  }
  if (tAscent <= tDescent) {
    ReportResult(Severity::kMinorError, "ascent (%d) is smaller than or equal to descent (%d)", {tAscent, tDescent});
  }
  if (tDescent >= 0) {
    ReportResult(Severity::kMinorError, "descent (%d) is greater than or equal to zero", {tDescent});
  }
  if (std::abs(tDescent) > iEm * 0.6) {
    ReportResult(Severity::kMinorError, "descent (%d) is greater than %2.0f percent of the em (%d)",
                 {tDescent, 60.0, iEm});
  }
  if (iTable.LineGap() < 0) {
    ReportResult(Severity::kMinorError, "line gap (%d) is smaller than zero", {iTable.LineGap()});
  }
}

VornFontTesterStructure_hhea::ExtremeMetrics VornFontTesterStructure_hhea::GetHorizontalExtremeGlyphMetrics(
    const FTFont_sfnt& iFont) {
  const auto* tMetrics = iFont.HasTaggedTable(FTFontTable_hmtx::kTag) ? iFont.FindTable<FTFontTable_hmtx>() : nullptr;
  const auto* tGlyphs = iFont.HasTaggedTable(FTFontTable_glyf::kTag) ? iFont.FindTable<FTFontTable_glyf>() : nullptr;
  const uint16_t tGlyphCount = iFont.CountFontGlyphs();
  ExtremeMetrics tExtremes;
  iFont.SpendWork(kFTStepsOfGlyph * tGlyphCount);
  for (uint16_t i = 0; i < tGlyphCount; ++i) {
    const FTGlyphMetrics tGlyphMetrics = tMetrics ? tMetrics->GetMetrics(i) : FTGlyphMetrics();
    const FTTrueTypeGlyph tGlyph = tGlyphs ? tGlyphs->GetGlyph(i) : FTTrueTypeGlyph();
    const FTRect tBox = tGlyph ? tGlyph.GetBounds() : FTRect();
    const int16_t tAdvance = Tova::WrapSigned16(tGlyphMetrics.advance);
    const int16_t tSideBearing = Tova::WrapSigned16(tGlyphMetrics.sideBearing);
    const int tWidth = tBox.right - tBox.left;
    tExtremes.advanceMax = std::max(tExtremes.advanceMax, tAdvance);
    tExtremes.sideBearingMin = std::min(tExtremes.sideBearingMin, tSideBearing);
    tExtremes.otherSideBearingMin =
        std::min(tExtremes.otherSideBearingMin, Tova::WrapSigned16(tAdvance - tSideBearing - tWidth));
    tExtremes.extentMax = std::max(tExtremes.extentMax, Tova::WrapSigned16(tSideBearing + tWidth));
  }
  return tExtremes;
}

void VornFontTesterStructure_hhea::CheckExtremes(const FTFontTable_hhea& iTable,
                                                 const ExtremeMetrics& iExtremes) const {
  if (iTable.AdvanceMax() == 0) ReportResult(Severity::kMinorError, "advanceMax is equal to zero");
  if (iTable.AdvanceMax() != iExtremes.advanceMax) {
    ReportResult(Severity::kMinorError, "advanceMax (%d) is wrong; it should be %d",
                 {iTable.AdvanceMax(), iExtremes.advanceMax});
  }
  if (iTable.SideBearingMin() != iExtremes.sideBearingMin) {
    ReportResult(Severity::kMinorError, "sideBearingMin (%d) is wrong; it should be %d",
                 {iTable.SideBearingMin(), iExtremes.sideBearingMin});
  }
  if (iTable.OtherSideBearingMin() != iExtremes.otherSideBearingMin) {
    ReportResult(Severity::kMinorError, "otherSideBearingMin (%d) is wrong; it should be %d",
                 {iTable.OtherSideBearingMin(), iExtremes.otherSideBearingMin});
  }
  if (iTable.ExtentMax() != iExtremes.extentMax) {
    ReportResult(Severity::kMinorError, "extentMax (%d) is wrong; it should be %d",
                 {iTable.ExtentMax(), iExtremes.extentMax});
  }
}

void VornFontTesterStructure_hhea::CheckCaretSlope(const FTFontTable_hhea& iTable) const {
  const int tRise = iTable.CaretSlopeRise();
  const int tRun = iTable.CaretSlopeRun();
  if (tRise == 0 && tRun == 0) {
    ReportResult(Severity::kMajorError, "both caretSlopeRise and caretSlopeRun are zero");
  }
  if (tRise * tRun < 0) {
    ReportResult(Severity::kMinorError,
                 "caretSlopeRise (%d) and caretSlopeRun (%d) will cause a backward-slanted caret", {tRise, tRun});
  }
  if (tRise == 0 && tRun >= 1) {
    ReportResult(Severity::kMinorError, "caretSlopeRise (%d) and caretSlopeRun (%d) will cause a horizontal caret",
                 {tRise, tRun});
  }
  if (tRise == tRun && tRise != 0) {
    ReportResult(Severity::kMinorError, "caretSlopeRun (%d) will cause a 45-degree caret", {tRise});
  }
}

void VornFontTesterStructure_hhea::CheckCaretAgainstPost(const FTFontTable_hhea& iTable,
                                                         const FTFont_sfnt& iFont) const {
  const int tRun = iTable.CaretSlopeRun();
  if (tRun == 0 || !iFont.HasTaggedTable(FTFontTable_post::kTag)) return;
  if (iFont.FindTable<FTFontTable_post>()->GetItalicAngle() == 0) {
    ReportResult(Severity::kMinorError,
                 "The caret slope (%d/%d) is non-vertical; the 'post' table indicates it should be vertical",
                 {iTable.CaretSlopeRise(), tRun});
  }
}

void VornFontTesterStructure_hhea::CheckCaretAgainstFdsc(const FTFontTable_hhea& iTable,
                                                         const FTFont_sfnt& iFont) const {
  if (!iFont.HasTaggedTable(FTFontTable_fdsc::kTag)) return;
  const int64_t tAngle = int64_t{iFont.FindTable<FTFontTable_fdsc>()->GetAngle()} + k90Degrees;
  int32_t tX = 0;
  int32_t tY = 0;
  Cordic(kOne, static_cast<int32_t>(Tova::Wrap32(static_cast<uint64_t>(tAngle))), &tX, &tY);
  // quirk: caret-unit-vector. The caret is compared with a unit vector of whole numbers, so that small slants do not
  // show.
  const int16_t tRise = Tova::WrapSigned16(Fix2Long(tY));
  const int16_t tRun = Tova::WrapSigned16(Fix2Long(-tX));
  if (iTable.CaretSlopeRise() != tRise) {
    ReportResult(Severity::kMinorError, "caretSlopeRise is %d and should be %d", {iTable.CaretSlopeRise(), tRise});
  }
  if (iTable.CaretSlopeRun() != tRun) {
    ReportResult(Severity::kMinorError, "caretSlopeRun is %d and should be %d", {iTable.CaretSlopeRun(), tRun});
  }
}

void VornFontTesterStructure_hhea::CheckReservedWords(const FTFontTable_hhea& iTable) const {
  const FTReservedWords tWords = iTable.Filler();
  if (tWords[0] != 0) {
    ReportResult(Severity::kTechnicalError, "Reserved word 0 (%d) is not zero", {tWords[0]});
  }
  if (tWords[1] != 0) {
    ReportResult(Severity::kTechnicalError, "Reserved word 1 (%d) is not zero", {tWords[1]});
  }
  if (tWords[2] != 0) {
    ReportResult(Severity::kTechnicalError, "Reserved word 2 (%d) is not zero", {tWords[2]});
  }
  if (tWords[3] != 0) {
    ReportResult(Severity::kTechnicalError, "Reserved word 3 (%d) is not zero", {tWords[3]});
  }
}

void VornFontTesterStructure_hhea::CheckLongMetrics(const FTFontTable_hhea& iTable, uint16_t iGlyphCount) const {
  if (iTable.MetricDataFormat() != 0) {
    ReportResult(Severity::kTechnicalError, "metricDataFormat (%d) is not zero", {iTable.MetricDataFormat()});
  }
  if (iTable.NumberLongMetrics() > iGlyphCount) {
    ReportResult(Severity::kMinorError, "numberLongMetrics (%d) is greater than number of glyphs in the font (%d)",
                 {iTable.NumberLongMetrics(), iGlyphCount});
  }
}
