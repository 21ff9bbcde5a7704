#include "Tests/LayoutNames.h"

#include <algorithm>

std::optional<std::vector<bool>> ReadNameCodes(const FTFont_sfnt& iFont) {
  if (!iFont.HasTaggedTable(FTTag("name"))) return std::nullopt;
  constexpr uint64_t kHeaderSize = 6;
  constexpr uint64_t kRecordSize = 12;
  const Tova::ByteView tName = iFont.GetTaggedTable(FTTag("name"))->Bytes();
  std::vector<bool> tCodes(65536);
  for (uint64_t i = 0; i < tName.U16(2) && tName.Holds(kHeaderSize + i * kRecordSize, kRecordSize); ++i) {
    tCodes[tName.U16(kHeaderSize + i * kRecordSize + 6)] = true;
  }
  return tCodes;
}

FeatureNames::FeatureNames(const FTFont_sfnt& iFont) {
  if (!iFont.HasTaggedTable(FTFontTable_feat::kTag)) return;
  _fTable = iFont.FindTable<FTFontTable_feat>();
  FTFeatureName tName;
  for (uint64_t i = 0; _fTable->GetIndNameData(i, tName); ++i) _fNames.try_emplace(tName.fFeatureType, tName);
}

const FTFeatureName* FeatureNames::Find(uint16_t iType) const {
  const auto tName = _fNames.find(iType);
  return tName == _fNames.end() ? nullptr : &tName->second;
}

uint64_t FeatureNames::CountSettings(const FTFeatureName& iName) const {
  const uint64_t tHeld = _fTable->Bytes().From(iName.fSettingTable).Size() / FTFontTable_feat::kSettingSize;
  return std::min<uint64_t>(iName.fSettingCount, tHeld);
}
