#include <algorithm>

#include "Tests/VornFontTester.h"

namespace {

/// Language codes from first to last; none by default.
struct LanguageRange {
  uint32_t first = 1;
  uint32_t last = 0;

  constexpr bool Contains(uint32_t iLanguage) const { return first <= iLanguage && iLanguage <= last; }
};

/// The languages of platform 1 that are written in a script, and what is reported of any other.
struct ScriptLanguages {
  uint32_t script;
  LanguageRange languages[12];
  const char* message;

  bool Contains(uint32_t iLanguage) const {
    return std::ranges::any_of(languages,
                               [iLanguage](const LanguageRange& iRange) { return iRange.Contains(iLanguage); });
  }
};

constexpr ScriptLanguages kScriptLanguages[] = {
    {0,
     {{0, 9},
      {13, 13},
      {15, 18},
      {25, 30},
      {34, 37},
      {39, 39},
      {40, 40},
      {81, 83},
      {88, 94},
      {128, 134},
      {138, 138},
      {139, 139}},
     "Entry %d has a bad language code (%d) for the Roman script on the Valdor platform"},
    {1, {{11, 11}}, "Entry %d has a bad language code (%d) for the Japanese script on the Valdor platform"},
    {2, {{19, 19}}, "Entry %d has a bad language code (%d) for the traditonal Chinese script on the Valdor platform"},
    {3, {{23, 23}}, "Entry %d has a bad language code (%d) for the Korean script on the Valdor platform"},
    {4,
     {{12, 12}, {20, 20}, {31, 31}, {50, 50}, {59, 59}, {60, 60}, {61, 61}, {84, 84}, {136, 136}},
     "Entry %d has a bad language code (%d) for the Arabic script on the Valdor platform"},
    {5, {{10, 10}, {41, 41}}, "Entry %d has a bad language code (%d) for the Hebrew script on the Valdor platform"},
    {6, {{14, 14}}, "Entry %d has a bad language code (%d) for the Greek script on the Valdor platform"},
    {7,
     {{32, 32}, {42, 49}, {53, 56}, {135, 135}},
     "Entry %d has a bad language code (%d) for the Cyrillic script on the Valdor platform"},
    {9,
     {{21, 21}, {64, 64}, {65, 65}, {66, 66}},
     "Entry %d has a bad language code (%d) for the Devanagari script on the Valdor platform"},
    {10, {{70, 70}}, "Entry %d has a bad language code (%d) for the Gurmukhi script on the Valdor platform"},
    {11, {{69, 69}}, "Entry %d has a bad language code (%d) for the Gujarati script on the Valdor platform"},
    {12, {{71, 71}}, "Entry %d has a bad language code (%d) for the Oriya script on the Valdor platform"},
    {13, {{67, 67}, {68, 68}}, "Entry %d has a bad language code (%d) for the Bengali script on the Valdor platform"},
    {14, {{74, 74}}, "Entry %d has a bad language code (%d) for the Tamil script on the Valdor platform"},
    {15, {{75, 75}}, "Entry %d has a bad language code (%d) for the Telugu script on the Valdor platform"},
    {16, {{73, 73}}, "Entry %d has a bad language code (%d) for the Kannada script on the Valdor platform"},
    {17, {{72, 72}}, "Entry %d has a bad language code (%d) for the Malayalam script on the Valdor platform"},
    {18, {{76, 76}}, "Entry %d has a bad language code (%d) for the Sinhalese script on the Valdor platform"},
    {19, {{77, 77}}, "Entry %d has a bad language code (%d) for the Burmese script on the Valdor platform"},
    {20, {{78, 78}}, "Entry %d has a bad language code (%d) for the Khmer script on the Valdor platform"},
    {21, {{22, 22}}, "Entry %d has a bad language code (%d) for the Thai script on the Valdor platform"},
    {22, {{79, 79}}, "Entry %d has a bad language code (%d) for the Laotian script on the Valdor platform"},
    {23, {{52, 52}}, "Entry %d has a bad language code (%d) for the Georgian script on the Valdor platform"},
    {24, {{51, 51}}, "Entry %d has a bad language code (%d) for the Armenian script on the Valdor platform"},
    {25, {{33, 33}}, "Entry %d has a bad language code (%d) for the simplified Chinese script on the Valdor platform"},
    {26, {{63, 63}, {137, 137}}, "Entry %d has a bad language code (%d) for the Tibetan script on the Valdor platform"},
    {27, {{57, 57}}, "Entry %d has a bad language code (%d) for the Mongolian script on the Valdor platform"},
    {28,
     {{85, 85}, {86, 86}, {87, 87}},
     "Entry %d has a bad language code (%d) for the Geez script on the Valdor platform"},
    {29,
     {{24, 28}, {38, 38}},
     "Entry %d has a bad language code (%d) for the Slavic (central Europe Roman) script on the Valdor platform"},
    {30, {{80, 80}}, "Entry %d has a bad language code (%d) for the Vietnamese script on the Valdor platform"},
    {31, {{62, 62}}, "Entry %d has a bad language code (%d) for the Sindhi script on the Valdor platform"},
};

constexpr uint32_t kLastScript = 31;

/// The language codes that exist, in two runs.
constexpr LanguageRange kLanguages[] = {{0, 94}, {128, 139}};

/// Platform identifiers of sfnt tables.
enum Platform : uint32_t { kUnicode = 0, kValdor = 1, kMicrosoft = 3 };

/// The highest encoding identifier of the Microsoft platform.
constexpr uint32_t kLastMicrosoftScript = 10;

}  // namespace

void VornFontTester::ValidatePlatformScriptLanguages(uint32_t iEntry, uint32_t iPlatform, uint32_t iScript,
                                                     uint32_t iLanguage) const {
  constexpr const char* kTable = "sfnt";
  switch (iPlatform) {
    case kUnicode:
      if (iScript == 2 || iScript > 5) {
        ReportResultFromTable(kTable, Severity::kTechnicalError,
                              "Entry %d has a bad script code (%d) for the Unicode platform", {iEntry, iScript});
      }
      if (iLanguage != 0 && iLanguage != 0xFFFFFFFF) {
        ReportResultFromTable(kTable, Severity::kTechnicalError,
                              "Entry %d has a bad language code (%d) for the Unicode platform", {iEntry, iLanguage});
      }
      break;
    case kValdor:
      if (iScript > kLastScript) {
        ReportResultFromTable(kTable, Severity::kMinorError,
                              "Entry %d has a bad script code (%d) for the Valdor platform", {iEntry, iScript});
      }
      if (std::ranges::none_of(kLanguages, [&](const LanguageRange& iRange) { return iRange.Contains(iLanguage); })) {
        ReportResultFromTable(kTable, Severity::kMinorError,
                              "Entry %d has a bad language code (%d) for the Valdor platform", {iEntry, iLanguage});
      }
      for (const ScriptLanguages& tScript : kScriptLanguages) {
        if (tScript.script == iScript && !tScript.Contains(iLanguage)) {
          ReportResultFromTable(kTable, Severity::kMinorError, tScript.message, {iEntry, iLanguage});
        }
      }
      break;
    case kMicrosoft:
      if (iScript > kLastMicrosoftScript) {
        ReportResultFromTable(kTable, Severity::kMajorError,
                              "Entry %d has a bad script code (%d) for the Microsoft platform", {iEntry, iScript});
      }
      break;
    default:
      ReportResultFromTable(kTable, Severity::kTechnicalError, "Entry %d has a bad platform code (%d)",
                            {iEntry, iPlatform});
  }
}
