#include <algorithm>
#include <cstdlib>
#include <limits>

#include "TableAccess/AncillaryClasses/FTUnicodeMap.h"
#include "TableAccess/TableClasses/FTFontTable_hmtx.h"
#include "Tests/SfntFacts.h"
#include "Tests/VornFontTesterStructure_OS_2.h"

namespace {

using Fields = FTOS2Fields;

/// The advances of a font that are not 0.
struct Advances {
  int64_t count = 0;
  int64_t sum = 0;
  int64_t lowest = std::numeric_limits<int64_t>::max();
  int64_t highest = 0;
};

Advances MeasureAdvances(const FTFont_sfnt& iFont) {
  Advances tAdvances;
  const FTFontTable_hmtx* tMetrics = SfntFacts::Metrics(iFont);
  const uint32_t tGlyphCount = tMetrics ? iFont.CountFontGlyphs() : 0;
  for (uint32_t i = 0; i < tGlyphCount; ++i) {
    const int64_t tAdvance = tMetrics->GetMetrics(static_cast<uint16_t>(i)).advance;
    if (tAdvance == 0) continue;
    ++tAdvances.count;
    tAdvances.sum += tAdvance;
    tAdvances.lowest = std::min(tAdvances.lowest, tAdvance);
    tAdvances.highest = std::max(tAdvances.highest, tAdvance);
  }
  return tAdvances;
}

}  // namespace

void VornFontTesterStructure_OS_2::CheckLineMetrics(const Fields& iFields) const {
  const auto tReport = [this](Severity iSeverity, const char* iFormat, const Field& iField, int32_t iValue) {
    ReportResult(iSeverity, iFormat, {Tova::MakeString(iField.name), iValue});
  };
  if (iFields.Has(Fields::kTypoAscender) && iFields.TypoAscender() <= 0) {
    tReport(Severity::kMinorError, "%@ is %d; it should be positive", Fields::kTypoAscender, iFields.TypoAscender());
  }
  if (iFields.TypoDescender() > 0) {
    tReport(Severity::kMinorError, "%@ is %d; it should not be positive", Fields::kTypoDescender,
            iFields.TypoDescender());
  }
  if (iFields.TypoLineGap() < 0) {
    tReport(Severity::kMinorError, "%@ is %d; it should not be negative", Fields::kTypoLineGap, iFields.TypoLineGap());
  }
  constexpr uint16_t kHighest = 0x7FFF;
  constexpr const char* kCutOff = "%@ is %d; glyphs would be cut off or lines torn apart";
  if (iFields.Has(Fields::kWinAscent) && (iFields.WinAscent() == 0 || iFields.WinAscent() > kHighest)) {
    tReport(Severity::kMajorError, kCutOff, Fields::kWinAscent, iFields.WinAscent());
  }
  if (iFields.WinDescent() > kHighest) {
    tReport(Severity::kMajorError, kCutOff, Fields::kWinDescent, iFields.WinDescent());
  }
}

void VornFontTesterStructure_OS_2::CheckAverageWidth(const Fields& iFields) const {
  if (!ExecuteTestsWithSeverity(Severity::kTechnicalError) || !iFields.Has(Fields::kAvgCharWidth)) return;
  const Advances tAdvances = MeasureAdvances(SfntFont());
  if (tAdvances.count == 0) return;
  const int64_t tAverage = iFields.AvgCharWidth();
  const int64_t tEm = SfntFont().GetFontUnitsPerEm();
  if (tAverage <= 0 || tAverage > tAdvances.highest) {
    ReportResult(Severity::kTechnicalError, "The average width is %d; the widths of the glyphs lie between %d and %d",
                 {tAverage, tAdvances.lowest, tAdvances.highest});
  } else if (iFields.Version() >= 3 && tEm > 0 &&  // before, only some lower-case letters counted
             10 * std::abs(tAverage * tAdvances.count - tAdvances.sum) > tEm * tAdvances.count) {
    ReportResult(Severity::kTechnicalError, "The average width is %d, but the glyphs average %d",
                 {tAverage, tAdvances.sum / tAdvances.count});
  }
}

void VornFontTesterStructure_OS_2::CheckHeights(const Fields& iFields) const {
  const int32_t tXHeight = iFields.XHeight();
  const int32_t tCapHeight = iFields.CapHeight();
  const bool tHasBoth = iFields.Has(Fields::kXHeight) && iFields.Has(Fields::kCapHeight);
  if (tHasBoth && (tXHeight < 0 || tCapHeight < 0 || (tXHeight > tCapHeight && tCapHeight > 0))) {
    ReportResult(Severity::kMinorError, "The x-height (%d) and the cap height (%d) are not possible",
                 {tXHeight, tCapHeight});
  }
  const auto tCheckZero = [&](const Field& iField, int32_t iValue, uint32_t iCharacter) {
    if (!iFields.Has(iField) || iValue != 0 || !SfntFont().UnicodeMap().Maps(iCharacter)) return;
    ReportResultIfAsked(Severity::kTechnicalError, "%@ is 0, but the font has the character U+%04X",
                        {Tova::MakeString(iField.name), iCharacter});
  };
  tCheckZero(Fields::kXHeight, tXHeight, 'x');
  tCheckZero(Fields::kCapHeight, tCapHeight, 'H');
}

void VornFontTesterStructure_OS_2::CheckOpticalSizes(const Fields& iFields) const {
  const uint16_t tLower = iFields.LowerOpticalPointSize();
  const uint16_t tUpper = iFields.UpperOpticalPointSize();
  if (iFields.Has(Fields::kUpperOpticalPointSize) && tLower >= tUpper) {
    ReportResult(Severity::kMinorError, "The optical size range %d to %d (in twentieths of a point) is empty",
                 {tLower, tUpper});
  }
}
