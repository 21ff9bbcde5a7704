#pragma once

#include "TableAccess/TableClasses/FTFontTable_mort.h"
#include "Tests/LayoutTester.h"

/// Judges the chains of 'mort', which 'morx' extends: features, subtables, lookups and state machines. Needs the glyph
/// count, and 'feat' for the names of features.
class VornFontTesterStructure_mort : public LayoutTester<FTFontTable_mort> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.mort.structure",
      .types = {TestType::kStructure},
      .target = "mort",
      .prefix = "mort",
      .name = "Glyph metamorphosis",
      .description =
          "Checks the chains of the 'mort' table and runs through their state machines: bounds, loops without "
          "an end, actions that can never run, marks and stacks."};
  using LayoutTester::LayoutTester;

 protected:
  void Examine(const FTFontTable_mort& iTable, const LayoutTable& iBytes) const override;
};

inline constexpr VornFontTestEntry TestStructure_mort = RunTester<VornFontTesterStructure_mort>;
