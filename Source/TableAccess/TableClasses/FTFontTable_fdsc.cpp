#include "TableAccess/TableClasses/FTFontTable_fdsc.h"

bool FTFontTable_fdsc::GetIndDescriptor(uint64_t iIndex, uint32_t& oTag, int32_t& oValue) const {
  const uint64_t tAt = 8 + 8 * iIndex;
  if (iIndex >= GetDescriptorCount() || !Bytes().Holds(tAt, 8)) return false;
  oTag = Bytes().U32(tAt);
  oValue = Bytes().S32(tAt + 4);
  return true;
}

bool FTFontTable_fdsc::GetDescriptor(uint32_t iTag, int32_t& oValue) const {
  uint32_t tTag = 0;
  int32_t tValue = 0;
  for (uint64_t i = 0; GetIndDescriptor(i, tTag, tValue); ++i) {
    if (tTag != iTag) continue;
    oValue = tValue;
    return true;
  }
  return false;
}

int32_t FTFontTable_fdsc::GetAngle() const {
  int32_t tAngle = 0;
  return GetDescriptor(FTTag("slnt"), tAngle) ? tAngle : 0;
}
