#pragma once

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// The font descriptors, which tell the styles of a family apart. Bytes: version 16.16, descriptor count u32, then a
/// tag u32 and a value 16.16 for each descriptor. Needs no other table.
class FTFontTable_fdsc : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_fdsc, FTFontTable, "fdsc")

  /// The value of the first 'slnt' descriptor, in degrees; 0 without one.
  virtual int32_t GetAngle() const;
};
