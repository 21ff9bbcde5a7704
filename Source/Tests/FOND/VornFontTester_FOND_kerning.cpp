#include "Tests/FOND/VornFontTester_FOND_kerning.h"

void VornFontTester_FOND_kerning::Check_FOND_kerning(const FTFont_FOND& iFamily) const {
  const int64_t tKerning = *iFamily.GetKernTable();
  const At tHere(*this, {.offset = tKerning});
  const int64_t tLimit = LimitOf(iFamily, tKerning, iFamily.GetStyleMappingTable(), iFamily.GetWidthTable());
  const uint32_t tCount = iFamily.GetKernEntryCount();
  const int64_t tEntriesEnd = tKerning + 4 * int64_t{tCount} + 2;
  if (tLimit < tEntriesEnd) {
    ReportResult(Severity::kFatalError,
                 "The kerning data ends at 0x%08X, which is beyond the end of the kerning subtable (0x%08X)",
                 {tEntriesEnd, tLimit});
  }
  const FTFont_FOND::Position tFirstPair = iFamily.GetIndKernPair(tCount - 1, 0);
  if (!tFirstPair) return;
  const int64_t tPairsEnd = *tFirstPair + 4 * int64_t{iFamily.GetIndKernPairCount(tCount - 1)};
  if (tLimit < tPairsEnd) {
    ReportResult(Severity::kFatalError,
                 "The kerning pair data ends at 0x%08X, which is beyond the end of the kerning subtable (0x%08X)",
                 {tPairsEnd, tLimit});
  }
}
