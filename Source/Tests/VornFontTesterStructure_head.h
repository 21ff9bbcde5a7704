#pragma once

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TableAccess/TableClasses/FTFontTable_head.h"
#include "Tests/VornFontTester.h"

/// Judges the font header: 'head', or 'bhed' in a bitmap-only font. Needs 'morx' or 'mort', where there is one, for the
/// flag that says whether the font has default layout features. The size, the format of 'loca' and the flags are always
/// judged, the rest when technical errors are asked for.
class VornFontTesterStructure_head : public VornFontTester {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.head.structure",
      .types = {TestType::kStructure},
      .target = "head",
      .prefix = "head",
      .name = "Font header",
      .description = "Checks the size of the 'head' (or 'bhed') table and its fields one by one."};
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;
  /// The table under test, null outside a run.
  const FTFontTable_head* GetTable() const { return _fTable; }

  /// Holds the box of 'head' against the union of the boxes of the glyphs that draw something. Not a part of the test,
  /// since it decodes every glyph; needs 'head', 'glyf' and 'loca'. quirk: head-box: there is no finding about the
  /// maximum x.
  void CheckBoundingBox() const;

 private:
  void CheckSize() const;
  void CheckLocaFormat() const;
  void CheckHeadFlags(const FTFont_sfnt& iFont) const;
  void CheckVersionAndMagic() const;
  void CheckRanges() const;
  static uint64_t CountFontDefaultFeatures(const FTFont_sfnt& iFont);

  mutable const FTFontTable_head* _fTable = nullptr;
};

inline constexpr VornFontTestEntry TestStructure_head = RunTester<VornFontTesterStructure_head>;
