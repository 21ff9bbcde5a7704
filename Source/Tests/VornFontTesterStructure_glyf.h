#pragma once

#include "TableAccess/TableClasses/FTFontTable_glyf.h"
#include "Tests/TableTester.h"

class FTFontTable_head;

/// Judges every glyph: its box against its points and against the font's box, its contours, its components, and the
/// greatest number of contours against 'maxp'. Needs 'maxp', 'head' and 'loca'. Simple glyphs are judged only when
/// minor errors are asked for.
///
/// Glyphs may overlap in the table, so there may be many more findings than bytes: beyond a number of messages only the
/// severities are recorded.
class VornFontTesterStructure_glyf : public TableTester<FTFontTable_glyf> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.glyf.usability",
      .types = {TestType::kUsability, TestType::kStructure},
      .target = "glyf",
      .prefix = "glyf",
      .name = "Glyph outlines",
      .description =
          "Decodes every glyph of the 'glyf' table and checks its bounding box, its contours, its components and "
          "the limits that 'head' and 'maxp' state."};
  using TableTester::TableTester;
  void CheckTable(const FTFontTable_glyf& iTable) const override;
  /// Whether the flags are ones that a component can have; reports them otherwise.
  bool ValidComponentFlags(uint64_t iGlyph, uint64_t iComponent, uint16_t iFlags) const;

 private:
  bool RequiredTablesExist(const FTFontTable_glyf& iTable) const;
  void CheckGlyph(const FTFontTable_glyf& iTable, uint32_t iGlyph, const FTFontTable_head& iHead,
                  int16_t& ioMaxContours) const;
  void CheckSimpleGlyph(uint32_t iGlyph, const FTSimpleTrueTypeGlyph& iOutline, const FTFontTable_head& iHead) const;
  void CheckContours(uint32_t iGlyph, const FTSimpleTrueTypeGlyph& iOutline) const;
  void CheckAgainstFontBox(uint32_t iGlyph, const FTRect& iBox, const FTFontTable_head& iHead) const;
  void CheckCompoundGlyph(uint32_t iGlyph, const FTCompoundTrueTypeGlyph& iOutline, uint16_t iGlyphCount) const;
};

inline constexpr VornFontTestEntry TestStructure_glyf = RunTester<VornFontTesterStructure_glyf>;
