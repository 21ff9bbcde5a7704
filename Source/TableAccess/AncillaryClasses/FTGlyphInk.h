#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include "Platform/ByteView.h"

/// Tells whether TrueType glyphs draw anything, from the headers of their records alone: a glyph without contours, with
/// a box of no width or height, or made of such glyphs is blank, and so is one that the font does not have. Compound
/// glyphs that go too deep or too far count as having ink. See "glyf — Glyph Data" of the OpenType specification.
///
/// Borrows the bytes of both tables. Never throws.
class FTGlyphInk {
 public:
  /// Told how many records were looked at; false: nothing more may be looked at, and what is left counts as ink.
  using Spend = std::function<bool(uint64_t iRecords)>;

  FTGlyphInk(Tova::ByteView iLoca, bool iLongOffsets, Tova::ByteView iGlyf, uint32_t iGlyphCount, Spend iSpend)
      : _fLoca(iLoca),
        _fLongOffsets(iLongOffsets),
        _fGlyf(iGlyf),
        _fGlyphCount(iGlyphCount),
        _fSpend(std::move(iSpend)) {}

  bool IsBlank(uint32_t iGlyph) const;

 private:
  bool IsBlank(uint32_t iGlyph, uint32_t iDepth, uint32_t& ioComponents) const;
  bool AreComponentsBlank(Tova::ByteView iRecord, uint32_t iDepth, uint32_t& ioComponents) const;
  uint64_t Offset(uint32_t iIndex) const;

  Tova::ByteView _fLoca;
  bool _fLongOffsets;
  Tova::ByteView _fGlyf;
  uint32_t _fGlyphCount;
  Spend _fSpend;
};
