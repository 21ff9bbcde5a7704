#pragma once

#include "TableAccess/TableClasses/FTFontTable_prop.h"
#include "Tests/LayoutTester.h"

/// Judges the properties of glyphs: reserved bits, direction classes, floating glyphs with an advance, brackets that do
/// not belong together. Needs the glyph count, and 'hmtx' for advances.
class VornFontTesterStructure_prop : public LayoutTester<FTFontTable_prop> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.prop.structure",
      .types = {TestType::kStructure},
      .target = "prop",
      .prefix = "prop",
      .name = "Glyph properties",
      .description =
          "Checks the lookup of the 'prop' table and the glyphs' properties in it: direction classes, "
          "floating glyphs and pairs of brackets."};
  using LayoutTester::LayoutTester;

 protected:
  void Examine(const FTFontTable_prop& iTable, const LayoutTable& iBytes) const override;

 private:
  struct Tallies;
  /// The value of each glyph of the font; kNoValue without one.
  using Values = std::vector<int32_t>;
  void CheckValues(const FTFontTable_prop& iTable, const LayoutTable& iBytes, const LookupPieces& iPieces) const;
  void CheckProperties(uint32_t iVersion, int32_t iGlyph, uint16_t iProperties, Tallies& ioTallies) const;
  void CheckBracket(const FTFontTable_prop& iTable, int32_t iGlyph, uint16_t iProperties, const Values& iValues,
                    Tallies& ioTallies) const;
  uint16_t AdvanceOf(int32_t iGlyph) const;
};

inline constexpr VornFontTestEntry TestStructure_prop = RunTester<VornFontTesterStructure_prop>;
