#pragma once

#include "TableAccess/TableClasses/FTFontTable_glyf.h"
#include "Tests/TableTester.h"

/// Walks the instructions of every simple glyph; those of compound glyphs are not looked at. Needs the glyphs' tables.
class VornFontTesterInstructions_glyf : public TableTester<FTFontTable_glyf> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.glyf.instructions",
      .types = {TestType::kStructure},
      .target = "glyf",
      .prefix = "glyf",
      .name = "Glyph instructions",
      .description =
          "Walks the instructions of every simple glyph: known opcodes, data of push instructions inside the "
          "program, balanced conditions and definitions."};
  using TableTester::TableTester;
  void CheckTable(const FTFontTable_glyf& iTable) const override;
};

inline constexpr VornFontTestEntry TestInstructions_glyf = RunTester<VornFontTesterInstructions_glyf>;
