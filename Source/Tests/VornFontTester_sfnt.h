#pragma once

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "Tests/VornFontTester.h"

/// Judges whether an sfnt font can be used at all: the tables that a TrueType, a PostScript-outline or a bitmap-only
/// font needs are there and go together, and the font has a PostScript name. A table of length 0 counts as absent.
class VornFontTester_sfnt : public VornFontTester {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.usability",
      .types = {TestType::kCore, TestType::kUsability},
      .prefix = "sfnt",
      .name = "Required tables",
      .description =
          "Checks that the tables which a font of its kind needs are there and go together, and that the font has a "
          "PostScript name."};
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;

 private:
  void CheckTables(const FTFont_sfnt& iFont) const;
  void CheckOutlineTables(const FTFont_sfnt& iFont) const;
  void CheckBitmapTables(const FTFont_sfnt& iFont, bool iHasOutlines) const;
  void CheckTablePairs(const FTFont_sfnt& iFont) const;
};

inline constexpr VornFontTestEntry TestUsability_sfnt = RunTester<VornFontTester_sfnt>;
