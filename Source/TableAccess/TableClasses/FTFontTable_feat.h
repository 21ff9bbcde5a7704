#pragma once

#include <cstdint>

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// A feature of a font, as 'feat' names it.
struct FTFeatureName {
  static constexpr uint16_t kExclusive = 0x8000;        ///< only one of the settings is on at a time
  static constexpr uint16_t kHasDefaultIndex = 0x4000;  ///< the default index is not 0
  static constexpr uint16_t kDefaultIndex = 0x00FF;     ///< into the settings
  static constexpr uint16_t kReserved = 0x3F00;

  uint16_t fFeatureType = 0;
  uint16_t fSettingCount = 0;
  uint32_t fSettingTable = 0;  ///< bytes from the start of 'feat' to the settings
  uint16_t fFlags = 0;
  int16_t fNameIndex = 0;  ///< a name code of 'name'

  bool IsExclusive() const { return (fFlags & kExclusive) != 0; }
  uint16_t GetDefaultIndex() const {
    constexpr uint16_t kSet = kExclusive | kHasDefaultIndex;
    return (fFlags & kSet) == kSet ? fFlags & kDefaultIndex : uint16_t{0};
  }
};

/// The names of the layout features of 'morx' and 'mort' and of their settings. Bytes: version 16.16, name count u16,
/// u16 and u32 reserved, then names of 12 bytes, ascending by type (feature type u16, setting count u16, offset of the
/// settings u32, flags u16, name code i16); settings are a number u16 and a name code i16 each. As in "The 'feat'
/// table" of the TrueType reference. Needs no other table.
class FTFontTable_feat : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_feat, FTFontTable, "feat")

  static constexpr uint64_t kHeaderSize = 12;
  static constexpr uint64_t kNameSize = 12;
  static constexpr uint64_t kSettingSize = 4;

  uint32_t Version() const { return Bytes().U32(0); }
  /// As stored; the table may hold fewer.
  uint64_t GetNameCount() const { return Bytes().U16(4); }
  /// False for an index beyond the last and for a name that the table does not hold whole.
  bool GetIndNameData(uint64_t iIndex, FTFeatureName& oName) const;
  /// A setting of the name with an index; false likewise.
  bool GetIndSetting(uint64_t iIndex, uint64_t iSetting, uint16_t& oSetting, uint16_t& oNameIndex) const;
  /// The index of the first name of the type. The names' order is not relied upon.
  bool FindName(uint16_t iType, uint64_t& oIndex) const;
};
