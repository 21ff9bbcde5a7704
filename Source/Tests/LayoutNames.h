#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TableAccess/TableClasses/FTFontTable_feat.h"

/// Which name codes the records of a font's 'name' table have, by code. Read from the raw records, since the accessor
/// refuses a table of which one is broken. None without a 'name' table.
std::optional<std::vector<bool>> ReadNameCodes(const FTFont_sfnt& iFont);

/// The features that a font's 'feat' table names, by their types, as far as the table holds them.
class FeatureNames {
 public:
  explicit FeatureNames(const FTFont_sfnt& iFont);

  /// Whether the font has a 'feat' table.
  bool HasTable() const { return _fTable != nullptr; }
  bool Has(uint16_t iType) const { return _fNames.contains(iType); }
  /// The first name of the type; null without one.
  const FTFeatureName* Find(uint16_t iType) const;
  /// The settings of a name that the table holds whole.
  uint64_t CountSettings(const FTFeatureName& iName) const;
  uint16_t GetSetting(const FTFeatureName& iName, uint64_t iIndex) const {
    return _fTable->Bytes().U16(iName.fSettingTable + FTFontTable_feat::kSettingSize * iIndex);
  }

 private:
  const FTFontTable_feat* _fTable = nullptr;
  std::unordered_map<uint16_t, FTFeatureName> _fNames;
};
