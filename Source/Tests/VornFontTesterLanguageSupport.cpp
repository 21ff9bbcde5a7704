#include "Tests/VornFontTesterLanguageSupport.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <initializer_list>
#include <optional>
#include <string_view>

#include "Tests/SfntFacts.h"

namespace {

/// A code page, the bit of the OS/2 metrics that declares it, and the languages that are written in it.
struct CodePage {
  uint32_t bit;
  uint32_t number;
  std::initializer_list<std::string_view> tags;
};

const CodePage kCodePages[] = {
    {0, 1252, {"da", "de", "en", "es", "fi", "fr", "is", "it", "nb", "nl", "pt", "sv"}},
    {1, 1250, {"cs", "hr", "hu", "pl", "ro", "sk", "sl", "sq"}},
    {2, 1251, {"be", "bg", "mk", "ru", "sr", "uk"}},
    {3, 1253, {"el"}},
    {4, 1254, {"tr"}},
    {5, 1255, {"he"}},
    {6, 1256, {"ar", "fa", "ur"}},
    {7, 1257, {"et", "lt", "lv"}},
    {8, 1258, {"vi"}},
    {16, 874, {"th"}},
    {17, 932, {"ja"}},
    {18, 936, {"zh-cn"}},
    {19, 949, {"ko"}},
    {20, 950, {"zh-tw"}},
};

/// Characters that a font may lack: text is normally composed, and the letters are there for compatibility.
constexpr struct {
  uint32_t first;
  uint32_t last;
} kOptional[] = {{0x0300, 0x036F}, {0x013F, 0x0140}, {0x0149, 0x0149}, {0x01C4, 0x01CC}, {0x01F1, 0x01F3}};

/// A language is nearly covered when no more than these are missing, and no more than one and a twentieth of all.
constexpr size_t kMostMissing = 3;
constexpr size_t kLeastPerMissing = 20;
/// Languages named of those that are nearly covered.
constexpr size_t kMostNamed = 20;

bool IsOptional(uint32_t iCharacter) {
  return std::ranges::any_of(
      kOptional, [=](const auto& iRange) { return iRange.first <= iCharacter && iCharacter <= iRange.last; });
}

/// The letters that the font lacks, ascending; none as soon as there are too many.
std::optional<std::vector<uint32_t>> MissingLetters(const Tova::LanguageAlphabet& iAlphabet,
                                                    const FTGlyphPages& iGlyphs) {
  std::vector<uint32_t> tMissing;
  for (const auto& [tNumber, tWords] : iAlphabet.pages) {
    const FTGlyphPages::Page* tPage = iGlyphs.FindPage(tNumber);
    for (uint32_t i = 0; i < tWords.size(); ++i) {
      uint32_t tLacking = tWords[i] & ~(tPage ? tPage->words[i] : 0);
      for (; tLacking != 0; tLacking &= tLacking - 1) {
        const uint32_t tCharacter =
            tNumber * FTGlyphPages::kPageSize + 32 * i + static_cast<uint32_t>(std::countr_zero(tLacking));
        if (!IsOptional(tCharacter)) tMissing.push_back(tCharacter);
        if (tMissing.size() > kMostMissing) return std::nullopt;
      }
    }
  }
  return tMissing;
}

/// The code page that declares the language, null where none of the bits set does.
const CodePage* DeclaredCodePage(std::string_view iTag, uint32_t iCodePages) {
  const auto* tPage = std::ranges::find_if(kCodePages, [&](const CodePage& iPage) {
    return (iCodePages >> iPage.bit & 1) != 0 && std::ranges::find(iPage.tags, iTag) != iPage.tags.end();
  });
  return tPage == std::end(kCodePages) ? nullptr : tPage;
}

/// "U+0218, U+0219".
std::string ListOf(const std::vector<uint32_t>& iCharacters) {
  std::string tList;
  for (const uint32_t tCharacter : iCharacters) {
    char tText[sizeof("U+10FFFF")];
    std::snprintf(tText, sizeof tText, "U+%04X", tCharacter);
    tList += (tList.empty() ? "" : ", ") + std::string(tText);
  }
  return tList;
}

}  // namespace

bool VornFontTesterLanguageSupport::ExecuteTest() const {
  const FTUnicodeMap& tMap = SfntFont().UnicodeMap();
  if (tMap.Encodings().empty()) return false;
  std::vector<std::string_view> tCovered;
  std::vector<NearlyCovered> tNearly;
  for (const Tova::LanguageAlphabet& tAlphabet : Tova::LanguageAlphabets()) {
    const auto tMissing = MissingLetters(tAlphabet, tMap.Glyphs());
    if (!tMissing) continue;
    if (tMissing->empty()) {
      tCovered.push_back(tAlphabet.tag);
    } else if (kLeastPerMissing * (tMissing->size() - 1) <= tAlphabet.count) {
      tNearly.push_back({tAlphabet.tag, *tMissing});
    }
  }
  const auto tFields = SfntFacts::OS2Fields(SfntFont());
  const uint32_t tCodePages = tFields ? tFields->CodePageRange1() : 0;
  CheckDeclared(tNearly, tCodePages);
  if (!ExecuteTestsWithSeverity(Severity::kInformation)) return true;
  ReportCovered(tCovered);
  ReportNearlyCovered(tNearly, tCodePages);
  return true;
}

void VornFontTesterLanguageSupport::CheckDeclared(const std::vector<NearlyCovered>& iLanguages,
                                                  uint32_t iCodePages) const {
  for (const auto& [tTag, tMissing] : iLanguages) {
    const CodePage* tPage = DeclaredCodePage(tTag, iCodePages);
    if (!tPage) continue;
    ReportResult(Severity::kMinorError,
                 "The font declares code page %d, but lacks %d characters of the language %@: %@",
                 {tPage->number, tMissing.size(), Tova::MakeString(tTag), Tova::MakeString(ListOf(tMissing))});
  }
}

void VornFontTesterLanguageSupport::ReportCovered(const std::vector<std::string_view>& iTags) const {
  if (iTags.empty()) {
    ReportResult(Severity::kInformation, "The font covers the alphabet of none of %d languages",
                 {Tova::LanguageAlphabets().size()});
    return;
  }
  std::string tList;
  for (const std::string_view tTag : iTags) tList.append(tList.empty() ? "" : ", ").append(tTag);
  ReportResult(Severity::kInformation, "The font covers the alphabets of %d languages: %@",
               {iTags.size(), Tova::MakeString(tList)});
}

void VornFontTesterLanguageSupport::ReportNearlyCovered(const std::vector<NearlyCovered>& iLanguages,
                                                        uint32_t iCodePages) const {
  size_t tCount = 0;
  std::string tList;
  for (const auto& [tTag, tMissing] : iLanguages) {
    if (DeclaredCodePage(tTag, iCodePages)) continue;
    if (tCount < kMostNamed) {
      tList.append(tList.empty() ? "" : ", ").append(tTag).append(" (" + ListOf(tMissing) + ")");
    }
    ++tCount;
  }
  if (tCount == 0) return;
  if (tCount > kMostNamed) tList += ", ...";
  ReportResult(Severity::kInformation, "A few characters are missing for %d more languages: %@",
               {tCount, Tova::MakeString(tList)});
}
