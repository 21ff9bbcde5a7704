#pragma once

#include "TableAccess/Glyphs/FTGlyphLocations.h"
#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// Where each glyph lies in 'glyf'. Bytes: an offset for each glyph and one more for the end of the last; u16 each in
/// units of 2 bytes, or u32 in bytes. As in "loca — Index to Location" of the OpenType specification.
///
/// Needs 'head' for the width of the offsets and the font's glyph count. Offsets that the table lacks are 0.
class FTFontTable_loca : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_loca, FTFontTable, "loca")

  void ReadDataInternal() const override;

  /// In bytes from the start of 'glyf'. Both throw "A reference was made to a non-existent glyph" for an index that is
  /// not below the font's glyph count.
  uint64_t GetGlyphOffset(uint16_t iGlyph) const;
  /// The distance to the next offset in bytes; where that is lower, the difference as an unsigned 64-bit number.
  uint64_t GetGlyphLength(uint16_t iGlyph) const;

  const FTGlyphLocations& GetLocations() const {
    ReadData();
    return _fLocations;
  }

 private:
  mutable FTGlyphLocations _fLocations;
};
