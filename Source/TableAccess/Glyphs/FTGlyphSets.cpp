#include "TableAccess/Glyphs/FTGlyphSets.h"

#include <algorithm>
#include <utility>

#include "TableAccess/FTLimits.h"

std::shared_ptr<FTGlyphSet> FTGlyphSets::Get(Tova::ByteView iGlyphs, const FTGlyphLocations& iLocations,
                                             FTWorkBudget& ioBudget, std::shared_ptr<const void> iOwner) {
  const auto tKept = std::ranges::find_if(_fEntries, [&](const Entry& iEntry) {
    return iEntry.glyphs.use_count() == 1 && iEntry.glyphs->IsOf(iGlyphs, iLocations);
  });
  if (tKept != _fEntries.end()) {
    std::rotate(tKept, tKept + 1, _fEntries.end());
    _fEntries.back().glyphs->ForgetFailures();
    return _fEntries.back().glyphs;
  }
  auto tGlyphs = std::make_shared<FTGlyphSet>(iGlyphs, iLocations, ioBudget);
  if (_fEntries.size() == FTLimits::Get().keptGlyphSets) _fEntries.erase(_fEntries.begin());
  _fEntries.push_back({std::move(iOwner), tGlyphs});
  return tGlyphs;
}
