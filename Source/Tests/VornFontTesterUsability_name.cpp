#include "Tests/VornFontTesterUsability_name.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>
#include <optional>
#include <set>
#include <utility>

#include "TableAccess/FTLimits.h"
#include "TableAccess/TableClasses/FTFontTable_name.h"
#include "Tests/NameText.h"
#include "Tests/SfntFacts.h"

namespace {

using NameText::Code;

constexpr size_t kLongestPostScriptName = 63;
constexpr size_t kLongestFamilyName = 31;

/// What a name code from 1 to 6 names.
Tova::String KindOf(uint32_t iCode) {
  constexpr const char* kKinds[] = {"", "family", "style", "unique", "full", "version", "PostScript"};
  return Tova::MakeString(kKinds[iCode]);
}

constexpr bool IsDigit(char iCharacter) { return iCharacter >= '0' && iCharacter <= '9'; }

constexpr bool IsAllowedInPostScriptName(char32_t iCharacter) {
  constexpr std::u32string_view kForbidden = U"[](){}<>/%";
  return iCharacter >= 0x21 && iCharacter <= 0x7E && kForbidden.find(iCharacter) == std::u32string_view::npos;
}

/// The first digits with a point between them, as a number.
std::optional<double> FindVersionNumber(std::string_view iText) {
  for (size_t tStart = 0; tStart < iText.size(); ++tStart) {
    if (!IsDigit(iText[tStart])) continue;
    const auto tSkipDigits = [iText](size_t iAt) {
      while (iAt < iText.size() && IsDigit(iText[iAt])) ++iAt;
      return iAt;
    };
    const size_t tPoint = tSkipDigits(tStart);
    const bool tHasPoint = tPoint + 1 < iText.size() && iText[tPoint] == '.' && IsDigit(iText[tPoint + 1]);
    if (tHasPoint) {
      double tNumber = std::numeric_limits<double>::infinity();  // stays where the number is too large
      std::from_chars(iText.data() + tStart, iText.data() + tSkipDigits(tPoint + 1), tNumber);
      return tNumber;
    }
    tStart = tPoint;
  }
  return std::nullopt;
}

/// The style bits that a style name stands for: 1 bold, 2 italic. None for a name that says something else.
std::optional<uint16_t> StyleBits(std::string_view iStyle) {
  std::string tLower(iStyle);
  for (char& tCharacter : tLower) {
    if (tCharacter >= 'A' && tCharacter <= 'Z') tCharacter = static_cast<char>(tCharacter + ('a' - 'A'));
  }
  constexpr struct {
    std::string_view style;
    uint16_t bits;
  } kStyles[] = {{"regular", 0}, {"normal", 0},  {"roman", 0},       {"book", 0},        {"bold", 1},
                 {"italic", 2},  {"oblique", 2}, {"bold italic", 3}, {"bold oblique", 3}};
  for (const auto& [tStyle, tBits] : kStyles) {
    if (tStyle == tLower) return tBits;
  }
  return std::nullopt;
}

}  // namespace

bool VornFontTesterUsability_name::Name::IsEnglish() const {
  switch (platform) {
    case NameText::kUnicode:
      return true;
    case NameText::kValdor:
      return language == 0;
    case NameText::kMicrosoft:
      return language < 0x8000 && (language & 0x3FF) == (NameText::kMicrosoftEnglish & 0x3FF);
    default:
      return false;
  }
}

bool VornFontTesterUsability_name::ExecuteTest() const {
  const At tHere(*this, {.table = FTFontTable_name::kTag});
  if (!SfntFont().HasTaggedTable(FTFontTable_name::kTag)) {
    ReportResult(Severity::kFatalError, "The font has no 'name' table");
    return true;
  }
  const Names tNames = CollectNames(SfntFont());
  CheckPresence(tNames);
  CheckCompleteness(tNames);
  CheckPostScriptNames(tNames);
  CheckPlatformsAgree(tNames);
  CheckTypographicNames(tNames);
  CheckFamilyLength(tNames);
  CheckVersion(tNames);
  CheckStyle(tNames);
  const bool tHasMicrosoftNames =
      std::ranges::any_of(tNames, [](const Name& iName) { return iName.platform == NameText::kMicrosoft; });
  if (!tHasMicrosoftNames) {
    ReportResultIfAsked(Severity::kInformation, "The font has no names for the Microsoft platform");
  }
  return true;
}

/// The records that name something: those with text and, on the platform whose makers' variants converters do not all
/// know, those with bytes.
VornFontTesterUsability_name::Names VornFontTesterUsability_name::CollectNames(const FTFont_sfnt& iFont) {
  Names tNames;
  uint64_t tTextBytes = 0;
  for (const FTNameTableEntry& tEntry : iFont.FindTable<FTFontTable_name>()->Names()) {
    tTextBytes += tEntry.GetUnswappedNameDataLength();
    if (tTextBytes > FTLimits::Get().nameTextBytes) break;
    const Name tName = {tEntry.GetPlatform(), tEntry.GetScript(), tEntry.GetLanguage(), tEntry.GetNameCode(),
                        Tova::Text(NameText::Of(tEntry))};
    const bool tHasBytes = tEntry.GetUnswappedNameDataLength() > 0;
    if (!tName.text.empty() || (tName.platform == NameText::kValdor && tHasBytes)) tNames.push_back(tName);
  }
  return tNames;
}

/// The text of the code in the language that most programs show; empty without one.
std::string_view VornFontTesterUsability_name::Best(const Names& iNames, uint32_t iCode) {
  std::string_view tBest;
  int tBestRank = 4;
  for (const Name& tName : iNames) {
    if (tName.code != iCode || tName.text.empty()) continue;
    const int tRank = tName.Is(NameText::kMicrosoft, NameText::kMicrosoftEnglish) ? 0
                      : tName.Is(NameText::kValdor, 0) && tName.script == 0       ? 1
                      : tName.platform == NameText::kUnicode                      ? 2
                                                                                  : 3;
    if (tRank >= tBestRank) continue;
    tBest = tName.text;
    tBestRank = tRank;
  }
  return tBest;
}

void VornFontTesterUsability_name::CheckPresence(const Names& iNames) const {
  const auto tHas = [&](uint32_t iCode) {
    return std::ranges::any_of(iNames, [iCode](const Name& iName) { return iName.code == iCode; });
  };
  if (!tHas(Code::kPostScript)) {
    ReportResult(Severity::kFatalError, "The font has no PostScript name (name code 6)");
  }
  for (const uint32_t tCode : {Code::kFamily, Code::kStyle, Code::kUnique, Code::kFull, Code::kVersion}) {
    if (tHas(tCode)) continue;
    const bool tIsMinor = tCode == Code::kUnique || tCode == Code::kVersion;
    ReportResult(tIsMinor ? Severity::kMinorError : Severity::kMajorError, "The font has no %@ name (name code %d)",
                 {KindOf(tCode), tCode});
  }
}

void VornFontTesterUsability_name::CheckCompleteness(const Names& iNames) const {
  constexpr uint32_t kNeeded[] = {Code::kFamily, Code::kStyle, Code::kFull, Code::kPostScript};
  for (const uint32_t tPlatform : {NameText::kUnicode, NameText::kValdor, NameText::kMicrosoft}) {
    const auto tLacks = [&](uint32_t iCode) {
      return std::ranges::none_of(
          iNames, [&](const Name& iName) { return iName.platform == tPlatform && iName.code == iCode; });
    };
    const auto* tMissing = std::ranges::find_if(kNeeded, tLacks);
    if (tMissing == std::end(kNeeded) || std::ranges::all_of(kNeeded, tLacks)) continue;
    ReportResult(Severity::kMinorError, "The names of platform %d are incomplete: there is no %@ name (name code %d)",
                 {tPlatform, KindOf(*tMissing), *tMissing});
  }
}

void VornFontTesterUsability_name::CheckPostScriptNames(const Names& iNames) const {
  Names tPostScriptNames;
  std::ranges::copy_if(iNames, std::back_inserter(tPostScriptNames),
                       [](const Name& iName) { return iName.code == Code::kPostScript && !iName.text.empty(); });
  std::set<std::string_view> tChecked;
  for (const Name& tName : tPostScriptNames) {
    if (tChecked.insert(tName.text).second) CheckPostScriptText(tName.text);
  }
  CheckEnglishPostScriptNames(tPostScriptNames);
  CheckLocalisedPostScriptNames(tPostScriptNames);
}

void VornFontTesterUsability_name::CheckPostScriptText(std::string_view iText) const {
  const std::u32string tCharacters = SfntFacts::Characters(iText);
  const Tova::String tShown = SfntFacts::Shown(iText);
  if (tCharacters.size() > kLongestPostScriptName) {
    ReportResult(Severity::kMajorError, "The PostScript name '%@' has %d characters; it must have 1 to 63",
                 {tShown, tCharacters.size()});
  }
  const auto tBad = std::ranges::find_if_not(tCharacters, IsAllowedInPostScriptName);
  if (tBad != tCharacters.end()) {
    ReportResult(Severity::kMajorError, "The PostScript name '%@' contains the character U+%04X, which is not allowed",
                 {tShown, uint32_t{*tBad}});
  }
}

void VornFontTesterUsability_name::CheckEnglishPostScriptNames(const Names& iNames) const {
  const auto tFirst = std::ranges::find_if(iNames, &Name::IsEnglish);
  if (tFirst == iNames.end()) return;
  const auto tOther =
      std::ranges::find_if(iNames, [&](const Name& iName) { return iName.IsEnglish() && iName.text != tFirst->text; });
  if (tOther == iNames.end()) return;
  ReportResult(Severity::kMajorError, "The font has two PostScript names: '%@' on platform %d and '%@' on platform %d",
               {SfntFacts::Shown(tFirst->text), tFirst->platform, SfntFacts::Shown(tOther->text), tOther->platform});
}

void VornFontTesterUsability_name::CheckLocalisedPostScriptNames(const Names& iNames) const {
  std::set<std::string_view> tEnglish;
  for (const Name& tName : iNames) {
    if (tName.IsEnglish()) tEnglish.insert(tName.text);
  }
  const auto tFind = [&](bool iRepeated) {
    return std::ranges::find_if(
        iNames, [&](const Name& iName) { return !iName.IsEnglish() && tEnglish.contains(iName.text) == iRepeated; });
  };
  if (const auto tOther = tFind(false); tOther != iNames.end()) {
    ReportResult(Severity::kMajorError, "The PostScript name is localised: platform %d, language %d gives '%@'",
                 {tOther->platform, tOther->language, SfntFacts::Shown(tOther->text)});
  }
  if (const auto tSame = tFind(true); tSame != iNames.end()) {
    ReportResultIfAsked(Severity::kTechnicalError,
                        "The PostScript name is repeated for platform %d, language %d; it must not be localised",
                        {tSame->platform, tSame->language});
  }
}

void VornFontTesterUsability_name::CheckPlatformsAgree(const Names& iNames) const {
  const auto tFirstText = [&](uint32_t iPlatform, uint32_t iLanguage, uint32_t iCode) -> std::string_view {
    const auto tFound = std::ranges::find_if(iNames, [&](const Name& iName) {
      const bool tIsScript = iPlatform != NameText::kValdor || iName.script == 0;
      return iName.Is(iPlatform, iLanguage) && tIsScript && iName.code == iCode && !iName.text.empty();
    });
    return tFound == iNames.end() ? std::string_view() : tFound->text;
  };
  const auto tIsAllowed = [&](uint32_t iCode, std::string_view iText) {
    if (iCode == Code::kFull) {
      return std::ranges::any_of(
          iNames, [&](const Name& iName) { return iName.code == Code::kPostScript && iName.text == iText; });
    }
    return iText == tFirstText(NameText::kMicrosoft, NameText::kMicrosoftEnglish, Code::kTypographicFamily) ||
           iText == tFirstText(NameText::kMicrosoft, NameText::kMicrosoftEnglish, Code::kTypographicStyle);
  };
  for (const uint32_t tCode : {Code::kFamily, Code::kStyle, Code::kFull}) {
    const std::string_view tMicrosoft = tFirstText(NameText::kMicrosoft, NameText::kMicrosoftEnglish, tCode);
    const std::string_view tValdor = tFirstText(NameText::kValdor, 0, tCode);
    if (tMicrosoft.empty() || tValdor.empty() || tMicrosoft == tValdor) continue;
    if (tIsAllowed(tCode, tMicrosoft) || tIsAllowed(tCode, tValdor)) continue;
    const Severity tSeverity = tCode == Code::kFull ? Severity::kInformation : Severity::kMinorError;
    if (tSeverity == Severity::kInformation && !ExecuteTestsWithSeverity(tSeverity)) continue;
    ReportResult(tSeverity, "The %@ name is '%@' on the Microsoft platform, but '%@' on the Valdor platform",
                 {KindOf(tCode), SfntFacts::Shown(tMicrosoft), SfntFacts::Shown(tValdor)});
  }
}

void VornFontTesterUsability_name::CheckTypographicNames(const Names& iNames) const {
  using Audience = std::pair<uint32_t, uint32_t>;  // platform and language
  std::set<Audience> tDone;
  for (const Name& tName : iNames) {
    if (tName.code == Code::kTypographicFamily) tDone.emplace(tName.platform, tName.language);
  }
  for (const Name& tName : iNames) {
    if (tName.code != Code::kTypographicStyle || !tDone.emplace(tName.platform, tName.language).second) continue;
    ReportResultIfAsked(Severity::kTechnicalError,
                        "Platform %d, language %d has a typographic style name but no typographic family name",
                        {tName.platform, tName.language});
  }
}

void VornFontTesterUsability_name::CheckFamilyLength(const Names& iNames) const {
  const std::string_view tFamily = Best(iNames, Code::kFamily);
  const size_t tCount = SfntFacts::Characters(tFamily).size();
  if (tCount > kLongestFamilyName) {
    ReportResultIfAsked(Severity::kTechnicalError, "The family name '%@' has %d characters; some programs keep only 31",
                        {SfntFacts::Shown(tFamily), tCount});
  }
}

void VornFontTesterUsability_name::CheckVersion(const Names& iNames) const {
  // The name may round the revision to two places, and the revision is a binary fraction.
  constexpr double kTolerance = 0.0105;
  const std::string_view tVersion = Best(iNames, Code::kVersion);
  if (tVersion.empty()) return;
  const std::optional<double> tNumber = FindVersionNumber(tVersion);
  const FTFontTable_head* tHeader = SfntFacts::Header(SfntFont());
  if (!tNumber) {
    ReportResultIfAsked(Severity::kTechnicalError, "The version name '%@' has no version number",
                        {SfntFacts::Shown(tVersion)});
  } else if (tHeader && std::abs(*tNumber - tHeader->FontRevision() / 65536.0) > kTolerance) {
    ReportResultIfAsked(Severity::kTechnicalError, "The version name '%@' does not agree with the font revision %f",
                        {SfntFacts::Shown(tVersion), tHeader->FontRevision() / 65536.0});
  }
}

void VornFontTesterUsability_name::CheckStyle(const Names& iNames) const {
  const std::string_view tStyle = Best(iNames, Code::kStyle);
  const std::optional<uint16_t> tBits = StyleBits(tStyle);
  const FTFontTable_head* tHeader = SfntFacts::Header(SfntFont());
  if (tBits && tHeader && *tBits != (tHeader->ValdourStyle() & 3)) {
    ReportResult(Severity::kMinorError,
                 "The style name is '%@', but the header's style bits are 0x%04X (1 is bold, 2 is italic)",
                 {SfntFacts::Shown(tStyle), tHeader->ValdourStyle()});
  }
}
