#include <algorithm>

#include "Tests/VornFontTesterLanguageSupport.h"
#include "support/CmapBuilder.h"
#include "support/MetadataBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

const Tova::LanguageAlphabet& Alphabet(const std::string& tag) {
  const auto& alphabets = Tova::LanguageAlphabets();
  const auto found = std::ranges::find(alphabets, tag, &Tova::LanguageAlphabet::tag);
  EXPECT_NE(found, alphabets.end()) << tag;
  return found == alphabets.end() ? alphabets.front() : *found;
}

/// Groups that map the letters of a language, but for some, to glyph 1.
TableBuilder Letters(const std::string& tag, const std::vector<uint32_t>& missing) {
  std::vector<CmapGroup> groups;
  for (const auto& [number, words] : Alphabet(tag).pages) {
    for (uint32_t i = 0; i < 256; ++i) {
      const uint32_t character = number * 256 + i;
      const bool has = (words[i / 32] >> i % 32 & 1) != 0;
      if (has && std::ranges::find(missing, character) == missing.end()) groups.push_back({character, character, 1});
    }
  }
  return CmapGroups(13, groups);
}

Findings RunOn(const TableBuilder& letters, uint32_t code_pages = 0, uint16_t version = 1) {
  FontBuilder font = GoodFont().Table("cmap", CmapTable({{3, 10, letters}}));
  return test::Run(TestLanguageSupport,
                   font.Table("OS/2", OS2Table(1).Patch("ulCodePageRange1", code_pages).Patch("version", version)));
}

TEST(LanguageAlphabets, AreThoseOfTheBundle) {
  const auto& alphabets = Tova::LanguageAlphabets();
  EXPECT_TRUE(std::ranges::is_sorted(alphabets, {}, &Tova::LanguageAlphabet::tag));
  EXPECT_EQ(alphabets.size(), 244u);
  uint32_t characters = 0;
  for (const Tova::LanguageAlphabet& alphabet : alphabets) characters += alphabet.count;
  EXPECT_EQ(characters, 51702u);
  EXPECT_EQ(Alphabet("de").count, 59u);
  EXPECT_EQ(Alphabet("en").count, 72u);
  EXPECT_EQ(Alphabet("zh-tw").count, 13063u);
}

TEST(LanguageAlphabets, LinesThatDoNotParseAreSkipped) {
  const auto alphabets =
      Tova::ParseLanguageAlphabets("b 41-43 E4 100-101\na 10FFFF\nc\n 41\nd 43-41\ne 42 41\nf 110000\ng 4x\nh 41-\n");
  ASSERT_EQ(alphabets.size(), 2u);
  EXPECT_EQ(alphabets[0].tag, "a");
  const Tova::LanguageAlphabet expected = {"b", {{0, {0, 0, 0xE, 0, 0, 0, 0, 0x10}}, {1, {3}}}, 6};
  EXPECT_EQ(alphabets[1], expected);
  EXPECT_TRUE(Tova::ParseLanguageAlphabets("").empty());
}

TEST(LanguageSupport, ALanguageOfADeclaredCodePageLacksNothing) {
  const Message minor = {
      "MinorError", "languages: The font declares code page 1252, but lacks 1 characters of the language fr: U+0178"};
  ExpectMessage(RunOn(Letters("fr", {0x178}), 1), minor);
  const Findings clear = RunOn(Letters("fr", {0x178}), 2);
  EXPECT_EQ(std::ranges::count(clear.messages, minor), 0);
  EXPECT_NE(clear.messages.back().text.find("fr (U+0178)"), std::string::npos) << clear.messages.back();
  EXPECT_EQ(std::ranges::count(RunOn(Letters("fr", {0x178}), 1, 0).messages, minor), 0)
      << "version 0 has no code pages";
  EXPECT_EQ(std::ranges::count(RunOn(Letters("fr", {'A', 'B', 'C', 'D'}), 1).messages[0].text, ':'), 1)
      << "too many missing";
}

TEST(LanguageSupport, OptionalLettersMayBeMissing) {
  const Findings findings = RunOn(Letters("af", {0x149}));
  ASSERT_FALSE(findings.messages.empty());
  EXPECT_NE(findings.messages[0].text.find(": af"), std::string::npos) << findings.messages[0];
}

TEST(LanguageSupport, LittleIsCoveredByAFontOfOneLetter) {
  const std::string count = std::to_string(Tova::LanguageAlphabets().size());
  ExpectMessages(RunOn(CmapFormat6('A', {1})),
                 {{kInformation, "languages: The font covers the alphabet of none of " + count + " languages"}});
  EXPECT_FALSE(test::Run(TestLanguageSupport, GoodFont().Remove("cmap")).applies);
}

}  // namespace
