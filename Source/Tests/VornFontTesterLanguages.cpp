#include <algorithm>

#include "Tests/VornFontTester.h"

namespace {

/// Language codes from first to last; none by default.
struct LanguageRange {
  uint32_t first = 1;
  uint32_t last = 0;

  constexpr bool Contains(uint32_t iLanguage) const { return first <= iLanguage && iLanguage <= last; }
};

/// The languages of platform 1 that are written in a script, and what is reported of any other. Scripts and languages
/// have the codes that the 'name' table's chapter of the OpenType specification lists for that platform.
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
    {.script = 0,
     .languages =
         {
             {0, 9},      // English, French, German, Italian, Dutch, Swedish, Spanish, Danish, Portuguese, Norwegian
             {13, 13},    // Finnish
             {15, 18},    // Icelandic, Maltese, Turkish, Croatian
             {25, 30},    // Polish, Hungarian, Estonian, Latvian, Sami, Faroese
             {34, 37},    // Flemish, Irish Gaelic, Albanian, Romanian
             {39, 40},    // Slovak, Slovenian
             {81, 83},    // Indonesian, Tagalog, Malay (Roman)
             {88, 94},    // Somali, Swahili, Kinyarwanda, Rundi, Nyanja, Malagasy, Esperanto
             {128, 134},  // Welsh, Basque, Catalan, Latin, Quechua, Guarani, Aymara
             {138, 139},  // Javanese (Roman), Sundanese (Roman)
         },
     .message = "Entry %d has a bad language code (%d) for the Roman script on the Valdor platform"},
    {.script = 1,
     .languages =
         {
             {11, 11},  // Japanese
         },
     .message = "Entry %d has a bad language code (%d) for the Japanese script on the Valdor platform"},
    {.script = 2,
     .languages =
         {
             {19, 19},  // traditional Chinese
         },
     .message = "Entry %d has a bad language code (%d) for the traditonal Chinese script on the Valdor platform"},
    {.script = 3,
     .languages =
         {
             {23, 23},  // Korean
         },
     .message = "Entry %d has a bad language code (%d) for the Korean script on the Valdor platform"},
    {.script = 4,
     .languages =
         {
             {12, 12},    // Arabic
             {20, 20},    // Urdu
             {31, 31},    // Persian
             {50, 50},    // Azerbaijani (Arabic)
             {59, 61},    // Pashto, Kurdish, Kashmiri
             {84, 84},    // Malay (Arabic)
             {136, 136},  // Uighur
         },
     .message = "Entry %d has a bad language code (%d) for the Arabic script on the Valdor platform"},
    {.script = 5,
     .languages =
         {
             {10, 10},  // Hebrew
             {41, 41},  // Yiddish
         },
     .message = "Entry %d has a bad language code (%d) for the Hebrew script on the Valdor platform"},
    {.script = 6,
     .languages =
         {
             {14, 14},  // Greek
         },
     .message = "Entry %d has a bad language code (%d) for the Greek script on the Valdor platform"},
    {.script = 7,
     .languages =
         {
             {32, 32},  // Russian
             {42, 49},  // Serbian, Macedonian, Bulgarian, Ukrainian, Belarusian, Uzbek, Kazakh, Azerbaijani (Cyrillic)
             {53, 56},  // Moldavian, Kirghiz, Tajik, Turkmen
             {135, 135},  // Tatar
         },
     .message = "Entry %d has a bad language code (%d) for the Cyrillic script on the Valdor platform"},
    {.script = 9,
     .languages =
         {
             {21, 21},  // Hindi
             {64, 66},  // Nepali, Sanskrit, Marathi
         },
     .message = "Entry %d has a bad language code (%d) for the Devanagari script on the Valdor platform"},
    {.script = 10,
     .languages =
         {
             {70, 70},  // Punjabi
         },
     .message = "Entry %d has a bad language code (%d) for the Gurmukhi script on the Valdor platform"},
    {.script = 11,
     .languages =
         {
             {69, 69},  // Gujarati
         },
     .message = "Entry %d has a bad language code (%d) for the Gujarati script on the Valdor platform"},
    {.script = 12,
     .languages =
         {
             {71, 71},  // Oriya
         },
     .message = "Entry %d has a bad language code (%d) for the Oriya script on the Valdor platform"},
    {.script = 13,
     .languages =
         {
             {67, 68},  // Bengali, Assamese
         },
     .message = "Entry %d has a bad language code (%d) for the Bengali script on the Valdor platform"},
    {.script = 14,
     .languages =
         {
             {74, 74},  // Tamil
         },
     .message = "Entry %d has a bad language code (%d) for the Tamil script on the Valdor platform"},
    {.script = 15,
     .languages =
         {
             {75, 75},  // Telugu
         },
     .message = "Entry %d has a bad language code (%d) for the Telugu script on the Valdor platform"},
    {.script = 16,
     .languages =
         {
             {73, 73},  // Kannada
         },
     .message = "Entry %d has a bad language code (%d) for the Kannada script on the Valdor platform"},
    {.script = 17,
     .languages =
         {
             {72, 72},  // Malayalam
         },
     .message = "Entry %d has a bad language code (%d) for the Malayalam script on the Valdor platform"},
    {.script = 18,
     .languages =
         {
             {76, 76},  // Sinhalese
         },
     .message = "Entry %d has a bad language code (%d) for the Sinhalese script on the Valdor platform"},
    {.script = 19,
     .languages =
         {
             {77, 77},  // Burmese
         },
     .message = "Entry %d has a bad language code (%d) for the Burmese script on the Valdor platform"},
    {.script = 20,
     .languages =
         {
             {78, 78},  // Khmer
         },
     .message = "Entry %d has a bad language code (%d) for the Khmer script on the Valdor platform"},
    {.script = 21,
     .languages =
         {
             {22, 22},  // Thai
         },
     .message = "Entry %d has a bad language code (%d) for the Thai script on the Valdor platform"},
    {.script = 22,
     .languages =
         {
             {79, 79},  // Lao
         },
     .message = "Entry %d has a bad language code (%d) for the Laotian script on the Valdor platform"},
    {.script = 23,
     .languages =
         {
             {52, 52},  // Georgian
         },
     .message = "Entry %d has a bad language code (%d) for the Georgian script on the Valdor platform"},
    {.script = 24,
     .languages =
         {
             {51, 51},  // Armenian
         },
     .message = "Entry %d has a bad language code (%d) for the Armenian script on the Valdor platform"},
    {.script = 25,
     .languages =
         {
             {33, 33},  // simplified Chinese
         },
     .message = "Entry %d has a bad language code (%d) for the simplified Chinese script on the Valdor platform"},
    {.script = 26,
     .languages =
         {
             {63, 63},    // Tibetan
             {137, 137},  // Dzongkha
         },
     .message = "Entry %d has a bad language code (%d) for the Tibetan script on the Valdor platform"},
    {.script = 27,
     .languages =
         {
             {57, 57},  // Mongolian (Mongolian)
         },
     .message = "Entry %d has a bad language code (%d) for the Mongolian script on the Valdor platform"},
    {.script = 28,
     .languages =
         {
             {85, 87},  // Amharic, Tigrinya, Oromo
         },
     .message = "Entry %d has a bad language code (%d) for the Geez script on the Valdor platform"},
    {.script = 29,
     .languages =
         {
             {24, 28},  // Lithuanian, Polish, Hungarian, Estonian, Latvian
             {38, 38},  // Czech
         },
     .message =
         "Entry %d has a bad language code (%d) for the Slavic (central Europe Roman) script on the Valdor platform"},
    {.script = 30,
     .languages =
         {
             {80, 80},  // Vietnamese
         },
     .message = "Entry %d has a bad language code (%d) for the Vietnamese script on the Valdor platform"},
    {.script = 31,
     .languages =
         {
             {62, 62},  // Sindhi
         },
     .message = "Entry %d has a bad language code (%d) for the Sindhi script on the Valdor platform"},
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
