#include <algorithm>

#include "Tests/VornFontTesterLanguageSupport.h"
#include "support/CmapBuilder.h"
#include "support/MetadataBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

Tova::LanguageAlphabet Alphabet(const std::string& tag) {
  const auto alphabets = Tova::LanguageAlphabets();
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

TEST(LanguageAlphabets, AreThoseThatTheBuildWrote) {
  std::string tags;
  uint32_t characters = 0;
  for (const Tova::LanguageAlphabet& alphabet : Tova::LanguageAlphabets()) {
    tags.append(tags.empty() ? "" : " ").append(alphabet.tag);
    characters += alphabet.count;
    EXPECT_GE(alphabet.count, 27u) << alphabet.tag;
  }
  EXPECT_EQ(
      tags,
      "aa ab af ak am an ar as ast av ay az-az az-ir ba be ber-dz ber-ma bg bh bho bi bin bm bn bo br brx bs bua "
      "byn ca ce ch chm chr co crh cs csb cu cv cy da de doi dv dz ee el en eo es et eu fa fat ff fi fil fj fo fr "
      "fur fy ga gd gez gl gn gu gv ha haw he hi hne ho hr hsb ht hu hy hz ia id ie ig ii ik io is it iu ja jv ka "
      "kaa kab ki kj kk kl km kn ko kok kr ks ku-am ku-iq ku-ir ku-tr kum kv kw kwm ky la lah lb lez lg li ln lo lt "
      "lv mai mg mh mi mk ml mn-cn mn-mn mni mo mr ms mt my na nb nds ne ng nl nn no nqo nr nso nv ny oc om or os "
      "ota pa pa-pk pap-an pap-aw pl ps-af ps-pk pt qu quz rm rn ro ru rw sa sah sat sc sco sd se sel sg sh shs si "
      "sid sk sl sm sma smj smn sms sn so sq sr ss st su sv sw syr ta te tg th ti-er ti-et tig tk tl tn to tr ts tt "
      "tw ty tyv ug uk ur uz ve vi vo vot wa wal wen wo xh yap yi yo za zh-cn zh-hk zh-mo zh-sg zh-tw zu");
  EXPECT_EQ(characters, 51702u);
  EXPECT_EQ(Alphabet("de").count, 59u);
  EXPECT_EQ(Alphabet("en").count, 72u);
  EXPECT_EQ(Alphabet("zh-tw").count, 13063u);
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
