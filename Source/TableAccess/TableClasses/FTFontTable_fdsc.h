#pragma once

#include <cstdint>

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// The font descriptors, which tell the styles of a family apart. Bytes: version 16.16, descriptor count u32, then a
/// tag u32 and a value 16.16 for each descriptor. As in "The 'fdsc' table" of the TrueType reference. Needs no other
/// table.
class FTFontTable_fdsc : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_fdsc, FTFontTable, "fdsc")

  uint32_t Version() const { return Bytes().U32(0); }
  /// As stored; the table may hold fewer.
  uint64_t GetDescriptorCount() const { return Bytes().U32(4); }
  /// False for an index beyond the last and for a descriptor that the table does not hold whole.
  bool GetIndDescriptor(uint64_t iIndex, uint32_t& oTag, int32_t& oValue) const;
  /// The value of the first descriptor with the tag; false without one.
  bool GetDescriptor(uint32_t iTag, int32_t& oValue) const;
  /// The value of 'slnt', in degrees (16.16) clockwise from upright; 0 without one.
  int32_t GetAngle() const;
};
