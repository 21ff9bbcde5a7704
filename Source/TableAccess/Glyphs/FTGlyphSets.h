#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "TableAccess/Glyphs/FTGlyphSet.h"

/// Glyphs of the fonts of one file that were decoded last. Fonts of a collection often have the same outlines; they get
/// the same set, one after the other. A set that a font holds is lent to no other.
class FTGlyphSets {
 public:
  /// The set of these tables, made unless one is kept. iOwner keeps the bytes alive. Throws as FTGlyphSet does.
  std::shared_ptr<FTGlyphSet> Get(Tova::ByteView iGlyphs, const FTGlyphLocations& iLocations, FTWorkBudget& ioBudget,
                                  std::shared_ptr<const void> iOwner);

 private:
  struct Entry {
    std::shared_ptr<const void> owner;
    std::shared_ptr<FTGlyphSet> glyphs;
  };
  std::vector<Entry> _fEntries;  // the last one is that used last
};
