#pragma once

#include <array>

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

// Version is 16.16; metrics are in font units.
#define FT_HHEA_FIELDS(FIELD)         \
  FIELD(uint32_t, Version)            \
  FIELD(int16_t, Ascender)            \
  FIELD(int16_t, Descender)           \
  FIELD(int16_t, LineGap)             \
  FIELD(uint16_t, AdvanceMax)         \
  FIELD(int16_t, SideBearingMin)      \
  FIELD(int16_t, OtherSideBearingMin) \
  FIELD(int16_t, ExtentMax)           \
  FIELD(int16_t, CaretSlopeRise)      \
  FIELD(int16_t, CaretSlopeRun)       \
  FIELD(int16_t, CaretOffset)         \
  FIELD(FTReservedWords, Filler)      \
  FIELD(int16_t, MetricDataFormat)    \
  FIELD(uint16_t, NumberLongMetrics)

/// The four reserved words of a metrics header.
using FTReservedWords = std::array<int16_t, 4>;

/// The horizontal header. Bytes: 36, as in "hhea — Horizontal Header Table" of the OpenType specification. Needs no
/// other table.
class FTFontTable_hhea : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_hhea, FTFontTable, "hhea")
  FT_FIXED_LAYOUT(FT_HHEA_FIELDS, 36)
};

/// The vertical header, with the layout and the names of the horizontal one ("vhea — Vertical Header Table").
class FTFontTable_vhea : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_vhea, FTFontTable, "vhea")
  FT_FIXED_LAYOUT(FT_HHEA_FIELDS, 36)
};
