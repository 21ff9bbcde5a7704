#pragma once

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

// Version is 16.16.
#define FT_MAXP_FIELDS(FIELD)            \
  FIELD(uint32_t, Version)               \
  FIELD(uint16_t, NumGlyphs)             \
  FIELD(uint16_t, MaxPoints)             \
  FIELD(uint16_t, MaxContours)           \
  FIELD(uint16_t, MaxComponentPoints)    \
  FIELD(uint16_t, MaxComponentContours)  \
  FIELD(uint16_t, MaxZones)              \
  FIELD(uint16_t, MaxTwilightPoints)     \
  FIELD(uint16_t, MaxStorage)            \
  FIELD(uint16_t, MaxFunctionDefs)       \
  FIELD(uint16_t, MaxInstructionDefs)    \
  FIELD(uint16_t, MaxStackElements)      \
  FIELD(uint16_t, MaxSizeOfInstructions) \
  FIELD(uint16_t, MaxComponentElements)  \
  FIELD(uint16_t, MaxComponentDepth)

/// The maximum profile. Bytes: 32 in version 1.0; in any other version 6, and the maxima are 0. As in "maxp — Maximum
/// Profile" of the OpenType specification. Needs no other table.
class FTFontTable_maxp : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_maxp, FTFontTable, "maxp")
  FT_FIXED_LAYOUT(FT_MAXP_FIELDS, 32)

  /// Big-endian bytes of the long form (32), whatever the version.
  Tova::Data RebuildDataInternal() const;

  static constexpr uint32_t kLongVersion = 0x00010000;

 private:
  static Tova::ByteView FixedPart(Tova::ByteView iBytes);
};
