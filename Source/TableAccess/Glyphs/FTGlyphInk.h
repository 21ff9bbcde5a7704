#pragma once

#include <cstdint>

#include "Platform/ByteView.h"
#include "TableAccess/Glyphs/FTGlyphLocations.h"

class FTWorkBudget;

/// Tells whether TrueType glyphs draw anything, from the headers of their records alone: a glyph without contours, with
/// a box of no width or height, or made of such glyphs is blank, and so is one that the font does not have. Compound
/// glyphs that go too deep or too far count as having ink. See "glyf — Glyph Data" of the OpenType specification.
///
/// Borrows the bytes of both tables and the budget, to which it charges a step for each record that it looks at.
class FTGlyphInk {
 public:
  FTGlyphInk(Tova::ByteView iGlyphs, const FTGlyphLocations& iLocations, FTWorkBudget& ioBudget)
      : _fBytes(iGlyphs), _fLocations(iLocations), _fBudget(&ioBudget) {}

  bool IsBlank(uint32_t iGlyph) const;

 private:
  bool IsBlank(uint32_t iGlyph, uint32_t iDepth, uint32_t& ioComponents) const;
  bool AreComponentsBlank(Tova::ByteView iRecord, uint32_t iDepth, uint32_t& ioComponents) const;

  Tova::ByteView _fBytes;
  FTGlyphLocations _fLocations;
  FTWorkBudget* _fBudget;
};
