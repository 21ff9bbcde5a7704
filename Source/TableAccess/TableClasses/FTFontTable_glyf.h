#pragma once

#include <cstdint>
#include <memory>

#include "TableAccess/Glyphs/FTTrueTypeGlyph.h"
#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// The glyph outlines. Bytes: a record for each glyph, where 'loca' says; see FTGlyphSet. As in "glyf — Glyph Data" of
/// the OpenType specification.
///
/// Needs 'loca' (and 'head' through it) and the font's glyph count. Glyphs decode themselves when they are asked; a
/// table whose glyphs could not be made has none.
class FTFontTable_glyf : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_glyf, FTFontTable, "glyf")

  FTFontTable_glyf(const FTFontTable_glyf& iOther) : FTFontTable(iOther) {}
  FTFontTable_glyf& operator=(const FTFontTable_glyf& iOther);

  void ReadDataInternal() const override;

  /// Glyphs by index; empty when there are none. Valid as long as the table.
  class GlyphList {
   public:
    explicit GlyphList(FTGlyphSet* iGlyphs) : _fGlyphs(iGlyphs) {}
    uint16_t size() const { return _fGlyphs ? _fGlyphs->Count() : uint16_t{0}; }
    FTTrueTypeGlyph operator[](uint16_t iIndex) const { return {*_fGlyphs, iIndex}; }

   private:
    FTGlyphSet* _fGlyphs;
  };
  GlyphList GetGlyphs() const {
    ReadData();
    return GlyphList(_fGlyphs.get());
  }
  /// None for an index without a glyph.
  FTTrueTypeGlyph GetGlyph(uint64_t iIndex) const {
    const GlyphList tGlyphs = GetGlyphs();
    return iIndex < tGlyphs.size() ? tGlyphs[static_cast<uint16_t>(iIndex)] : FTTrueTypeGlyph();
  }
  void ClearGlyphData() const { _fGlyphs.reset(); }

 private:
  mutable std::shared_ptr<FTGlyphSet> _fGlyphs;
};
