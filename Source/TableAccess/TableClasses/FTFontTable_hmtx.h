#pragma once

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// The metrics of one glyph, in font units: its advance (width or height) and its left or top side bearing, a signed
/// quantity held in 16 bits.
struct FTGlyphMetrics {
  uint16_t advance = 0;
  uint16_t sideBearing = 0;
  bool operator==(const FTGlyphMetrics&) const = default;
};

/// Horizontal metrics. Bytes: as many long entries (advance u16, side bearing i16) as 'hhea' says, then a side bearing
/// (i16) for each further glyph, whose advance is that of the last long entry. As in "hmtx — Horizontal Metrics" of the
/// OpenType specification.
///
/// Needs the font's glyph count and number of long metrics. Values that the table lacks are 0.
class FTFontTable_hmtx : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_hmtx, FTFontTable, "hmtx")

  void ReadDataInternal() const override;

  /// Throws "A reference was made to a non-existent glyph".
  FTGlyphMetrics GetMetrics(uint16_t iGlyph) const;

 private:
  mutable uint16_t _fGlyphCount = 0;
  mutable uint16_t _fLongMetricsCount = 0;
};
