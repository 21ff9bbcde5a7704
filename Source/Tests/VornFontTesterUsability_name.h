#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "Tests/VornFontTester.h"

/// Judges whether the names of a font serve: the ones that programs ask for are there, the PostScript name is one and
/// can be used as such, and names, style bits and revision agree.
class VornFontTesterUsability_name : public VornFontTester {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.name.usability",
      .types = {TestType::kUsability},
      .target = "name",
      .prefix = "name",
      .name = "Names",
      .description =
          "Checks that the font has the names that programs ask for, that its PostScript name is a usable "
          "one, and that names, style bits and revision agree."};
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;

 private:
  /// A record as far as this test asks for it. Texts are borrowed from the table's accessor.
  struct Name {
    uint32_t platform;
    uint32_t script;
    uint32_t language;
    uint32_t code;
    std::string_view text;  ///< empty where it cannot be read

    bool IsEnglish() const;
    bool Is(uint32_t iPlatform, uint32_t iLanguage) const { return platform == iPlatform && language == iLanguage; }
  };
  using Names = std::vector<Name>;

  static Names CollectNames(const FTFont_sfnt& iFont);
  static std::string_view Best(const Names& iNames, uint32_t iCode);

  void CheckPresence(const Names& iNames) const;
  void CheckCompleteness(const Names& iNames) const;
  void CheckPostScriptNames(const Names& iNames) const;
  void CheckPostScriptText(std::string_view iText) const;
  void CheckEnglishPostScriptNames(const Names& iNames) const;
  void CheckLocalisedPostScriptNames(const Names& iNames) const;
  void CheckPlatformsAgree(const Names& iNames) const;
  void CheckTypographicNames(const Names& iNames) const;
  void CheckFamilyLength(const Names& iNames) const;
  void CheckVersion(const Names& iNames) const;
  void CheckStyle(const Names& iNames) const;
};

inline constexpr VornFontTestEntry TestUsability_name = RunTester<VornFontTesterUsability_name>;
