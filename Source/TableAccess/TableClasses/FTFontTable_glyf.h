#pragma once

#include <memory>
#include <span>

#include "TableAccess/AncillaryClasses/FTGlyphPoints.h"
#include "TableAccess/AncillaryClasses/FTGlyphStore.h"
#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// The glyph outlines. Bytes: a record for each glyph, where 'loca' says; see FTTrueTypeGlyph. As in "glyf — Glyph
/// Data" of the OpenType specification.
///
/// Needs 'loca' (and 'head' through it) and the font's glyph count. Owns the glyphs, which it makes all at once and
/// which decode themselves when they are asked; a table whose glyphs could not be made has none.
class FTFontTable_glyf : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_glyf, FTFontTable, "glyf")

  FTFontTable_glyf(const FTFontTable_glyf& iOther) : FTFontTable(iOther) {}
  FTFontTable_glyf& operator=(const FTFontTable_glyf& iOther);

  void ReadDataInternal() const override;

  /// By glyph index; empty when there are none.
  std::span<const FTTrueTypeGlyph* const> GetGlyphs() const;
  /// Null for an index without a glyph.
  const FTTrueTypeGlyph* GetGlyph(uint64_t iIndex) const;
  void ClearGlyphData() const;

  /// The room in which glyphs decode their points.
  FTGlyphPoints& SharedPoints() const { return _fPoints; }
  /// Takes note that a glyph is about to decode so many end points, instruction bytes, points or components. Throws "A
  /// memory allocation operation failed" when the glyphs of this table amount to more than its bytes could honestly
  /// hold, as they do when their records overlap.
  void ChargeDecoding(uint64_t iItems) const;

 private:
  mutable std::unique_ptr<const FTGlyphStore> _fGlyphs;
  mutable FTGlyphPoints _fPoints;
  mutable uint64_t _fDecodedItems = 0;
};
