#include "TableAccess/AncillaryClasses/FTEncodingMapping.h"

#include <bit>
#include <utility>

#include "TableAccess/AncillaryClasses/FTEncodingFormats.h"
#include "TableAccess/AncillaryClasses/FTEncodingGlyphWords.h"
#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/FTLimits.h"

namespace {

using Rule = FTEncodingRange::Rule;

constexpr uint64_t kNoCharacter = ~uint64_t{0};

bool AreDisjoint(const std::vector<FTEncodingRange>& iSorted) {
  const auto tOverlap = [](const FTEncodingRange& iLeft, const FTEncodingRange& iRight) {
    return iRight.first <= iLeft.last;
  };
  return std::ranges::adjacent_find(iSorted, tOverlap) == iSorted.end();
}

/// How far characters lie from the glyphs that they run along with.
int64_t Distance(uint64_t iCharacter, uint64_t iGlyph) {
  return static_cast<int64_t>(iCharacter) - static_cast<int64_t>(iGlyph);
}

}  // namespace

FTEncodingMapping::FTEncodingMapping(Tova::ByteView iSubtable, uint32_t iFormat)
    : _fBytes(iSubtable), _fRanges(FTReadEncodingRanges(iSubtable, iFormat)) {
  Ranges tSorted = _fRanges;
  std::ranges::stable_sort(tSorted, {}, &FTEncodingRange::first);
  _fOverlaps = !AreDisjoint(tSorted);
  if (!_fOverlaps) {
    _fRanges = std::move(tSorted);
  } else if (std::ranges::find(_fRanges, Rule::kArray, &FTEncodingRange::rule) == _fRanges.end()) {
    _fResolved = ResolveRuns();
  } else {
    _fResolved = ResolveArrays();
  }
}

/// Runs map every one of their characters, so that the earliest of those that overlap hides the others whole.
FTEncodingMapping::Ranges FTEncodingMapping::ResolveRuns() const {
  Intervals tByCharacter;
  for (const FTEncodingRange& tRange : _fRanges) {
    tByCharacter.push_back({tRange.first, tRange.last, static_cast<int64_t>(tByCharacter.size())});
  }
  Ranges tResolved;
  for (const FTEncodingInterval& tPiece : FTResolveOverlaps(std::move(tByCharacter))) {
    tResolved.push_back(
        _fRanges[static_cast<uint64_t>(tPiece.rank)].Part(Tova::Wrap32(tPiece.first), Tova::Wrap32(tPiece.last)));
  }
  return tResolved;
}

/// A later array shows through the characters that an earlier one leaves without a glyph. Formats with several arrays
/// have 16-bit codes, so a bit for each character tells which are taken.
FTEncodingMapping::Ranges FTEncodingMapping::ResolveArrays() const {
  const FTEncodingGlyphWords tWords(_fBytes, _fRanges);
  FTBitSet tTaken(std::ranges::max(_fRanges, {}, &FTEncodingRange::last).last);
  Ranges tResolved;
  for (const FTEncodingRange& tRange : _fRanges) {
    uint64_t tEnd = kNoCharacter;  // of the piece before, while it is one of this range
    tWords.ForEachBlock(tRange, [&](uint32_t iFirst, uint64_t iMask) {
      uint64_t tFree = iMask & ~tTaken.Bits(iFirst);
      tTaken.Add(iFirst, tFree);
      while (tFree != 0) {
        const auto tSkip = static_cast<uint32_t>(std::countr_zero(tFree));
        const auto tRun = static_cast<uint32_t>(std::countr_one(tFree >> tSkip));
        const uint32_t tFirst = iFirst + tSkip;
        const uint32_t tLast = tFirst + tRun - 1;
        if (tEnd == tFirst) {
          tResolved.back().last = tLast;
        } else {
          tResolved.push_back(tRange.Part(tFirst, tLast));
        }
        tEnd = uint64_t{tLast} + 1;
        tFree = tSkip + tRun >= 64 ? 0 : tFree >> (tSkip + tRun) << (tSkip + tRun);
      }
    });
  }
  std::ranges::sort(tResolved, {}, &FTEncodingRange::first);
  return tResolved;
}

uint32_t FTEncodingMapping::CharacterToGlyph(uint32_t iCharacter) const {
  const Ranges& tSorted = Sorted();
  const auto tAfter = std::ranges::upper_bound(tSorted, iCharacter, {}, &FTEncodingRange::first);
  if (tAfter == tSorted.begin()) return 0;
  const FTEncodingRange& tRange = *std::prev(tAfter);
  return iCharacter <= tRange.last ? tRange.GlyphOf(iCharacter, _fBytes) : 0;
}

std::optional<uint32_t> FTEncodingMapping::GlyphToCharacter(uint32_t iGlyph) const {
  if (!_fByGlyph) _fByGlyph = IndexGlyphs();
  const auto tAfter = std::ranges::upper_bound(*_fByGlyph, iGlyph, {}, &FTEncodingInterval::first);
  if (tAfter == _fByGlyph->begin() || iGlyph > std::prev(tAfter)->last) return std::nullopt;
  return static_cast<uint32_t>(iGlyph + std::prev(tAfter)->rank);
}

/// Along a run the character grows with the glyph, so of overlapping runs the one that is the least ahead of its glyphs
/// has the lowest character for each.
FTEncodingMapping::Intervals FTEncodingMapping::IndexGlyphs() const {
  Intervals tByGlyph;
  for (const FTEncodingRange& tRange : _fRanges) {
    const uint64_t tFurther = tRange.Size() - 1;
    if (tRange.rule == Rule::kConstant) {
      tByGlyph.push_back({tRange.glyph, tRange.glyph, Distance(tRange.first, tRange.glyph)});
    } else if (tRange.rule == Rule::kAscending) {
      tByGlyph.push_back({tRange.glyph, tRange.glyph + tFurther, Distance(tRange.first, tRange.glyph)});
    } else if (tRange.rule == Rule::kReduced) {
      // Up to glyph 65536, then from 1 on; a third time round only higher characters would come.
      const uint64_t tGlyph = FTReduceGlyph(tRange.glyph);
      const uint64_t tRoom = 65536 - tGlyph;
      tByGlyph.push_back({tGlyph, tGlyph + std::min(tFurther, tRoom), Distance(tRange.first, tGlyph)});
      if (tFurther > tRoom) {
        tByGlyph.push_back({1, std::min<uint64_t>(tFurther - tRoom, 65536), Distance(tRange.first + tRoom, 0)});
      }
    }
  }
  IndexArrays(tByGlyph);
  return FTResolveOverlaps(std::move(tByGlyph));
}

/// Arrays may share their words: for each word only the lowest of its characters matters, and each word is read once
/// for a delta.
void FTEncodingMapping::IndexArrays(Intervals& ioByGlyph) const {
  // Words at even and odd positions and under different deltas are told apart by the bits above their numbers.
  constexpr uint32_t kParityBit = 32;
  constexpr uint32_t kDeltaBit = 33;
  Intervals tByWord;
  for (const FTEncodingRange& tRange : _fRanges) {
    if (tRange.rule != Rule::kArray) continue;
    const uint64_t tWord =
        uint64_t{tRange.delta} << kDeltaBit | uint64_t{tRange.glyph & 1} << kParityBit | tRange.glyph / 2;
    tByWord.push_back({tWord, tWord + tRange.Size() - 1, Distance(tRange.first, tRange.glyph / 2)});
  }
  if (tByWord.empty()) return;

  std::vector<uint64_t> tLowest(65536, kNoCharacter);
  for (const FTEncodingInterval& tPiece : FTResolveOverlaps(std::move(tByWord))) {
    const uint64_t tDelta = tPiece.first >> kDeltaBit;
    const uint64_t tParity = tPiece.first >> kParityBit & 1;
    for (uint64_t tWord = Tova::Wrap32(tPiece.first); tWord <= Tova::Wrap32(tPiece.last); ++tWord) {
      const uint16_t tEntry = _fBytes.U16(2 * tWord + tParity);
      if (tEntry == 0) continue;
      uint64_t& tCharacter = tLowest[Tova::Wrap16(tEntry + tDelta)];
      tCharacter = std::min(tCharacter, tWord + static_cast<uint64_t>(tPiece.rank));
    }
  }
  for (uint64_t tGlyph = 0; tGlyph < tLowest.size(); ++tGlyph) {
    if (tLowest[tGlyph] == kNoCharacter) continue;
    ioByGlyph.push_back({tGlyph, tGlyph, Distance(tLowest[tGlyph], tGlyph)});
  }
}

uint64_t FTEncodingMapping::PairCount() const {
  if (!_fPairCount) {
    const FTEncodingGlyphWords tWords(_fBytes, _fRanges);
    uint64_t tCount = 0;
    for (const FTEncodingRange& tRange : _fRanges) tCount += tWords.CountMapped(tRange);
    _fPairCount = tCount;
  }
  return *_fPairCount;
}

const std::vector<FTEncodingPair>& FTEncodingMapping::Pairs() const {
  if (_fPairs) return *_fPairs;
  if (PairCount() > FTLimits::Get().maxEncodingPairs) {
    FTThrow("PairCount() > maxEncodingPairs", "The font has an invalid 'cmap' table");
  }
  const FTEncodingGlyphWords tWords(_fBytes, _fRanges);
  std::vector<FTEncodingPair> tPairs;
  tPairs.reserve(PairCount());
  for (const FTEncodingRange& tRange : _fRanges) {
    tWords.ForEachBlock(tRange, [&](uint32_t iFirst, uint64_t iMask) {
      for (; iMask != 0; iMask &= iMask - 1) {
        const uint32_t tCharacter = iFirst + static_cast<uint32_t>(std::countr_zero(iMask));
        tPairs.push_back({tCharacter, tRange.GlyphOf(tCharacter, _fBytes)});
      }
    });
  }
  std::ranges::stable_sort(tPairs, {}, &FTEncodingPair::character);
  return _fPairs.emplace(std::move(tPairs));
}
