#pragma once

#include <string>

#include "Tests/FOND/VornFontTester_FOND.h"

class FTFont_POST;
class FTLWFNFontContainer;

/// Judges the PostScript outline files of a family: their 'POST' resources, numbered from 501 on.
class VornFontTester_FOND_Type1 : public VornFontTester_FOND {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.resource.FOND.Type1.usability",
      .types = {TestType::kUsability},
      .prefix = "FOND Type1",
      .name = "Family: PostScript outlines",
      .description =
          "Checks the PostScript outline files that a font family names: their file type, the kinds, order "
          "and text of their pieces."};
  using VornFontTester_FOND::VornFontTester_FOND;
  static bool AppliesTo(const FTFont_FOND& iFamily) { return iFamily.GetType1FontCount() != 0; }

 private:
  void CheckFamily(const FTFont_FOND& iFamily) const override;
  void CheckType1(const FTLWFNFontContainer& iOutlines) const;
  /// False when the data cannot be parsed.
  bool CheckPiece(const FTLWFNFontContainer& iOutlines, const FTFont_POST& iPiece) const;
  bool CheckText(const FTFont_POST& iPiece) const;
  /// Where a parser of PostScript would sit. Without one all data passes.
  static bool LWFNParsesWithoutError(const std::string& iPath);
};

inline constexpr VornFontTestEntry TestUsability_FOND_Type1 = RunTester<VornFontTester_FOND_Type1>;
