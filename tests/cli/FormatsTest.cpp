#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "cli/Program.h"
#include "support/GlyphBuilder.h"
#include "support/TemporaryFolder.h"

namespace {

using nlohmann::json;
using namespace test;
using namespace testing;

constexpr const char* kHostileName = "A|B <b>`x` *& \"q\" 50%, www.x @me\n::error::\x01";

/// Reports of a good font, one with a hostile name, glyphs without outline and too few contours in 'maxp', and a file
/// that is none.
class Formats : public testing::Test {
 protected:
  Formats() {
    std::vector<Bytes> glyphs(8);
    glyphs[0] = SquareGlyph(9);
    paths_ = {folder_.Write("1 good.ttf", GoodFont().Build()),
              folder_.Write("2,\xFF:%\n`|#.ttf",
                            OutlineFont(glyphs)
                                .Table("maxp", MaxpTable(8).Patch("maxContours", 7))
                                .Table("name", NameTable({{1, "F"}, {2, "R"}, {4, kHostileName}, {6, "F-R"}}))
                                .Build()),
              folder_.Write("3.ttf", Bytes(40, 'n'))};
  }

  std::string Print(const std::string& format, std::vector<std::string> options, bool withMissing = false) const {
    options.insert(options.end(), {"-f", format, "-t", "*.glyf.usability"});
    options.insert(options.end(), paths_.begin(), paths_.end());
    if (withMissing) options.push_back(folder_.File("missing.ttf"));
    std::string text = RunProgram(options).out;
    const std::string folder = folder_.Path().string() + "/";
    for (size_t at; (at = text.find(folder)) != text.npos;) text.erase(at, folder.size());
    return text;
  }

  /// Whether a command takes the text for valid, which stands in a file that is its last argument.
  bool IsValid(const std::string& command, const std::string& text) const {
    std::ofstream(folder_.File("text")) << text;
    return std::system((command + " '" + folder_.File("text") + "'").c_str()) == 0;
  }

  TemporaryFolder folder_;
  std::vector<std::string> paths_;
};

TEST_F(Formats, JsonIsValidAndTellsOfTheRun) {
  const std::string validate = PYTHON
      " -c 'import json, jsonschema, sys; schema, log = (json.load(open(f)) for f in sys.argv[1:]); "
      "jsonschema.Draft7Validator(schema).validate(log)' " SCHEMAS_FOLDER "/../report.schema.json";
  folder_.Write("rules.toml", TableBuilder().Text("[rules]\n\"glyf/*\" = \"fatal\"\n[[ignore]]\nfont = \"*\"\n"
                                                  "rule = \"glyf/glyph-blank\"\nreason = \"so\"\n"));
  const std::vector<std::vector<std::string>> ways = {
      {}, {"-r", "summary"}, {"-r", "results"}, {"--config", folder_.File("rules.toml"), "--no-times", "-t", "glyf"}};
  for (const auto& way : ways) EXPECT_TRUE(IsValid(validate, Print("json", way, true))) << PrintToString(way);

  const std::string text = Print("json", ways.back(), true);
  EXPECT_EQ(text, Print("json", ways.back(), true)) << "nothing differs without times";
  const json report = json::parse(text);
  EXPECT_EQ(report["exit"], json({{"code", 2}, {"reason", "a path could not be read"}}));
  EXPECT_EQ(report["ignores"][0]["findings"], report["totals"]["ignored"]);
  EXPECT_EQ(report["totals"]["failing"], 2);
  const json limited = json::parse(Print("json", {"-s", "minor", "--limit-to-shown"}));
  EXPECT_EQ(limited["options"]["limitToShown"], true);
  const json& messages = limited["files"][1]["report"]["kVornFontTestFontsTestedKey"][0]["kVornFontTestArrayKey"][0]
                                ["kVornFontTestMessagesKey"];
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0]["rule"], "glyf/maxp-contours-differ");
}

TEST_F(Formats, SarifIsValidAndNamesRulesAndPlaces) {
  const std::string validate = PYTHON
      " -c 'import json, jsonschema, sys; schema, log = (json.load(open(f)) for f in sys.argv[1:]); "
      "jsonschema.Draft4Validator(schema).validate(log)' " SCHEMAS_FOLDER "/sarif-2.1.0.json";
  for (const char* detail : {"full", "results"}) {
    EXPECT_TRUE(IsValid(validate, Print("sarif", {"-r", detail}, true))) << detail;
  }
  const json run = json::parse(Print("sarif", {}))["runs"][0];
  EXPECT_TRUE(run["invocations"][0]["executionSuccessful"]);
  const json failed = json::parse(Print("sarif", {}, true))["runs"][0];
  EXPECT_FALSE(failed["invocations"][0]["executionSuccessful"]);
  EXPECT_EQ(failed["properties"]["notRead"], 1);
  EXPECT_EQ(failed["results"].back()["message"]["text"], "No such file or directory");
  const json &results = run["results"], &rules = run["tool"]["driver"]["rules"];
  ASSERT_EQ(results.size(), 10u);
  for (const json& result : results) EXPECT_EQ(rules[result["ruleIndex"].get<size_t>()]["id"], result["ruleId"]);

  const json& blank = results[3];
  EXPECT_EQ(blank["level"], "note");
  const json& place = blank["locations"][0];
  EXPECT_EQ(place["physicalLocation"]["artifactLocation"]["uri"], "file://2%2C%FF%3A%25%0A%60%7C%23.ttf");
  EXPECT_EQ(place["logicalLocations"][0]["kind"], "glyph");
  EXPECT_EQ(place["logicalLocations"][0]["fullyQualifiedName"],
            std::string(kHostileName) + "/glyf/" + blank["properties"]["glyph"].dump());
  EXPECT_EQ(results.back()["level"], "error");
  std::set<std::string> fingerprints;
  for (const json& result : results) fingerprints.insert(result["partialFingerprints"]["finding/v1"]);
  EXPECT_EQ(fingerprints.size(), results.size());
  const json quiet = json::parse(Print("sarif", {"-x", "*.glyf.*", "-t", "*.loca.*"}));
  EXPECT_EQ(quiet["runs"][0]["results"], json::array({results.back()}));
}

TEST_F(Formats, JUnitIsValidAndFailsOnWhatFailsTheRun) {
  const std::string validate = "xmllint --noout --schema " SCHEMAS_FOLDER "/junit.xsd 2>&1";
  for (const char* detail : {"full", "summary", "results"}) {
    EXPECT_TRUE(IsValid(validate, Print("junit", {"-r", detail}, true))) << detail;
  }
  const std::string text = Print("junit", {"--fail-on", "minor", "-s", "information"}, true);
  EXPECT_THAT(text, HasSubstr("tests=\"1\" failures=\"1\" errors=\"0\""));
  EXPECT_THAT(text,
              HasSubstr("<failure message=\"1 minor\" type=\"minor\">minor  glyf: maxContours in &#39;maxp&#39;"));
  EXPECT_THAT(text, HasSubstr("<system-out>information  glyf: Glyph 1: no outline\n"));
  EXPECT_THAT(text, HasSubstr("\n... and 4 more like this\n  rule: glyf/glyph-blank\n  why: "));
  EXPECT_THAT(text, HasSubstr("A|B &#60;b&#62;`x` *&#38; &#34;q&#34; 50%, www.x @me\\x0a::error::\\x01\""));
  EXPECT_THAT(text, HasSubstr("<testcase name=\"open\" classname=\"3.ttf\" file=\"3.ttf\">\n      <error "));
  EXPECT_THAT(text, HasSubstr("type=\"fatal\">fatal  No such file or directory\n"));
  EXPECT_THAT(Print("junit", {"--fail-on", "never"}), Not(HasSubstr("<failure")));
}

TEST_F(Formats, GithubAnnotatesOnceForEachRule) {
  EXPECT_THAT(Print("github", {"-s", "major"}),
              MatchesRegex("::error file=3.ttf,title=fatal%3A [^:]*::1 finding%0Ano font can be [^\n]*\n"));
  EXPECT_EQ(RunProgram({"--list-tests", "-f", "github"}).status, 2);
  const std::string text = Print("github", {"-s", "information"}, true);
  EXPECT_EQ(std::ranges::count(text, '\n'), 5);
  EXPECT_THAT(text, HasSubstr("::warning file=2%2C\\xff%3A%25\\x0a`|#.ttf,title=minor%3A "));
  EXPECT_THAT(text,
              HasSubstr("::A|B <b>`x` *& \"q\" 50%25, www.x @me\\x0a::error::\\x01: 1 finding%0Aglyf: maxContours"));
  EXPECT_THAT(text, HasSubstr(": no outline%0A... and 4 more like this%0AWhy: "));
  EXPECT_THAT(text, HasSubstr("\n::error file=missing.ttf,title=fatal%3A the file could not be examined "
                              "(run/failure)::1 finding%0ANo such file or directory%0A"));
}

TEST_F(Formats, MarkdownHasALineForEachFileAndKeepsNamesText) {
  const std::string text = Print("markdown", {"-s", "information"}, true);
  EXPECT_THAT(text,
              StartsWith("## Fonts: failed\n\n3 files, 2 fonts, 2 tests run. Findings: 1 fatal, 1 minor, 8 "
                         "information. Fails on major and above.\n\n**1 path could not be tested.**\n\n| file |"));
  EXPECT_EQ(std::ranges::count(text, '\n'), 12);
  EXPECT_THAT(text,
              HasSubstr("\n| <code>2,&#92;xff&#58;%&#92;x0a&#96;&#124;&#35;.ttf</code> | 0 | 0 | 1 | 0 | 7 | <code>"));
  EXPECT_THAT(text, HasSubstr("A&#124;B &#60;b&#62;&#96;x&#96; &#42;&#38; &#34;q&#34; 50%, www&#46;x &#64;me"));
  EXPECT_THAT(text, HasSubstr("<li>... and 4 more like this</li></ul>Why: "));
  EXPECT_THAT(Print("markdown", {"-t", "*.TrueType.usability", "--fail-on", "never"}),
              StartsWith("## Fonts: passed\n"));
}

}  // namespace
