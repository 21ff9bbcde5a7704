#pragma once

#include <cstdint>
#include <optional>

#include "TableAccess/AncillaryClasses/FTUnicodeMap.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TableAccess/Glyphs/FTGlyphInk.h"
#include "Tests/VornFontTester.h"

/// Judges whether text can be set with the characters of a font: there is a Unicode encoding that layout reads, its
/// glyphs exist, spaces are blank and letters are not, and the basic sets of characters are whole.
class VornFontTesterUsability_cmap : public VornFontTester {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.cmap.usability",
      .types = {TestType::kUsability},
      .target = "cmap",
      .prefix = "cmap",
      .name = "Characters",
      .description =
          "Checks that the font has a Unicode encoding which text layout reads, that its characters lead to "
          "glyphs of the font, and that spaces are blank and letters are not."};
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;

 private:
  bool CheckEncodings(const FTUnicodeMap& iMap) const;
  void ReportNoUnicodeEncoding(const FTUnicodeMap& iMap) const;
  void CheckFormats(const FTUnicodeMap& iMap) const;
  void CheckGlyphsExist(const FTUnicodeMap& iMap) const;
  void CheckSpaces(const FTUnicodeMap& iMap) const;
  void CheckBlanks(const FTUnicodeMap& iMap) const;
  void CheckBlankSpaces(const FTUnicodeMap& iMap, const FTGlyphInk& iInk) const;
  void CheckSpaceWidths(const FTUnicodeMap& iMap) const;
  void CheckBlankLetters(const FTUnicodeMap& iMap, const FTGlyphInk& iInk) const;
  void CheckBasicSets(const FTUnicodeMap& iMap) const;
  void CheckNoncharacters(const FTUnicodeMap& iMap) const;
  void CheckReach(const FTUnicodeMap& iMap) const;
  void CheckEuro(const FTUnicodeMap& iMap) const;

  std::optional<uint16_t> ExistingGlyph(const FTUnicodeMap& iMap, uint32_t iCharacter) const;
};

inline constexpr VornFontTestEntry TestUsability_cmap = RunTester<VornFontTesterUsability_cmap>;
