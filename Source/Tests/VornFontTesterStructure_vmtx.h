#pragma once

#include "TableAccess/TableClasses/FTFontTable_vmtx.h"
#include "Tests/TableTester.h"
#include "Tests/VornFontTesterMetricsTable.h"

/// Judges the vertical metrics of a font; see VornFontTesterMetricsTable.
class VornFontTesterStructure_vmtx : public TableTester<FTFontTable_vmtx, VornFontTesterMetricsTable> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.vmtx.usability",
      .types = {TestType::kUsability},
      .target = "vmtx",
      .prefix = "vmtx",
      .name = "Vertical metrics",
      .description =
          "Checks the size of the 'vmtx' table against the number of glyphs and looks for suspicious heights and "
          "side bearings."};
  using TableTester::TableTester;
  void CheckTable(const FTFontTable_vmtx& iTable) const override;
};

inline constexpr VornFontTestEntry TestUsability_vmtx = RunTester<VornFontTesterStructure_vmtx>;
