#include <gmock/gmock.h>

#include "Report/EscapedText.h"
#include "cli/Program.h"
#include "support/GlyphBuilder.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace testing;
using namespace test;

class TextReport : public testing::Test {
 protected:
  TextReport() {
    std::vector<Bytes> glyphs(3003);
    glyphs[0] = SquareGlyph(9);
    folder_.Write("good.ttf", GoodFont().Build());
    folder_.Write("glyphs.ttf", OutlineFont(glyphs).Table("maxp", MaxpTable(3003).Patch("maxContours", 7)).Build());
    folder_.Write("none.ttf", Bytes(40, 'n'));
  }
  /// What the program prints with these options, without the time and the folder's name.
  std::string Print(std::vector<std::string> options) const {
    options.insert(options.end(), {"-t", "*.glyf.usability"});
    for (const char* name : {"good.ttf", "glyphs.ttf", "none.ttf"}) options.push_back(folder_.File(name));
    std::string text = RunProgram(options).out;
    const std::string folder = folder_.Path().string() + "/";
    for (size_t at; (at = text.find(folder)) != text.npos;) text.erase(at, folder.size());
    const size_t time = text.find(" in ", text.rfind("3 files"));
    return text.erase(time, text.find('\n', time) - time);
  }

 private:
  TemporaryFolder folder_;
};

TEST_F(TextReport, DetailAndLevelDecideWhatIsShown) {
  EXPECT_EQ(Print({}), R"(good.ttf: Good Regular (Good-Regular), TrueType font data: nothing major or above, 1 below
glyphs.ttf: glyphs.ttf (<no font name>), TrueType font data: nothing major or above, 3,003 below

none.ttf
    fatal  The file cannot be opened as a font.

3 files, 2 fonts, 2 tests run
Findings: 1 fatal, 1 minor, 3,003 information
3,004 more below major (use --show information to see all)
)");
  EXPECT_THAT(Print({"-s", "information"}), HasSubstr(R"(
glyphs.ttf: glyphs.ttf (<no font name>), TrueType font data
  Glyph outlines  veltrin.TrueType.glyf.usability
    minor        glyf: maxContours in 'maxp' is 7; the simple glyphs have up to 1
    information  glyf: Glyph 1: no outline
    information  glyf: Glyph 2: no outline
    information  glyf: Glyph 3: no outline
                 ... and 2,999 more like this

none.ttf
    fatal        The file cannot be opened as a font.
)"));
  EXPECT_THAT(Print({"-s", "information", "--all-messages"}), HasSubstr("Glyph 3000: no outline"));
  EXPECT_THAT(Print({"-s", "minor", "--max-messages", "1"}), HasSubstr("\n    minor  (no further text)\n"));
  EXPECT_THAT(Print({"-s", "minor", "-r", "summary"}), HasSubstr("  veltrin.TrueType.glyf.usability: minor\n"));
  EXPECT_THAT(Print({"-s", "minor", "-r", "results"}),
              StartsWith("good.ttf: nothing minor or above, 1 below\nglyphs.ttf: minor\nnone.ttf: fatal\n\n3 files\n"));
}

TEST(Explanation, IsOfARuleATestOrAGroup) {
  const auto explain = [](const char* name) { return RunProgram({"--explain", name}); };
  const std::string rule = explain("glyf/box-differs").out;
  EXPECT_THAT(rule,
              StartsWith("glyf/box-differs  minor, sound\n  stored box differs from the points\n  means     The "));
  EXPECT_THAT(rule, HasSubstr("\n            "));
  for (const char* name : {"veltrin.TrueType.glyf.usability", "glyf"}) {
    EXPECT_THAT(explain(name).out, AllOf(StartsWith("glyf/box-beyond-font-box  "), HasSubstr("\n\n" + rule)));
  }
  const Outcome unknown = explain("box-difers");
  EXPECT_EQ(unknown.status, 2);
  EXPECT_THAT(unknown.err, HasSubstr("--explain: no rule, test or group 'box-difers'; like it: glyf/box-differs, "));
}

TEST(EscapedText, ShowsWhatIsNoTextAsEscapes) {
  const struct {
    std::string text, escaped;
  } cases[] = {{"Grüße, 游明朝 𝔉", "Grüße, 游明朝 𝔉"},
               {std::string("\0\t\x7f", 3), "\\x00\\x09\\x7f"},
               {"\xC2\x9B\xE2\x81\xA6\xE2\x80\xA8", "\\u009b\\u2066\\u2028"},
               {"\xC0\x80 \xED\xA0\x80 \xF4\x90\x80\x80", "\\xc0\\x80 \\xed\\xa0\\x80 \\xf4\\x90\\x80\\x80"},
               {"cut \xE2\x80", "cut \\xe2\\x80"}};
  for (const auto& example : cases) EXPECT_EQ(tool::EscapeForTerminal(example.text), example.escaped);
}

}  // namespace
