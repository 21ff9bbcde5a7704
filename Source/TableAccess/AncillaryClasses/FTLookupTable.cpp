#include "TableAccess/AncillaryClasses/FTLookupTable.h"

namespace {

using Tova::ByteView;

/// Where the header of a binary search lies in a table of formats 2, 4 and 6, and its entries, in bytes.
constexpr uint64_t kSearchHeader = 2;
constexpr uint64_t kFirstEntry = kSearchHeader + 10;

/// Below this number the entry selector no longer halves the search range.
constexpr uint16_t kLastBinaryStep = 3;

/// The position of the entry at which the search for a glyph ends: the first, from where the header's numbers lead,
/// whose key is not below the glyph. The key is the entry's first word: a segment's last glyph, or the glyph itself.
uint64_t FindEntry(ByteView iTable, uint32_t iGlyph) {
  const uint64_t tUnitSize = iTable.U16(kSearchHeader);
  uint64_t tRange = iTable.U16(kSearchHeader + 4);
  const uint64_t tShift = iTable.U16(kSearchHeader + 8);
  uint64_t tAt = iGlyph >= iTable.U16(kFirstEntry + tRange) ? kFirstEntry + tShift : kFirstEntry;
  for (uint16_t tSelector = iTable.U16(kSearchHeader + 6); tSelector > kLastBinaryStep; --tSelector) {
    tRange /= 2;
    if (iGlyph > iTable.U16(tAt + tRange)) tAt += tRange;
  }
  while (tUnitSize > 0 && tAt < iTable.Size() && iGlyph > iTable.U16(tAt)) tAt += tUnitSize;
  return tAt;
}

ByteView LookUpSegment(ByteView iTable, uint32_t iGlyph, bool iArray) {
  const uint64_t tEntry = FindEntry(iTable, iGlyph);
  const uint16_t tLast = iTable.U16(tEntry);
  const uint16_t tFirst = iTable.U16(tEntry + 2);
  if (iGlyph < tFirst || iGlyph > tLast || !iTable.Holds(tEntry, 4)) return {};
  if (!iArray) return iTable.From(tEntry + 4);
  return iTable.From(uint64_t{iTable.U16(tEntry + 4)} + 2 * uint64_t{iGlyph - tFirst});
}

ByteView LookUpSingle(ByteView iTable, uint32_t iGlyph) {
  const uint64_t tEntry = FindEntry(iTable, iGlyph);
  if (!iTable.Holds(tEntry, 2) || iTable.U16(tEntry) != iGlyph) return {};
  return iTable.From(tEntry + 2);
}

ByteView LookUpTrimmedArray(ByteView iTable, uint32_t iGlyph) {
  const uint16_t tFirst = iTable.U16(2);
  const uint16_t tLast = Tova::Wrap16(uint64_t{tFirst} + iTable.U16(4) - 1);
  if (iGlyph < tFirst || iGlyph > tLast) return {};
  return iTable.From(6 + 2 * uint64_t{iGlyph - tFirst});
}

}  // namespace

ByteView FTLookUp(ByteView iTable, uint32_t iGlyph) {
  constexpr uint32_t kNoGlyph = 0xFFFF;
  if (iTable.Empty()) return {};
  switch (iTable.U16(0)) {
    case 0:
      return iTable.From(2 + 2 * uint64_t{iGlyph});
    case 2:
      return iGlyph == kNoGlyph ? ByteView() : LookUpSegment(iTable, iGlyph, false);
    case 4:
      return iGlyph == kNoGlyph ? ByteView() : LookUpSegment(iTable, iGlyph, true);
    case 6:
      return iGlyph == kNoGlyph ? ByteView() : LookUpSingle(iTable, iGlyph);
    case 8:
      return LookUpTrimmedArray(iTable, iGlyph);
    default:
      return {};
  }
}
