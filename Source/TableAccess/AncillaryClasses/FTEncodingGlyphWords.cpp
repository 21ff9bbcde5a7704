#include "TableAccess/AncillaryClasses/FTEncodingGlyphWords.h"

#include <bit>

FTEncodingGlyphWords::FTEncodingGlyphWords(Tova::ByteView iSubtable, const std::vector<FTEncodingRange>& iRanges) {
  uint64_t tStart = iSubtable.Size();
  uint64_t tEnd = 0;
  for (const FTEncodingRange& tRange : iRanges) {
    if (tRange.rule != FTEncodingRange::Rule::kArray) continue;
    tStart = std::min<uint64_t>(tStart, tRange.glyph);
    tEnd = std::max(tEnd, tRange.glyph + 2 * tRange.Size());
  }
  if (tEnd == 0) return;
  _fPresent.fill(FTBitSet(tEnd / 2 + 1));
  for (uint64_t tPosition = tStart; tPosition + 2 <= tEnd; ++tPosition) {
    if (iSubtable.U16(tPosition) != 0) _fPresent[tPosition % 2].Add(tPosition / 2, 1);
  }
}

uint64_t FTEncodingGlyphWords::CountMapped(const FTEncodingRange& iRange) const {
  if (iRange.rule != FTEncodingRange::Rule::kArray) return iRange.Size();
  uint64_t tCount = 0;
  ForEachBlock(iRange, [&](uint32_t, uint64_t iMask) { tCount += static_cast<uint64_t>(std::popcount(iMask)); });
  return tCount;
}
