#pragma once

#include <string>

#include "Tests/FOND/VornFontTester_FOND.h"

class FTStyleNames;

/// Judges the style mapping table of a family, by the header as it stands: its strings, the PostScript name of every
/// style, and the table of glyph names.
class VornFontTester_FOND_styles : public VornFontTester_FOND {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.resource.FOND.styles.usability",
      .types = {TestType::kUsability},
      .prefix = "FOND styles",
      .name = "Family: style names",
      .description =
          "Checks that the style mapping table of a font family holds its strings and glyph names, and that "
          "they make a legal PostScript name for every style."};
  using VornFontTester_FOND::VornFontTester_FOND;

 private:
  void CheckFamily(const FTFont_FOND& iFamily) const override { CheckStyles_FOND(iFamily); }
  void CheckStyles_FOND(const FTFont_FOND& iFamily) const;
  /// iStyles: where the style mapping table starts; iGlyphs: where the glyph names do; iLimit: where these must end.
  void CheckGlyphNames(const FTFont_FOND& iFamily, int64_t iGlyphs, int64_t iLimit) const;
  /// False when the strings do not fit.
  bool CheckStyleNames(const FTFont_FOND& iFamily, int64_t iStyles, int64_t iLimit) const;
  void CheckPSNameString(const FTStyleNames& iNames, int iStyle) const;
  /// Appends a string to the name of a style. False, with a finding, when it is no piece of a name.
  bool AppendPiece(const FTStyleNames& iNames, int iNumber, int iStyle, std::string& ioName) const;
  void ReportOutside(int iStyle) const;
  void CheckLegalName(const std::string& iName, int iStyle) const;
};

inline constexpr VornFontTestEntry TestUsability_FOND_Styles = RunTester<VornFontTester_FOND_styles>;
