#pragma once

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

#define FT_JUST_FIELDS(FIELD)       \
  FIELD(uint32_t, Version)          \
  FIELD(uint16_t, Format)           \
  FIELD(uint16_t, HorizontalOffset) \
  FIELD(uint16_t, VerticalOffset)

/// The justification table. Bytes: a header of 10 (version 16.16, format u16, offsets of the data for horizontal and
/// for vertical text, 0 for none); each data: offsets of a class table, a table of width deltas and one of
/// postcompensation actions (u16 each, from the table's start, 0 for none), a lookup table. As in "The 'just' table" of
/// the TrueType reference. Needs no other table.
class FTFontTable_just : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_just, FTFontTable, "just")
  FT_FIXED_LAYOUT(FT_JUST_FIELDS, 10)
};
