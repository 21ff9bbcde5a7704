#pragma once

#include "Tests/FOND/VornFontTester_FOND.h"

/// Judges whether the kerning table of a family, and the pairs of its last entry, end before the next table.
class VornFontTester_FOND_kerning : public VornFontTester_FOND {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.resource.FOND.kerning.usability",
      .types = {TestType::kUsability},
      .prefix = "FOND kerning",
      .name = "Family: kerning",
      .description = "Checks that the kerning entries and pairs of a font family lie in its kerning table."};
  using VornFontTester_FOND::VornFontTester_FOND;
  static bool AppliesTo(const FTFont_FOND& iFamily) { return iFamily.GetKernEntries().has_value(); }

 private:
  void CheckFamily(const FTFont_FOND& iFamily) const override { Check_FOND_kerning(iFamily); }
  void Check_FOND_kerning(const FTFont_FOND& iFamily) const;
};

inline constexpr VornFontTestEntry TestUsability_FOND_Kerning = RunTester<VornFontTester_FOND_kerning>;
