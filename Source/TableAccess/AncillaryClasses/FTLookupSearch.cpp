#include "TableAccess/AncillaryClasses/FTLookupSearch.h"

#include <algorithm>
#include <bit>

namespace FTLookupSearch {

namespace {

using Tova::ByteView;

constexpr uint32_t kDeletedGlyph = 0xFFFF;

/// Units that lie wholly inside the table, no more than the header counts.
uint64_t CountUnitsHeld(ByteView iTable, const Header& iHeader) {
  if (iHeader.unitSize == 0 || iTable.Size() < kUnits) return 0;
  return std::min<uint64_t>(iHeader.unitCount, (iTable.Size() - kUnits) / iHeader.unitSize);
}

/// The first unit whose first word is not below the glyph; kNone without one.
int64_t FindUnit(ByteView iTable, const Header& iHeader, uint32_t iGlyph) {
  uint64_t tLow = 0;
  uint64_t tHigh = CountUnitsHeld(iTable, iHeader);
  const uint64_t tCount = tHigh;
  while (tLow < tHigh) {
    const uint64_t tMiddle = (tLow + tHigh) / 2;
    if (iTable.U16(kUnits + tMiddle * iHeader.unitSize) < iGlyph) {
      tLow = tMiddle + 1;
    } else {
      tHigh = tMiddle;
    }
  }
  return tLow < tCount ? static_cast<int64_t>(kUnits + tLow * iHeader.unitSize) : kNone;
}

int64_t ValueInside(ByteView iTable, uint64_t iAt, uint64_t iSize) {
  return iTable.Holds(iAt, iSize) ? static_cast<int64_t>(iAt) : kNone;
}

int64_t FindInSegments(ByteView iTable, uint32_t iGlyph, bool iArrays) {
  const int64_t tUnit = FindSegment(iTable, iGlyph);
  if (tUnit == kNone) return kNone;
  const auto tAt = static_cast<uint64_t>(tUnit);
  if (!iArrays) return ValueInside(iTable, tAt + 4, 2);
  return ValueInside(iTable, iTable.U16(tAt + 4) + 2 * uint64_t{iGlyph - iTable.U16(tAt + 2)}, 2);
}

int64_t FindInArray(ByteView iTable, uint32_t iGlyph, uint64_t iFirstField, uint64_t iValueSize) {
  const uint32_t tFirst = iTable.U16(iFirstField);
  if (iGlyph < tFirst || iGlyph - tFirst >= iTable.U16(iFirstField + 2)) return kNone;
  return ValueInside(iTable, iFirstField + 4 + iValueSize * (iGlyph - tFirst), iValueSize);
}

/// Where the units end, with the end marker when there is one that is not counted.
uint64_t EndOfUnits(ByteView iTable, const Header& iHeader) {
  const uint64_t tEnd = kUnits + uint64_t{iHeader.unitSize} * iHeader.unitCount;
  const bool tMarked =
      iTable.U16(tEnd) == kDeletedGlyph && (iHeader.format == 6 || iTable.U16(tEnd + 2) == kDeletedGlyph);
  return tMarked ? tEnd + iHeader.unitSize : tEnd;
}

/// Where the last value array of a format 4 lookup ends; 0 without arrays.
uint64_t EndOfArrays(ByteView iTable, const Header& iHeader) {
  uint64_t tEnd = 0;
  for (uint64_t i = 0; i < CountUnitsHeld(iTable, iHeader); ++i) {
    const ByteView tUnit = iTable.From(kUnits + i * iHeader.unitSize);
    const uint32_t tLast = tUnit.U16(0);
    const uint32_t tFirst = tUnit.U16(2);
    if (tFirst > tLast || tFirst == kDeletedGlyph) continue;
    tEnd = std::max(tEnd, tUnit.U16(4) + 2 * uint64_t{tLast - tFirst + 1});
  }
  return tEnd;
}

}  // namespace

Words::Words(uint32_t iUnitSize, uint32_t iUnitCount)
    : searchRange(Tova::Wrap16(uint64_t{iUnitSize} * std::bit_floor(iUnitCount))),
      entrySelector(Tova::Wrap16(static_cast<uint64_t>(std::bit_width(iUnitCount)) - 1)),
      rangeShift(Tova::Wrap16(uint64_t{iUnitSize} * (iUnitCount - std::bit_floor(iUnitCount)))) {}

int64_t FindSegment(ByteView iTable, uint32_t iGlyph) {
  const Header tHeader(iTable);
  if (iGlyph >= kDeletedGlyph || (tHeader.format != 2 && tHeader.format != 4)) return kNone;
  const int64_t tUnit = FindUnit(iTable, tHeader, iGlyph);
  return tUnit != kNone && iTable.U16(static_cast<uint64_t>(tUnit) + 2) <= iGlyph ? tUnit : kNone;
}

int64_t FindSingle(ByteView iTable, uint32_t iGlyph) {
  const Header tHeader(iTable);
  if (iGlyph >= kDeletedGlyph || tHeader.format != 6) return kNone;
  const int64_t tUnit = FindUnit(iTable, tHeader, iGlyph);
  return tUnit != kNone && iTable.U16(static_cast<uint64_t>(tUnit)) == iGlyph ? tUnit : kNone;
}

int64_t FindValue(ByteView iTable, uint32_t iGlyph) {
  switch (iTable.U16(0)) {
    case 0:
      return iTable.Holds(0, 2) ? ValueInside(iTable, 2 + 2 * uint64_t{iGlyph}, 2) : kNone;
    case 2:
    case 4:
      return FindInSegments(iTable, iGlyph, iTable.U16(0) == 4);
    case 6: {
      const int64_t tUnit = FindSingle(iTable, iGlyph);
      return tUnit == kNone ? kNone : ValueInside(iTable, static_cast<uint64_t>(tUnit) + 2, 2);
    }
    case 8:
      return FindInArray(iTable, iGlyph, 2, 2);
    case 10: {
      const uint16_t tValueSize = iTable.U16(2);
      return tValueSize == 0 ? kNone : FindInArray(iTable, iGlyph, 4, tValueSize);
    }
    default:
      return kNone;
  }
}

uint64_t CalculateSize(ByteView iTable, uint32_t iGlyphCount) {
  const Header tHeader(iTable);
  switch (tHeader.format) {
    case 0:
      return 2 + 2 * uint64_t{iGlyphCount};
    case 2:
    case 6:
      return EndOfUnits(iTable, tHeader);
    case 4:
      return std::max(EndOfUnits(iTable, tHeader), EndOfArrays(iTable, tHeader));
    case 8:
      return 6 + 2 * uint64_t{iTable.U16(4)};
    case 10:
      return 8 + uint64_t{iTable.U16(2)} * iTable.U16(6);
    default:
      return 0;
  }
}

}  // namespace FTLookupSearch
