#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "Platform/ByteView.h"
#include "TableAccess/AncillaryClasses/FTEncodingRange.h"

/// A set of bits that is read and written 64 at a time, at any position.
class FTBitSet {
 public:
  explicit FTBitSet(uint64_t iSize = 0) : _fWords(iSize / 64 + 2) {}

  /// The 64 bits from iAt on, the first in the lowest place; iAt is at most the size.
  uint64_t Bits(uint64_t iAt) const {
    const uint64_t tShift = iAt % 64;
    const uint64_t tLow = _fWords[iAt / 64] >> tShift;
    return tShift == 0 ? tLow : tLow | _fWords[iAt / 64 + 1] << (64 - tShift);
  }
  /// Sets those of the 64 bits from iAt on that are set in iBits.
  void Add(uint64_t iAt, uint64_t iBits) {
    const uint64_t tShift = iAt % 64;
    _fWords[iAt / 64] |= iBits << tShift;
    if (tShift != 0) _fWords[iAt / 64 + 1] |= iBits >> (64 - tShift);
  }

 private:
  std::vector<uint64_t> _fWords;
};

/// Tells which words of an encoding's glyph arrays are not 0. Arrays that share their bytes and overlap without end are
/// then walked 64 characters a step, and characters without a glyph cost nothing.
class FTEncodingGlyphWords {
 public:
  FTEncodingGlyphWords(Tova::ByteView iSubtable, const std::vector<FTEncodingRange>& iRanges);

  /// Calls iVisit with the first of every 64 characters of the range and a mask of those that are mapped, the first in
  /// the lowest place; not where none is.
  template <class Visit>
  void ForEachBlock(const FTEncodingRange& iRange, Visit iVisit) const {
    const uint64_t tSize = iRange.Size();
    for (uint64_t tIndex = 0; tIndex < tSize; tIndex += 64) {
      uint64_t tMask = tSize - tIndex >= 64 ? ~uint64_t{0} : (uint64_t{1} << (tSize - tIndex)) - 1;
      if (iRange.rule == FTEncodingRange::Rule::kArray) {
        const uint64_t tPosition = iRange.glyph + 2 * tIndex;
        tMask &= _fPresent[tPosition % 2].Bits(tPosition / 2);
      }
      if (tMask != 0) iVisit(static_cast<uint32_t>(iRange.first + tIndex), tMask);
    }
  }

  /// How many characters of the range are mapped.
  uint64_t CountMapped(const FTEncodingRange& iRange) const;

 private:
  std::array<FTBitSet, 2> _fPresent;  // words at even and at odd byte positions
};
