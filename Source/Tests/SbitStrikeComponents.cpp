#include <algorithm>

#include "Tests/SbitStrikeImages.h"

// Images that are made of other glyphs' images, and which of several subtables is asked for a glyph's.

namespace {

constexpr uint64_t kComponentSize = 4;

/// The components that lie inside an image with them.
Tova::ByteView ComponentsIn(Tova::ByteView iImage, uint16_t iFormat) {
  const uint64_t tBefore = iFormat == 8 ? 8 : 10;
  const uint64_t tHeld = std::min<uint64_t>(iImage.U16(tBefore - 2), iImage.From(tBefore).Size() / kComponentSize);
  return iImage.Slice(tBefore, tHeld * kComponentSize);
}

}  // namespace

/// The index subtables with a range, by their place in the index.
static std::vector<uint32_t> SubtablesWithRange(const std::vector<FTBitmapSubtable>& iSubtables) {
  std::vector<uint32_t> tIndices;
  for (uint32_t i = 0; i < iSubtables.size(); ++i) {
    if (iSubtables[i].firstGlyph <= iSubtables[i].lastGlyph) tIndices.push_back(i);
  }
  return tIndices;
}

std::optional<SbitStrikeImages::Neighbours> SbitStrikeImages::FirstOverlap() const {
  std::vector<uint32_t> tIndices = SubtablesWithRange(_fSubtables);
  std::ranges::stable_sort(tIndices, {}, [this](uint32_t i) { return _fSubtables[i].firstGlyph; });
  const auto tFound = std::ranges::adjacent_find(tIndices, [this](uint32_t iBefore, uint32_t iNext) {
    return _fSubtables[iNext].firstGlyph <= _fSubtables[iBefore].lastGlyph;
  });
  return tFound == tIndices.end() ? std::nullopt : std::optional<Neighbours>({tFound[0], tFound[1]});
}

std::optional<uint32_t> SbitStrikeImages::FirstOutOfOrder() const {
  const std::vector<uint32_t> tIndices = SubtablesWithRange(_fSubtables);
  const auto tFound = std::ranges::adjacent_find(tIndices, [this](uint32_t iBefore, uint32_t iNext) {
    return _fSubtables[iNext].firstGlyph < _fSubtables[iBefore].firstGlyph;
  });
  return tFound == tIndices.end() ? std::nullopt : std::optional(tFound[1]);
}

/// Readers ask the first subtable whose range holds a glyph, and no other.
void SbitStrikeImages::FindOwners() {
  std::vector<FTEncodingInterval> tRanges;
  for (const uint32_t i : SubtablesWithRange(_fSubtables)) {
    tRanges.push_back({_fSubtables[i].firstGlyph, _fSubtables[i].lastGlyph, i});
  }
  _fOwners = FTResolveOverlaps(std::move(tRanges));
}

std::optional<uint32_t> SbitStrikeImages::OwnerOf(uint32_t iGlyph) const {
  const auto tOwner = std::ranges::lower_bound(_fOwners, iGlyph, {}, &FTEncodingInterval::last);
  if (tOwner == _fOwners.end() || tOwner->first > iGlyph) return std::nullopt;
  return static_cast<uint32_t>(tOwner->rank);
}

/// The entry of a glyph in the range of a subtable that is not skipped; the first where a list has several.
std::optional<uint64_t> SbitStrikeImages::EntryOf(uint32_t iSubtable, uint32_t iGlyph) {
  const Subtable& tSubtable = _fSubtables[iSubtable];
  if (!tSubtable.HasGlyphList()) return iGlyph - tSubtable.firstGlyph;
  const auto [tList, tIsNew] = _fLists.try_emplace(iSubtable);
  if (tIsNew) {
    for (uint64_t i = 0; i < tSubtable.EntryCount(); ++i) tList->second.try_emplace(tSubtable.Image(i).glyph, i);
  }
  const auto tEntry = tList->second.find(iGlyph);
  return tEntry == tList->second.end() ? std::nullopt : std::optional(tEntry->second);
}

/// Whether readers find an image for the glyph, or might find one where this examination did not look.
bool SbitStrikeImages::HasImage(uint32_t iGlyph) {
  const std::optional<uint32_t> tOwner = OwnerOf(iGlyph);
  if (!tOwner) return false;
  if (_fSkipped[*tOwner]) return true;
  const std::optional<uint64_t> tEntry = EntryOf(*tOwner, iGlyph);
  return tEntry && _fSubtables[*tOwner].Image(*tEntry).length > 0;
}

/// Of the measured images with components those that readers find for their glyph.
void SbitStrikeImages::SelectComposites() {
  for (const auto& [tSubtable, tEntry, tImage] : _fCandidates) {
    if (OwnerOf(tImage.glyph) != tSubtable || EntryOf(tSubtable, tImage.glyph) != tEntry) continue;
    const Tova::ByteView tBytes = _fLocation.Data().Slice(tImage.start, static_cast<uint64_t>(tImage.length));
    _fComposites.push_back({tImage.glyph, ComponentsIn(tBytes, tImage.format)});
  }
}

bool SbitStrikeImages::CheckComponents(Budget& ioBudget) {
  for (const auto& [tGlyph, tComponents] : _fComposites) {
    const uint64_t tCount = tComponents.Size() / kComponentSize;
    if (!ioBudget.Spend(tCount)) return false;
    for (uint64_t i = 0; i < tCount; ++i) {
      const uint32_t tComponent = tComponents.U16(kComponentSize * i);
      if (_fGlyphCount > 0 && tComponent >= _fGlyphCount) {
        Count(kComponentBeyondFont, {tGlyph, tComponent});
      } else if (!HasImage(tComponent)) {
        Count(kComponentWithoutImage, {tGlyph, tComponent});
      }
    }
  }
  CheckCircles();
  return true;
}

/// Takes away images all of whose components are ends, again and again; those that stay lead in a circle.
void SbitStrikeImages::CheckCircles() {
  std::map<uint32_t, size_t> tPlaces;
  for (size_t i = 0; i < _fComposites.size(); ++i) tPlaces.emplace(_fComposites[i].glyph, i);
  std::vector<std::vector<size_t>> tUsers(_fComposites.size());
  std::vector<size_t> tOpen(_fComposites.size());  // components that are no ends yet
  for (size_t i = 0; i < _fComposites.size(); ++i) {
    const Tova::ByteView tComponents = _fComposites[i].components;
    for (uint64_t tAt = 0; tAt < tComponents.Size(); tAt += kComponentSize) {
      const auto tPlace = tPlaces.find(tComponents.U16(tAt));
      if (tPlace == tPlaces.end()) continue;
      tUsers[tPlace->second].push_back(i);
      ++tOpen[i];
    }
  }
  std::vector<size_t> tEnds;
  for (size_t i = 0; i < tOpen.size(); ++i) {
    if (tOpen[i] == 0) tEnds.push_back(i);
  }
  while (!tEnds.empty()) {
    const size_t tEnd = tEnds.back();
    tEnds.pop_back();
    for (const size_t tUser : tUsers[tEnd]) {
      if (--tOpen[tUser] == 0) tEnds.push_back(tUser);
    }
  }
  for (size_t i = 0; i < tOpen.size(); ++i) {
    if (tOpen[i] > 0) Count(kComponentCircle, {_fComposites[i].glyph});
  }
}
