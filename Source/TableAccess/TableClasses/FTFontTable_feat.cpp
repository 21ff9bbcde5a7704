#include "TableAccess/TableClasses/FTFontTable_feat.h"

bool FTFontTable_feat::GetIndNameData(uint64_t iIndex, FTFeatureName& oName) const {
  if (iIndex >= GetNameCount() || !Bytes().Holds(kHeaderSize + iIndex * kNameSize, kNameSize)) return false;
  const Tova::ByteView tName = Bytes().Slice(kHeaderSize + iIndex * kNameSize, kNameSize);
  oName = {tName.U16(0), tName.U16(2), tName.U32(4), tName.U16(8), tName.S16(10)};
  return true;
}

bool FTFontTable_feat::GetIndSetting(uint64_t iIndex, uint64_t iSetting, uint16_t& oSetting,
                                     uint16_t& oNameIndex) const {
  FTFeatureName tName;
  if (!GetIndNameData(iIndex, tName) || iSetting >= tName.fSettingCount) return false;
  const uint64_t tAt = tName.fSettingTable + iSetting * kSettingSize;
  if (!Bytes().Holds(tAt, kSettingSize)) return false;
  oSetting = Bytes().U16(tAt);
  oNameIndex = Bytes().U16(tAt + 2);
  return true;
}

bool FTFontTable_feat::FindName(uint16_t iType, uint64_t& oIndex) const {
  FTFeatureName tName;
  for (uint64_t i = 0; GetIndNameData(i, tName); ++i) {
    if (tName.fFeatureType != iType) continue;
    oIndex = i;
    return true;
  }
  return false;
}
