#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "Platform/LanguageAlphabets.h"
#include "TableAccess/AncillaryClasses/FTUnicodeMap.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "Tests/VornFontTester.h"

/// Tells which languages a font has all the letters of, and which ones it lacks a few for; judges the latter where the
/// font declares the code page of the language.
class VornFontTesterLanguageSupport : public VornFontTester {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.languages",
      .types = {TestType::kUsability},
      .target = nullptr,
      .prefix = "languages",
      .name = "Languages",
      .description =
          "Tells the languages whose alphabets the font covers, and the characters that it lacks for others, "
          "above all for those of the code pages it declares."};
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;

 private:
  /// A language that the font lacks a few letters for.
  struct NearlyCovered {
    std::string_view tag;
    std::vector<uint32_t> missing;
  };
  void CheckDeclared(const std::vector<NearlyCovered>& iLanguages, uint32_t iCodePages) const;
  void ReportCovered(const std::vector<std::string_view>& iTags) const;
  void ReportNearlyCovered(const std::vector<NearlyCovered>& iLanguages, uint32_t iCodePages) const;
};

inline constexpr VornFontTestEntry TestLanguageSupport = RunTester<VornFontTesterLanguageSupport>;
