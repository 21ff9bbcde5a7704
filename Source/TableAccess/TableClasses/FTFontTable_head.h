#pragma once

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

// Version and FontRevision are 16.16; Created and Modified count seconds from 1904-01-01; the box is in font units.
#define FT_HEAD_FIELDS(FIELD)         \
  FIELD(uint32_t, Version)            \
  FIELD(uint32_t, FontRevision)       \
  FIELD(uint32_t, CheckSumAdjustment) \
  FIELD(uint32_t, MagicNumber)        \
  FIELD(uint16_t, Flags)              \
  FIELD(uint16_t, UnitsPerEm)         \
  FIELD(int64_t, Created)             \
  FIELD(int64_t, Modified)            \
  FIELD(int16_t, XMin)                \
  FIELD(int16_t, YMin)                \
  FIELD(int16_t, XMax)                \
  FIELD(int16_t, YMax)                \
  FIELD(uint16_t, ValdourStyle)       \
  FIELD(uint16_t, LowestRecPPEM)      \
  FIELD(int16_t, FontDirectionHint)   \
  FIELD(int16_t, IndexToLocFormat)    \
  FIELD(int16_t, GlyphDataFormat)

/// The font header. Bytes: 54, as in "head — Font Header Table" of the OpenType specification. Needs no other table.
class FTFontTable_head : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_head, FTFontTable, "head")
  FT_FIXED_LAYOUT(FT_HEAD_FIELDS, 54)

  /// Whether 'loca' holds 32-bit offsets. Every format but 1, valid or not, means 16-bit ones.
  bool FontUsesLongGlyphOffsets() const { return IndexToLocFormat() == 1; }
};

/// The header of a bitmap-only font, laid out as 'head'.
class FTFontTable_bhed : public FTFontTable_head {
  FT_TABLE_CLASS(FTFontTable_bhed, FTFontTable_head, "bhed")
};
