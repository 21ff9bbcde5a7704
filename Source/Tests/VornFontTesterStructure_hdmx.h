#pragma once

#include "TableAccess/TableClasses/FTFontTable_hdmx.h"
#include "Tests/TableTester.h"

/// Judges the header of 'hdmx': version, table size, number and size of the device records. Needs the font's glyph
/// count. What the records hold is VornFontTesterMetrics' business.
class VornFontTesterStructure_hdmx : public TableTester<FTFontTable_hdmx> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.hdmx.structure",
      .types = {TestType::kStructure},
      .target = "hdmx",
      .prefix = "hdmx",
      .name = "Device metrics structure",
      .description = "Checks the version of the 'hdmx' table and the number and the size of its records."};
  using TableTester::TableTester;
  void CheckTable(const FTFontTable_hdmx& iTable) const override;
};

inline constexpr VornFontTestEntry TestStructure_hdmx = RunTester<VornFontTesterStructure_hdmx>;
