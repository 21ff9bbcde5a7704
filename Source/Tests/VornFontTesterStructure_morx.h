#pragma once

#include "TableAccess/TableClasses/FTFontTable_morx.h"
#include "Tests/LayoutTester.h"

/// Judges the chains of 'morx': features, subtables, lookups and state machines. Needs the glyph count, and 'feat' for
/// the names of features.
class VornFontTesterStructure_morx : public LayoutTester<FTFontTable_morx> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.morx.structure",
      .types = {TestType::kStructure},
      .target = "morx",
      .prefix = "morx",
      .name = "Extended glyph metamorphosis",
      .description =
          "Checks the chains of the 'morx' table and runs through their state machines: bounds, loops without "
          "an end, actions that can never run, marks and stacks."};
  using LayoutTester::LayoutTester;

 protected:
  void Examine(const FTFontTable_morx& iTable, const LayoutTable& iBytes) const override;
};

inline constexpr VornFontTestEntry TestStructure_morx = RunTester<VornFontTesterStructure_morx>;
