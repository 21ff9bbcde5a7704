#include <algorithm>

#include "Tests/VornFontTesterConsistency_cmap.h"
#include "Tests/VornFontTesterUsability_cmap.h"
#include "support/CmapBuilder.h"
#include "support/GlyphBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

const auto [Information, Technical, Minor, Major, Fatal] = MessagesOf("cmap: ");

using Records = std::vector<CmapRecord>;

/// A font of a square (glyphs 0 and 1), an empty glyph (2), and a compound of the empty one (3), all 600 wide.
FontBuilder Font(const Records& records) {
  FontBuilder font = OutlineFont({SquareGlyph(500), SquareGlyph(500), {}, CompoundGlyph({{0x0003, 2}})});
  return font.Table("cmap", CmapTable(records));
}
void ExpectUsable(const FontBuilder& font, const std::vector<Message>& expected) {
  Expect(TestUsability_cmap, font, expected);
}

/// Groups that map both spaces to a blank glyph, and these characters to a square.
TableBuilder Mapped(const std::vector<CmapGroup>& more, uint32_t space = 2, uint32_t no_break_space = 2) {
  std::vector<CmapGroup> groups = {{' ', ' ', space}, {0xA0, 0xA0, no_break_space}};
  groups.insert(groups.end(), more.begin(), more.end());
  std::ranges::sort(groups, {}, &CmapGroup::startCharCode);
  return CmapGroups(13, groups);
}

TEST(CmapUsability, AFontNeedsAnEncodingThatLayoutReads) {
  const TableBuilder format6 = CmapFormat6('A', {1});
  FontBuilder none = Font({});
  ExpectUsable(none, {Fatal("The font has no character mapping")});
  ExpectUsable(none.Remove("cmap"), {Fatal("The font has no character mapping")});
  ExpectUsable(Font({{1, 0, format6}}),
               {Minor("The font has no Unicode encoding, only encodings of the Valdor platform")});
  ExpectUsable(Font({{1, 0, format6}, {3, 0, format6}}),
               {Information("The font is a symbol font; its characters have no Unicode values")});
  ExpectUsable(Font({{3, 2, format6}}), {Fatal("The font has no encoding that text layout can use")});
  ExpectUsable(Font({{3, 1, CmapFormat2({}, {{0, {1}}})}}),
               {Major("None of the Unicode encodings has a format that text layout reads (4, 6, 10, 12 or 13)")});
  ExpectUsable(Font({{3, 1, CmapFormat6('A', {0})}}), {Fatal("The Unicode encodings map no character to a glyph")});
}

TEST(CmapUsability, FormatsAreMeantForTheirEncodings) {
  ExpectUsable(Font({{0, 3, CmapFormat0({})}, {3, 1, Mapped({{'A', 'A', 1}})}, {3, 10, Mapped({{'A', 'A', 1}})}}),
               {Technical("Encoding 0 (platform 0, script 3) has format 0, which is not meant for it"),
                Technical("Encoding 1 (platform 3, script 1) has format 13, which is not meant for it")});
}

TEST(CmapUsability, CharactersLeadToGlyphsOfTheFont) {
  ExpectUsable(
      Font({{3, 10, Mapped({{'A', 'B', 4}, {'C', 'C', 9}}, 9)}}),
      {Major("4 characters are mapped to glyphs that the font does not have; U+0020 is mapped to glyph 9 of 4")});
}

TEST(CmapUsability, SpacesAreBlankAndLettersAreNot) {
  ExpectUsable(Font({{3, 10, Mapped({{'A', 'A', 1}, {0x2000, 0x2000, 3}, {0x3000, 0x3000, 1}}, 1)}}),
               {Major("Character U+0020 must be blank, but glyph 1 is not"),
                Minor("Character U+3000 must be blank, but glyph 1 is not")});
  ExpectUsable(Font({{3, 10, Mapped({{'1', '2', 2}, {'A', 'A', 3}, {'_', '_', 2}})}}),
               {Major("3 letters or digits have a blank glyph, the first of them U+0031 (glyph 2)")});
  FontBuilder colored = Font({{3, 10, Mapped({{'A', 'A', 3}})}});
  ExpectUsable(colored.Table("COLR", {0}), {});
  ExpectUsable(
      Font({{3, 10, CmapGroups(12, {{'A', 'A', 1}})}}),
      {Major("The font has no space character (U+0020)"), Information("The font has no no-break space (U+00A0)")});
}

TEST(CmapUsability, SpacesHaveOneWidth) {
  const auto expect = [](uint16_t space, uint16_t other, const std::vector<Message>& expected) {
    FontBuilder font = Font({{3, 10, Mapped({{'A', 'A', 1}}, 2, 3)}});
    ExpectUsable(font.Table("hmtx", MetricsTable({{600, 0}, {600, 0}, {space, 0}, {other, 0}})), expected);
  };
  expect(300, 310, {});
  expect(300, 311, {Minor("The space is 300 units wide, but the no-break space 311")});
  expect(0, 0, {Major("The space character (glyph 2) has no width")});
}

TEST(CmapUsability, BasicSetsAreWhole) {
  ExpectUsable(Font({{3, 10, Mapped({{'a', 'y', 1}})}}),
               {Minor("Of the 26 characters U+0061 to U+007A the font has 25; U+007A is missing")});
  ExpectUsable(Font({{3, 10, Mapped({{'a', 'j', 1}})}}), {});
  ExpectUsable(Font({{3, 10, Mapped({{'!', '}', 1}})}}),
               {Minor("Of the 94 characters U+0021 to U+007E the font has 93; U+007E is missing")});
  ExpectUsable(Font({{3, 10, Mapped({{'!', '~', 1}})}}),
               {Information("The font has the printable ASCII characters but no euro sign (U+20AC)")});
}

TEST(CmapUsability, CharactersAreCharacters) {
  ExpectUsable(
      Font({{3, 10, Mapped({{'A', 'A', 1}, {0xD800, 0xD801, 1}, {0xFDD0, 0xFDD0, 1}, {0x1FFFE, 0x1FFFF, 1}})}}),
      {Technical("2 surrogates are mapped, the first of them U+D800"),
       Technical("3 noncharacters are mapped, the first of them U+FDD0")});
  ExpectUsable(Font({{3, 10, CmapGroups(12, {{0xF0000, 0xF0001, 1}, {0x110000, 0x110000, 1}})}}),
               {Major("Encoding 0 maps values up to 0x00110000, beyond U+10FFFF"),
                Information("2 of the 2 characters are private-use characters")});
}

void ExpectConsistent(const Records& records, const std::vector<Message>& expected) {
  Expect(TestConsistency_cmap, Font(records), expected);
}

TEST(CmapConsistency, EncodingsOfOneKindHaveTheSameCharacters) {
  const TableBuilder letters = CmapFormat6('A', {1, 1, 1});
  ExpectConsistent({{0, 3, letters}, {3, 1, letters}}, {});
  ExpectConsistent(
      {{0, 3, letters}, {3, 1, CmapFormat6('A', {1, 2, 1})}},
      {Major("Encodings 0 and 1 disagree on 1 characters: U+0042 is glyph 1 in the first and glyph 2 in the second")});
  ExpectConsistent({{0, 3, CmapFormat6('A', {1})}, {3, 1, CmapFormat6('B', {1, 1})}},
                   {Minor("Encoding 0 lacks 2 characters of encoding 1, the first of them U+0042"),
                    Minor("Encoding 1 lacks 1 characters of encoding 0, the first of them U+0041")});
  EXPECT_FALSE(test::Run(TestConsistency_cmap, GoodFont().Remove("cmap")).applies);
}

TEST(CmapConsistency, FullEncodingsHaveAllCharactersOfBasicOnes) {
  ExpectConsistent({{3, 1, CmapFormat6('A', {1, 1})}, {3, 10, CmapGroups(13, {{'B', 'D', 1}, {0x10000, 0x10005, 1}})}},
                   {Major("Encoding 1 should have all characters of encoding 0, but lacks 1, the first of them U+0041"),
                    Minor("Encoding 0 lacks 2 characters of encoding 1, the first of them U+0043")});
}

TEST(CmapConsistency, TheRomanEncodingAgrees) {
  const TableBuilder unicode = CmapFormat4({{'A', 'A', 1 - 'A'}, {0xC4, 0xC4, 2 - 0xC4}});
  ExpectConsistent({{1, 0, CmapFormat0({{'A', 1}, {0x80, 2}})}, {3, 1, unicode}}, {});
  ExpectConsistent({{1, 0, CmapFormat0({{'A', 3}, {0x80, 1}, {'B', 1}, {0x7F, 1}})}, {3, 1, unicode}},
                   {Minor("Encoding 0 disagrees with the Unicode encodings on 2 characters: code 0x41 is glyph 3, but "
                          "U+0041 is glyph 1")});
  ExpectConsistent({{1, 0, CmapFormat6(0x80, {1})}, {3, 1, unicode}},
                   {Minor("Encoding 0 disagrees with the Unicode encodings on 1 characters: code 0x80 is glyph 1, but "
                          "U+00C4 is glyph 2")});
}

}  // namespace
