#pragma once

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

#define FT_GVAR_FIELDS(FIELD)                \
  FIELD(uint32_t, Version)                   \
  FIELD(uint16_t, GetAxisCount)              \
  FIELD(uint16_t, GetGlobalCoordinateCount)  \
  FIELD(uint32_t, GetGlobalCoordinateOffset) \
  FIELD(uint16_t, GetGlyphCount)             \
  FIELD(uint16_t, GetFlags)                  \
  FIELD(uint32_t, GetDataOffset)

/// The glyph variations. Bytes: a header of 20, then offsets, shared coordinates and the variations of each glyph. As
/// in "gvar — Glyph Variations Table" of the OpenType specification. Needs no other table.
class FTFontTable_gvar : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_gvar, FTFontTable, "gvar")
  FT_FIXED_LAYOUT(FT_GVAR_FIELDS, 20)
};
