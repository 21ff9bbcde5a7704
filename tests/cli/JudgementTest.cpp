#include <gmock/gmock.h>

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>

#include "cli/Program.h"
#include "support/GlyphBuilder.h"
#include "support/TemporaryFolder.h"

namespace {

using nlohmann::json;
using namespace test;
using namespace testing;

/// A folder with a font whose glyphs 1 to 4 leave the font's box, and whose zones older systems refuse.
class Judgement : public testing::Test {
 protected:
  Judgement() {
    for (const char* name : {"fonts", "more"}) std::filesystem::create_directory(folder_.File(name));
    WriteFont(5);
  }
  void WriteFont(int glyphs) {
    std::vector<Bytes> squares(static_cast<size_t>(glyphs), SquareGlyph(700));
    squares[0] = SquareGlyph(9);
    font_ = folder_.Write(
        "fonts/font.ttf",
        OutlineFont(squares).Table("maxp", MaxpTable(static_cast<uint16_t>(glyphs)).Patch("maxZones", 1)).Build());
  }
  void Configure(const std::string& text) {
    folder_.Write("fonts/vorn-font-test.toml", Bytes(text.begin(), text.end()));
  }
  Outcome Test(std::vector<std::string> options = {}) const {
    options.insert(options.end(), {"-t", "glyf", "-t", "maxp", "-x", "*.instructions", "--fail-on", "minor", font_});
    return RunProgram(options);
  }

  const TemporaryFolder folder_;
  std::string font_;
};

constexpr const char* kBoxes = "4 glyphs: points lie outside the font's box";

TEST_F(Judgement, RulesAreRaisedAndLowered) {
  EXPECT_THAT(Test().out, HasSubstr(std::string(" x minor  ") + kBoxes));
  Configure("show = \"major\"\n[rules]\n\"glyf/box-*\" = \"major\"\n\"glyf/box-beyond-font-box\" = \"technical\"\n");
  EXPECT_THAT(Test().out, HasSubstr("PASS, 4 below major, 3 of older systems"));
  EXPECT_THAT(Test({"--show", "technical"}).out, HasSubstr("glyf/box-beyond-font-box")) << "the command line wins";
  for (const std::vector<std::string>& way : {std::vector<std::string>{}, {"-q"}, {"--max-messages", "1"}}) {
    EXPECT_EQ(Test(way).status, 0);
  }
  Configure("[rules]\n\"maxp/zones-not-two\" = \"fatal\"\n\"glyf/*\" = \"technical\"\n");
  EXPECT_EQ(Test({"-q"}).status, 1) << "a historic rule with a level counts";
  EXPECT_THAT(Test({"-f", "json"}).out,
              HasSubstr("\"rule\":\"maxp/zones-not-two\",\"state\":\"historic\",\"level\":\"fatal\"}"));
  EXPECT_EQ(Test({"-q", "--no-config", "-x", "glyf"}).status, 0);
}

TEST_F(Judgement, FindingsAreIgnoredForAReason) {
  const std::string ignore = "[[ignore]]\nrule = \"glyf/box-*\"\nreason = \"drawn so\"\n";
  Configure(ignore + "font = \"fonts/*.ttf\"\nglyphs = [1, \"3-9\"]\n" + ignore + "font = \"other.ttf\"\n");
  const Outcome some = Test();
  EXPECT_EQ(some.status, 1);
  EXPECT_THAT(some.out, AllOf(HasSubstr("1 glyph: points lie"), HasSubstr("\n     glyph 2  "),
                              HasSubstr(" Ignored     1 rule, 3 findings that the configuration names\n")));
  EXPECT_EQ(some.err, "vorn-font-test: " + folder_.File("fonts/vorn-font-test.toml") +
                          ":6: nothing was found to ignore: glyf/box-* in other.ttf\n");
  Configure(ignore + "font = \"font.ttf\"\n");
  for (const std::vector<std::string>& way : {std::vector<std::string>{}, {"-q"}, {"-r", "results"}}) {
    EXPECT_EQ(Test(way).status, 0);
  }
}

TEST_F(Judgement, EveryFormatTellsWhatFindingsComeTo) {
  const std::string baseline = folder_.File("old.json");
  WriteFont(4);
  Test({"-q", "-f", "json", "-o", baseline});
  WriteFont(6);
  Configure("[[ignore]]\nrule = \"glyf/box-*\"\nfont = \"font.ttf\"\nglyphs = [4]\nreason = \"drawn so\"\n");
  std::string fingerprints[2];
  for (const bool translated : {false, true}) {
    const Outcome log = Test({"-f", "sarif", "--baseline", baseline, "--language", translated ? "en" : "none"});
    std::map<std::string, int> kinds;
    const json results = json::parse(log.out)["runs"][0]["results"];
    for (const json& result : results) {
      fingerprints[translated] += result["partialFingerprints"]["finding/v1"];
      ++kinds[result.value("kind", "fail") + " " + result["baselineState"].get<std::string>() + " " +
              result.value("/suppressions/0/justification"_json_pointer, "")];
    }
    EXPECT_THAT(kinds, ElementsAre(Pair("fail new ", 1), Pair("fail new drawn so", 1), Pair("fail unchanged ", 3),
                                   Pair("informational unchanged ", 3)));
  }
  EXPECT_EQ(fingerprints[0], fingerprints[1]);
  EXPECT_THAT(Test({"-f", "github", "--baseline", baseline}).out, HasSubstr("::font.ttf: 1 finding%0Aglyf: Glyph 5: "));
  EXPECT_THAT(Test({"-f", "junit", "--baseline", baseline}).out, HasSubstr("<failure message=\"1 minor\""));
  EXPECT_THAT(Test({"-f", "markdown", "--baseline", baseline}).out,
              AllOf(HasSubstr("Findings: 1 minor, 3 of older systems left out, 1 ignored, 3 known. Fails"),
                    HasSubstr("</code> | 0 | 0 | 1 | 0 | 0 |")));
  for (const char* detail : {"summary", "results"}) {
    EXPECT_THAT(Test({"--baseline", baseline, "-r", detail}).out, Not(HasSubstr("fixed")))
        << "nothing was seen of them";
  }
}

TEST_F(Judgement, FaultsOfAConfigurationAreNamedWithTheirLines) {
  for (const auto& [text, fault] : std::initializer_list<std::pair<std::string, std::string>>{
           {"\nshow = \"dire\"", ":2: --show: 'dire' is none of"},
           {"output = \"x\"", ":1: there is no option 'output' that a configuration may set"},
           {"[rules]\n\"glyf/nope\" = \"minor\"", ":2: there is no rule 'glyf/nope'"},
           {"[rules]\n\"glyf/*\" = \"none\"", ":2: the level of glyf/* is none of"},
           {"[[ignore]]\nrule = \"glyf/*\"\nfont = \"*\"", ":1: this ignore has no reason"},
           {"\n\na = = 3", ":3: "}}) {
    Configure(text);
    const Outcome outcome = Test();
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, HasSubstr("fonts/vorn-font-test.toml" + fault));
  }
  folder_.Write("more/vorn-font-test.toml", {});
  EXPECT_THAT(Test({folder_.File("more")}).err, HasSubstr("different fonts have different configurations"));
}

TEST_F(Judgement, OnlyWhatTheBaselineLacksIsNew) {
  const std::string text = folder_.File("unopened.txt");
  folder_.Write("unopened.txt", Bytes(9, 'n'));
  const auto hasAlarm = AnyOf(HasSubstr("::error"), HasSubstr("<error"), HasSubstr("<failure"), HasSubstr("> | 1 |"));
  for (const std::string format : {"json", "jsonl"}) {
    WriteFont(5);
    const std::string baseline = folder_.File("baseline." + format);
    Test({"-q", "-f", format, "-o", baseline, text});
    const Outcome same = Test({"--baseline", baseline, text});
    EXPECT_EQ(same.status, 0) << same.out;
    EXPECT_THAT(same.out, AllOf(HasSubstr("PASS, nothing found, 3 of older systems left out, 4 known"),
                                HasSubstr("Findings: none")));
    EXPECT_EQ(Test({"-q", "--baseline", baseline}).status, 0);
    for (const char* other : {"github", "junit", "markdown"}) {
      EXPECT_THAT(Test({"-f", other, "--baseline", baseline, text}).out, Not(hasAlarm));
    }
    EXPECT_EQ(Test({"-q", "--max-messages", "3", "--baseline", baseline}).status, 1) << "not the baseline's limit";

    WriteFont(7);
    const Outcome more = Test({"--baseline", baseline});
    EXPECT_EQ(more.status, 1);
    EXPECT_THAT(more.out, AllOf(HasSubstr("2 glyphs: points lie"), HasSubstr("\n     glyph 5, glyph 6\n"),
                                HasSubstr(" Known       1 rule, 4 findings that stand in the baseline\n")));
    WriteFont(4);
    EXPECT_THAT(Test({"--baseline", baseline}).out, HasSubstr("3 known, 1 fixed"));
  }
  Test({"-q", "-r", "summary", "-f", "json", "-o", folder_.File("summary.json")});
  for (const char* file : {"summary.json", "unopened.txt", "missing.json"}) {
    const Outcome outcome = Test({"--baseline", folder_.File(file)});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, HasSubstr("--baseline: "));
  }
}

}  // namespace
