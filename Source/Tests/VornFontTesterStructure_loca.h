#pragma once

#include "TableAccess/TableClasses/FTFontTable_loca.h"
#include "Tests/TableTester.h"

/// Judges the size of 'loca', and the order and the range of its offsets. Needs 'head' and 'glyf'; the offset that ends
/// the last glyph is not looked at.
class VornFontTesterStructure_loca : public TableTester<FTFontTable_loca> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.loca.usability",
      .types = {TestType::kUsability, TestType::kStructure},
      .target = "loca",
      .prefix = "loca",
      .name = "Glyph locations",
      .description =
          "Checks the size of the 'loca' table and that its offsets ascend and stay inside the 'glyf' table."};
  using TableTester::TableTester;
  void CheckTable(const FTFontTable_loca& iTable) const override;

 private:
  void CheckSize(uint64_t iSize, uint64_t iExpected) const;
  void CheckOffsets(const FTFontTable_loca& iTable, uint16_t iGlyphCount, uint64_t iGlyfSize) const;
};

inline constexpr VornFontTestEntry TestUsability_loca = RunTester<VornFontTesterStructure_loca>;
