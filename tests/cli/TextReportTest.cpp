#include <gmock/gmock.h>

#include "Formats/GlyphNames.h"
#include "Formats/LineWrapping.h"
#include "Report/EscapedText.h"
#include "cli/Program.h"
#include "support/CmapBuilder.h"
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
    folder_.Write("glyphs.ttf", OutlineFont(glyphs)
                                    .Table("maxp", MaxpTable(3003).Patch("maxContours", 7))
                                    .Table("cmap", CmapTable({{3, 1, CmapFormat6(0x41, {2, 3, 2998})}}))
                                    .Table("GPOS", Bytes(12))
                                    .Build());
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

  TemporaryFolder folder_;
};

TEST_F(TextReport, DetailAndLevelDecideWhatIsShown) {
  EXPECT_EQ(Print({}), R"(good.ttf   Good Regular, Version 1.0
    TrueType outlines, 3 glyphs   PASS, 1 below minor, 9 tables not tested

glyphs.ttf   TrueType outlines, 3,003 glyphs

 x minor  greatest contour count is wrong in 'maxp'    glyf/maxp-contours-differ
     maxContours in 'maxp' is 7; the simple glyphs have up to 1
     why  programs size their memory by it
     fix  recalculate 'maxp' on export
 . info   3,002 glyphs: no outline

 Not tested  7 tables (--show information names them)

 PASS (fails on major)   0 fatal  0 major  1 minor in 1 rule

none.ttf

 x fatal  no font can be opened: the file holds text

 FAIL (fails on major)   1 fatal  0 major

3 files, 2 fonts, 2 tests run
Findings: 1 fatal, 1 minor, 3,003 information
FAIL (fails on major)  1 failed, 2 passed
)");
  EXPECT_THAT(Print({"-s", "information"}), HasSubstr(R"(
 . info   3,002 glyphs: no outline                              glyf/glyph-blank
     glyphs 1-3002
     why  a glyph may have been forgotten
     fix  look whether the glyph is meant to be blank

 Tested      glyf
 Not tested  cmap GPOS head hhea hmtx loca maxp

 PASS (fails on major)   0 fatal  0 major  1 minor  3,002 information in 2 rules
)"));
  EXPECT_THAT(Print({"-s", "information", "--all-messages"}), HasSubstr(", U+0043 (2998), glyph 2999,"));
  EXPECT_THAT(Print({"--max-messages", "1"}), HasSubstr("\n x minor  Glyph outlines\n     (no further text)\n"));
  EXPECT_THAT(Print({"-r", "summary"}), HasSubstr("\n veltrin.TrueType.glyf.usability  minor\n"));
  EXPECT_THAT(Print({"-r", "results"}), StartsWith("good.ttf: PASS, nothing from minor on\nglyphs.ttf: PASS, minor\n"
                                                   "none.ttf: FAIL, fatal\n\n3 files\n"));
}

TEST_F(TextReport, FirstFindingsOfARuleNameTheirGlyphs) {
  std::vector<Bytes> glyphs;
  for (int i = 0; i < 6; ++i) glyphs.push_back(SquareGlyph(900 + i));
  folder_.Write("wide.ttf", OutlineFont(glyphs).Table("cmap", CmapTable({{3, 1, CmapFormat6(0x41, {2, 1})}})).Build());
  EXPECT_THAT(RunProgram({folder_.File("wide.ttf"), "-t", "*.glyf.usability"}).out, HasSubstr(R"(
 x minor  12 findings in 6 glyphs: points lie outside the font's box
                                                        glyf/box-beyond-font-box
     glyph 0  points reach x 900 on the right; the font's xMax is 500
     glyph 0  points reach y 900 at the top; the font's yMax is 700
     U+0042 (1)  points reach x 901 on the right; the font's xMax is 500
                                                                      ... 9 more
     why  parts may be cut off where the font's box is used
     fix  recalculate the box in 'head' on export

 Not tested  6 tables (--show information names them)
 Left out    1 rule, 1 finding of older systems (--profile strict)
)"));
}

TEST(LineWrapping, CountsColumnsNotBytes) {
  EXPECT_EQ(tool::Columns("Grüße 游明朝 e\u0301"), 14u);
  EXPECT_THAT(tool::WrappedLines("游明朝 ab cdefghijk l", 6), ElementsAre("游明朝", "ab", "cdefghijk", "l"));
  EXPECT_EQ(tool::Ranges({1, 2, 3, 5, 7, 8, 20}, 99), "1-3, 5, 7, 8, 20");
  EXPECT_EQ(tool::Ranges({1, 2, 3, 5, 7, 8, 20}, 18), "1-3, 5 and 3 more");
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
