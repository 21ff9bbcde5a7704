#include "TableAccess/AncillaryClasses/FTUnicodeMap.h"

#include <algorithm>

#include "TableAccess/AncillaryClasses/FTWorkBudget.h"
#include "TableAccess/FTLimits.h"

namespace {

constexpr uint32_t kLastCharacter = 0x10FFFF;
/// The last code of format 4; U+FFFF only ends its segments.
constexpr uint32_t kLastSegmentCode = 0xFFFE;

/// The part of a segment or group that those before it have not covered.
class Uncovered {
 public:
  Uncovered(uint32_t iLimit, FTWorkBudget& ioBudget) : _fLimit(iLimit), _fBudget(ioBudget) {}

  /// Calls the action with each code from iFirst to iLast that lies behind all ranges so far.
  template <class Action>
  void ForEach(uint32_t iFirst, uint32_t iLast, Action iAction) {
    if (iFirst > iLast) return;
    const uint64_t tFirst = std::max<uint64_t>(iFirst, _fNext);
    const uint64_t tEnd = uint64_t{std::min(iLast, _fLimit)} + 1;
    if (tFirst < tEnd) _fBudget.Charge(tEnd - tFirst);
    for (uint64_t c = tFirst; c < tEnd; ++c) {
      iAction(static_cast<uint32_t>(c));
    }
    Skip(iFirst, iLast);
  }
  void Skip(uint32_t iFirst, uint32_t iLast) {
    if (iFirst <= iLast) _fNext = std::max(_fNext, uint64_t{iLast} + 1);
  }

 private:
  uint32_t _fLimit;
  FTWorkBudget& _fBudget;
  uint64_t _fNext = 0;
};

void ReadFormat4(Tova::ByteView iBytes, FTWorkBudget& ioBudget, FTGlyphPages& oGlyphs) {
  const uint64_t tCount = iBytes.U16(6) / 2;
  const uint64_t tEnds = 14;
  const uint64_t tStarts = tEnds + 2 * tCount + 2;
  const uint64_t tDeltas = tStarts + 2 * tCount;
  const uint64_t tOffsets = tDeltas + 2 * tCount;
  Uncovered tUncovered(kLastSegmentCode, ioBudget);
  for (uint64_t i = 0; i < tCount; ++i) {
    const uint32_t tStart = iBytes.U16(tStarts + 2 * i);
    const uint16_t tDelta = iBytes.U16(tDeltas + 2 * i);
    const uint64_t tOffset = iBytes.U16(tOffsets + 2 * i);
    const uint64_t tWords = tOffsets + 2 * i + tOffset;
    tUncovered.ForEach(tStart, iBytes.U16(tEnds + 2 * i), [&](uint32_t iCode) {
      const uint32_t tWord = tOffset == 0 ? iCode : iBytes.U16(tWords + uint64_t{2} * (iCode - tStart));
      if (tOffset == 0 || tWord != 0) oGlyphs.Add(iCode, Tova::Wrap16(tWord + tDelta));
    });
  }
}

/// Formats 6 and 10: glyph words for the characters from iFirst on. Returns the last of these, 0 without any.
uint64_t ReadWords(Tova::ByteView iBytes, uint32_t iFirst, uint64_t iCount, uint64_t iWords, uint32_t iLimit,
                   FTWorkBudget& ioBudget, FTGlyphPages& oGlyphs) {
  const uint64_t tRoom = iBytes.Size() > iWords ? (iBytes.Size() - iWords) / 2 : 0;
  const uint64_t tHeld = std::min(iCount, tRoom);
  ioBudget.Charge(tHeld);
  for (uint64_t i = 0; i < tHeld && iFirst + i <= iLimit; ++i) {
    oGlyphs.Add(static_cast<uint32_t>(iFirst + i), iBytes.U16(iWords + 2 * i));
  }
  return tHeld == 0 ? 0 : iFirst + tHeld - 1;
}

/// Formats 12 and 13. Returns the highest end of a group.
uint64_t ReadGroups(Tova::ByteView iBytes, bool iOneGlyph, FTWorkBudget& ioBudget, FTGlyphPages& oGlyphs) {
  constexpr uint64_t kGroups = 16;
  constexpr uint64_t kGroupSize = 12;
  const uint64_t tRoom = iBytes.Size() > kGroups ? (iBytes.Size() - kGroups) / kGroupSize : 0;
  const uint64_t tHeld = std::min<uint64_t>(iBytes.U32(12), tRoom);
  Uncovered tUncovered(kLastCharacter, ioBudget);
  uint64_t tReach = 0;
  for (uint64_t i = 0; i < tHeld; ++i) {
    const Tova::ByteView tGroup = iBytes.Slice(kGroups + kGroupSize * i, kGroupSize);
    const uint32_t tStart = tGroup.U32(0);
    const uint32_t tEnd = tGroup.U32(4);
    const uint32_t tGlyph = tGroup.U32(8);
    if (tStart <= tEnd) tReach = std::max<uint64_t>(tReach, tEnd);
    if (iOneGlyph && Tova::Wrap16(tGlyph) == 0) {
      tUncovered.Skip(tStart, tEnd);
      continue;
    }
    tUncovered.ForEach(tStart, tEnd, [&](uint32_t iCode) {
      oGlyphs.Add(iCode, Tova::Wrap16(iOneGlyph ? tGlyph : uint64_t{tGlyph} + (iCode - tStart)));
    });
  }
  return tReach;
}

/// Reads the subtable and returns its reach.
uint64_t ReadGlyphs(Tova::ByteView iBytes, FTWorkBudget& ioBudget, FTGlyphPages& oGlyphs) {
  switch (iBytes.U16(0)) {
    case 4:
      ReadFormat4(iBytes, ioBudget, oGlyphs);
      return 0;
    case 6:
      ReadWords(iBytes, iBytes.U16(6), iBytes.U16(8), 10, 0xFFFF, ioBudget, oGlyphs);
      return 0;
    case 10:
      return ReadWords(iBytes, iBytes.U32(12), iBytes.U32(16), 20, kLastCharacter, ioBudget, oGlyphs);
    case 12:
      return ReadGroups(iBytes, false, ioBudget, oGlyphs);
    default:
      return ReadGroups(iBytes, true, ioBudget, oGlyphs);
  }
}

}  // namespace

FTGlyphPages::Page& FTGlyphPages::MakePage(uint32_t iNumber) {
  if (iNumber >= _fPlaces.size()) _fPlaces.resize(iNumber + 1);
  if (_fPlaces[iNumber] == 0) {
    _fPages.push_back({iNumber, {}, {}});
    _fPlaces[iNumber] = static_cast<uint16_t>(_fPages.size());
  }
  return _fPages[_fPlaces[iNumber] - 1U];
}

void FTGlyphPages::Add(uint32_t iCharacter, uint16_t iGlyph) {
  if (iGlyph == 0) return;
  Page& tPage = MakePage(iCharacter / kPageSize);
  const uint32_t tPlace = iCharacter % kPageSize;
  if (tPage.glyphs[tPlace] != 0) return;
  tPage.glyphs[tPlace] = iGlyph;
  tPage.words[tPlace / 32] |= uint32_t{1} << tPlace % 32;
  ++_fCount;
}

void FTGlyphPages::AddAll(const FTGlyphPages& iOther) {
  if (Empty()) {
    *this = iOther;
    return;
  }
  iOther.ForEach([this](uint32_t iCharacter, uint16_t iGlyph) {
    Add(iCharacter, iGlyph);
    return true;
  });
}

uint16_t FTGlyphPages::GlyphFor(uint32_t iCharacter) const {
  const Page* tPage = FindPage(iCharacter / kPageSize);
  return tPage ? tPage->glyphs[iCharacter % kPageSize] : uint16_t{0};
}

const FTGlyphPages::Page* FTGlyphPages::FindPage(uint32_t iNumber) const {
  const uint16_t tPlace = iNumber < _fPlaces.size() ? _fPlaces[iNumber] : uint16_t{0};
  return tPlace == 0 ? nullptr : &_fPages[tPlace - 1U];
}

std::vector<const FTGlyphPages::Page*> FTGlyphPages::Pages() const {
  std::vector<const Page*> tPages;
  tPages.reserve(_fPages.size());
  for (const uint16_t tPlace : _fPlaces) {
    if (tPlace != 0) tPages.push_back(&_fPages[tPlace - 1U]);
  }
  return tPages;
}

std::optional<uint32_t> FTGlyphPages::FirstFrom(uint32_t iCharacter) const {
  for (uint32_t tNumber = iCharacter / kPageSize; tNumber < _fPlaces.size(); ++tNumber) {
    const Page* tPage = FindPage(tNumber);
    if (!tPage) continue;
    for (uint32_t c = std::max(iCharacter, tNumber * kPageSize); c < (tNumber + 1) * kPageSize; ++c) {
      if (tPage->glyphs[c % kPageSize] != 0) return c;
    }
  }
  return std::nullopt;
}

std::optional<uint32_t> FTGlyphPages::LastUpTo(uint32_t iCharacter) const {
  const auto tPages = std::min<uint64_t>(_fPlaces.size(), iCharacter / kPageSize + 1);
  for (auto tNumber = static_cast<uint32_t>(tPages); tNumber-- > 0;) {
    const Page* tPage = FindPage(tNumber);
    if (!tPage) continue;
    for (uint32_t c = std::min(iCharacter, tNumber * kPageSize + kPageSize - 1) + 1; c-- > tNumber * kPageSize;) {
      if (tPage->glyphs[c % kPageSize] != 0) return c;
    }
  }
  return std::nullopt;
}

bool FTUnicodeMap::Record::IsUnicode() const {
  const bool tIsUnicodePlatform = platform == 0 && script != 5;
  const bool tIsMicrosoftUnicode = platform == 3 && (script == 1 || script == 10);
  return format != 14 && (tIsUnicodePlatform || tIsMicrosoftUnicode);
}

bool FTUnicodeMap::Record::IsFull() const { return platform == 3 ? script == 10 : script == 4 || script == 6; }

bool FTUnicodeMap::Record::IsReadable() const {
  return inside && (format == 4 || format == 6 || format == 10 || format == 12 || format == 13);
}

FTUnicodeMap::FTUnicodeMap(Tova::ByteView iCmap, FTWorkBudget& ioBudget) {
  const uint64_t tRoom = iCmap.Size() > 4 ? (iCmap.Size() - 4) / 8 : 0;
  const uint64_t tHeld = std::min<uint64_t>(iCmap.U16(2), tRoom);
  for (uint64_t i = 0; i < tHeld; ++i) {
    const Tova::ByteView tBytes = iCmap.Slice(4 + 8 * i, 8);
    const uint32_t tOffset = tBytes.U32(4);
    const Record tRecord = {static_cast<uint32_t>(i), tBytes.U16(0),          tBytes.U16(2), tOffset,
                            iCmap.U16(tOffset),       iCmap.Holds(tOffset, 2)};
    _fRecords.push_back(tRecord);
  }
  for (const Record& tRecord : _fRecords) {
    if (_fEncodings.size() == FTLimits::Get().maxUnicodeEncodings) break;
    const bool tKnown = std::ranges::any_of(
        _fEncodings, [&](const Encoding& iEncoding) { return iEncoding.record.offset == tRecord.offset; });
    if (!tRecord.IsUnicode() || !tRecord.IsReadable() || tKnown) continue;
    Encoding& tEncoding = _fEncodings.emplace_back(Encoding{tRecord, {}, 0});
    tEncoding.reach = ReadGlyphs(iCmap.From(tRecord.offset), ioBudget, tEncoding.glyphs);
  }
  for (const bool tFull : {true, false}) {
    for (const Encoding& tEncoding : _fEncodings) {
      if (tEncoding.record.IsFull() == tFull) _fGlyphs.AddAll(tEncoding.glyphs);
    }
  }
}
