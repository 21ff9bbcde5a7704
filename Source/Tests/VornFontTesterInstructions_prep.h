#pragma once

#include "TableAccess/TableClasses/TagOnlyTables.h"
#include "Tests/TableTester.h"

/// Walks the control-value program, which is the whole table 'prep'. Needs no other table.
class VornFontTesterInstructions_prep : public TableTester<FTFontTable_prep> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.prep.instructions",
      .types = {TestType::kStructure},
      .target = "prep",
      .prefix = "prep",
      .name = "Control-value program instructions",
      .description =
          "Walks the instructions of the control-value program ('prep'): known opcodes, data of push instructions "
          "inside the program, balanced conditions and definitions."};
  using TableTester::TableTester;
  void CheckTable(const FTFontTable_prep& iTable) const override;
};

inline constexpr VornFontTestEntry TestInstructions_prep = RunTester<VornFontTesterInstructions_prep>;
