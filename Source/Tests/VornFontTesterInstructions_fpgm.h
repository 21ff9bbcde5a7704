#pragma once

#include "TableAccess/TableClasses/TagOnlyTables.h"
#include "Tests/TableTester.h"

/// Walks the font program, which is the whole table 'fpgm'. Needs no other table.
class VornFontTesterInstructions_fpgm : public TableTester<FTFontTable_fpgm> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.fpgm.instructions",
      .types = {TestType::kStructure},
      .target = "fpgm",
      .prefix = "fpgm",
      .name = "Font program instructions",
      .description =
          "Walks the instructions of the font program ('fpgm'): known opcodes, data of push instructions inside the "
          "program, balanced conditions and definitions."};
  using TableTester::TableTester;
  void CheckTable(const FTFontTable_fpgm& iTable) const override;
};

inline constexpr VornFontTestEntry TestInstructions_fpgm = RunTester<VornFontTesterInstructions_fpgm>;
