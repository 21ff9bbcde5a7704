#include "TableAccess/TableClasses/FTFontTable_hmtx.h"

#include <algorithm>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/TableClasses/FTTableOwner.h"

void FTFontTable_hmtx::ReadDataInternal() const {
  _fGlyphCount = Owner()->CountFontGlyphs();
  _fLongMetricsCount = GetTag() == kTag ? Owner()->CountHorizontalLongMetrics() : Owner()->CountVerticalLongMetrics();
}

FTGlyphMetrics FTFontTable_hmtx::GetMetrics(uint16_t iGlyph) const {
  ReadData();
  if (iGlyph >= _fGlyphCount) FTThrow(FTFaults::kMetricsOfNoGlyph);
  const uint64_t tLong = _fLongMetricsCount;
  if (iGlyph < tLong) return {Bytes().U16(uint64_t{4} * iGlyph), Bytes().U16(uint64_t{4} * iGlyph + 2)};
  const uint16_t tAdvance = tLong == 0 ? uint16_t{0} : Bytes().U16(4 * (tLong - 1));
  return {tAdvance, Bytes().U16(4 * tLong + 2 * (iGlyph - tLong))};
}
