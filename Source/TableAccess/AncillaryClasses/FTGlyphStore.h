#pragma once

#include <cstdint>
#include <deque>
#include <vector>

#include "TableAccess/AncillaryClasses/FTCompoundTrueTypeGlyph.h"
#include "TableAccess/AncillaryClasses/FTSimpleTrueTypeGlyph.h"

/// Owns the glyphs of a 'glyf' table: each kind in blocks of its own, where glyphs stay in place, and the list of all
/// of them by glyph index.
struct FTGlyphStore {
  std::deque<FTTrueTypeGlyph> empty;
  std::deque<FTSimpleTrueTypeGlyph> simple;
  std::deque<FTCompoundTrueTypeGlyph> compound;
  std::vector<const FTTrueTypeGlyph*> list;
};
