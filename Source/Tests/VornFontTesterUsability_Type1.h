#pragma once

#include "TableAccess/FontClasses/FTFont_Type1.h"
#include "Tests/VornFontTester.h"

/// Confirms that a font is a Type 1 font; the PostScript program itself is not judged.
class VornFontTesterUsability_Type1 : public VornFontTester {
 public:
  static constexpr TestIdentity kIdentity = {.identifier = "veltrin.Type1.usability",
                                             .types = {TestType::kCore, TestType::kUsability},
                                             .prefix = "Type 1",
                                             .name = "Type 1 font",
                                             .description = "Confirms that the font is a PostScript Type 1 font."};
  using FontClass = FTFont_Type1;
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override { return true; }
};

inline constexpr VornFontTestEntry TestUsability_Type1 = RunTester<VornFontTesterUsability_Type1>;
