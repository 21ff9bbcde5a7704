#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

#include "Platform/ByteView.h"
#include "TableAccess/AncillaryClasses/FTEncodingIntervals.h"
#include "TableAccess/AncillaryClasses/FTEncodingRange.h"

/// A character and its glyph.
struct FTEncodingPair {
  uint32_t character;
  uint32_t glyph;
  bool operator==(const FTEncodingPair&) const = default;
};

/// What a 'cmap' subtable maps, kept as ranges over its bytes (which it borrows), so that time and memory follow the
/// bytes and not the billions of characters that they may claim.
///
/// A subtable can map a character more than once; its pairs are then several, and the first in table order answers.
class FTEncodingMapping {
 public:
  /// Throws FTException for a subtable that cannot be used: see FTReadEncodingRanges.
  FTEncodingMapping(Tova::ByteView iSubtable, uint32_t iFormat);

  /// 0 for a character that is not mapped.
  uint32_t CharacterToGlyph(uint32_t iCharacter) const;
  /// The lowest character that some pair maps to the glyph.
  std::optional<uint32_t> GlyphToCharacter(uint32_t iGlyph) const;

  uint64_t PairCount() const;
  /// All pairs by ascending character, those of one character in table order. Made at the first call; throws when there
  /// are more than FTLimits::maxEncodingPairs.
  const std::vector<FTEncodingPair>& Pairs() const;

  /// Calls iVisit(character, glyph) for every mapped character up to iLast, ascending, with the glyph that answers.
  template <class Visit>
  void ForEachCharacter(uint32_t iLast, Visit iVisit) const {
    for (const FTEncodingRange& tRange : Sorted()) {
      const uint64_t tEnd = uint64_t{std::min(tRange.last, iLast)} + 1;
      for (uint64_t tCharacter = tRange.first; tCharacter < tEnd; ++tCharacter) {
        const auto tCode = static_cast<uint32_t>(tCharacter);
        if (const uint32_t tGlyph = tRange.GlyphOf(tCode, _fBytes); tGlyph != 0) iVisit(tCode, tGlyph);
      }
    }
  }

 private:
  using Ranges = std::vector<FTEncodingRange>;
  using Intervals = std::vector<FTEncodingInterval>;

  const Ranges& Sorted() const { return _fOverlaps ? _fResolved : _fRanges; }
  Ranges ResolveRuns() const;
  Ranges ResolveArrays() const;
  Intervals IndexGlyphs() const;
  void IndexArrays(Intervals& ioByGlyph) const;

  Tova::ByteView _fBytes;
  Ranges _fRanges;  // in table order if they overlap, else ascending
  bool _fOverlaps = false;
  Ranges _fResolved;                           // if they overlap: ascending, what answers
  mutable std::optional<Intervals> _fByGlyph;  // rank: what to add to a glyph for its lowest character
  mutable std::optional<uint64_t> _fPairCount;
  mutable std::optional<std::vector<FTEncodingPair>> _fPairs;
};
