#pragma once

#include "Tests/FOND/VornFontTester_FOND.h"

/// Judges the font association table of a family: whether it fits into the resource, and the fonts it names are in the
/// suitcase.
class VornFontTester_FOND_FAT : public VornFontTester_FOND {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.resource.FOND.FAT.usability",
      .types = {TestType::kUsability},
      .prefix = "FOND FAT",
      .name = "Family: associated fonts",
      .description =
          "Checks that a font family refers to outlines of one kind, and that every bitmap and outline font "
          "of its association table is in the file."};
  using VornFontTester_FOND::VornFontTester_FOND;

 private:
  void CheckFamily(const FTFont_FOND& iFamily) const override { CheckFAT_FOND(iFamily); }
  void CheckFAT_FOND(const FTFont_FOND& iFamily) const;
  void CheckEntries(const FTFont_FOND& iFamily) const;
};

inline constexpr VornFontTestEntry TestUsability_FOND_FAT = RunTester<VornFontTester_FOND_FAT>;
