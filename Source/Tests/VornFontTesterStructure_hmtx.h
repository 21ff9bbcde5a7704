#pragma once

#include "TableAccess/TableClasses/FTFontTable_hmtx.h"
#include "Tests/TableTester.h"
#include "Tests/VornFontTesterMetricsTable.h"

/// Judges the horizontal metrics of a font; see VornFontTesterMetricsTable.
class VornFontTesterStructure_hmtx : public TableTester<FTFontTable_hmtx, VornFontTesterMetricsTable> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.hmtx.usability",
      .types = {TestType::kUsability},
      .target = "hmtx",
      .prefix = "hmtx",
      .name = "Horizontal metrics",
      .description =
          "Checks the size of the 'hmtx' table against the number of glyphs and looks for suspicious advances and "
          "side bearings."};
  using TableTester::TableTester;
  void CheckTable(const FTFontTable_hmtx& iTable) const override;
};

inline constexpr VornFontTestEntry TestUsability_hmtx = RunTester<VornFontTesterStructure_hmtx>;
