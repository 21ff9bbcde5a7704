#pragma once

#include "TableAccess/TableClasses/FTFontTable_feat.h"
#include "Tests/LayoutTester.h"

/// Judges the names of the layout features: their order, flags and settings, the name codes, and whether the chains of
/// 'morx' and 'mort' have the features. Needs no other table.
class VornFontTesterStructure_feat : public LayoutTester<FTFontTable_feat> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.feat.structure",
      .types = {TestType::kStructure},
      .target = "feat",
      .prefix = "feat",
      .name = "Feature names",
      .description =
          "Checks the features and settings that the 'feat' table lists, their flags and their names, and "
          "that the font's chains use them."};
  using LayoutTester::LayoutTester;

 protected:
  void Examine(const FTFontTable_feat& iTable, const LayoutTable& iBytes) const override;

 private:
  class NameCodeCheck;
  void CheckNames(const FTFontTable_feat& iTable, const LayoutTable& iBytes) const;
  void CheckName(const LayoutTable& iBytes, const FTFeatureName& iName, uint64_t iAt, uint64_t iNamesEnd) const;
  void CheckSettings(const LayoutTable& iBytes, const FTFeatureName& iName, NameCodeCheck& ioNameCodes) const;
  void CheckUse(const FTFontTable_feat& iTable, const LayoutTable& iBytes) const;
};

inline constexpr VornFontTestEntry TestStructure_feat = RunTester<VornFontTesterStructure_feat>;
