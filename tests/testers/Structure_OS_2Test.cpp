#include "Tests/VornFontTesterStructure_OS_2.h"
#include "support/CmapBuilder.h"
#include "support/MetadataBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

const auto [Information, Technical, Minor, Major, Fatal] = MessagesOf("OS/2: ");

using Changes = std::vector<std::pair<std::string, int64_t>>;

void Expect(const Bytes& table, const std::vector<Message>& expected, const FontBuilder& font = GoodFont()) {
  Expect(TestStructure_OS_2, FontBuilder(font).Table("OS/2", table), expected);
}
/// The same for a table with some fields changed.
void Expect(uint16_t version, const Changes& changes, const std::vector<Message>& expected,
            const FontBuilder& font = GoodFont()) {
  TableBuilder table = OS2Table(version);
  for (const auto& [field, value] : changes) table.Patch(field, static_cast<uint64_t>(value));
  SCOPED_TRACE(changes.empty() ? "unchanged" : changes[0].first);
  Expect(table.Data(), expected, font);
}

TEST(OS2Structure, TheTableWithTheUnderscoreComesFirst) {
  const Message width = Minor("The width class is 0; it should be from 1 to 9");
  FontBuilder font = GoodFont().Table("OS/2", OS2Table(4).Patch("usWidthClass", 0));
  Expect(TestStructure_OS_2, font, {{width.severity, width.text, "OS/2"}});
  Expect(TestStructure_OS_2, font.Table("OS_2", OS2Table(4)), {});
  const Findings none = test::Run(TestStructure_OS_2, GoodFont().Remove("OS/2"));
  ExpectMessages(none, {Minor("The font has no 'OS/2' table, which the Microsoft platform requires")});
  FontBuilder bitmaps = GoodFont().Remove("OS/2").Remove("glyf").Table("EBLC", {1}).Table("EBDT", {1});
  EXPECT_FALSE(test::Run(TestStructure_OS_2, bitmaps).applies);
}

TEST(OS2Structure, TheVersionDecidesTheLength) {
  for (uint16_t version = 0; version <= 5; ++version) Expect(version, {}, {});
  Expect(OS2Table(0).Truncate(68), {});
  Expect({0}, {Fatal("The table is 1 bytes long, too short for a version number")});
  Expect(OS2Table(4).Truncate(94), {Major("A table of version 4 takes 96 bytes, but this one has 94")});
  Expect(OS2Table(0).Truncate(67), {Major("A table of version 0 takes 78 bytes, but this one has 67")});
  Expect(OS2Table(1).U16(0), {Technical("A table of version 1 takes 86 bytes, but this one has 88")});
  Expect(OS2Table(5).Patch("version", 6).U16(0), {Minor("The table has the unknown version 6")});
}

TEST(OS2Structure, ClassesAndPermissionsAreJudged) {
  Expect(4, {{"usWeightClass", 1001}}, {Minor("The weight class is 1001; it should be from 1 to 1000")});
  Expect(4, {{"usWeightClass", 9}}, {Minor("The weight class is 9; the values 1 to 9 belong to an obsolete scale")});
  Expect(4, {{"fsType", 0x001E}},
         {Technical("The embedding word 0x001E has reserved bits set"),
          Minor("The embedding word 0x001E has more than one of the bits 1 to 3 set")});
  Expect(2, {{"fsType", 0x000C}}, {});
  Expect(4, {{"fsType", 0x0002}}, {Information("The embedding word 0x0002 forbids embedding")});
  Expect(4, {{"sFamilyClass", 0x0605}}, {Technical("The family class 6 is reserved")});
  Expect(4, {{"panose0", 6}, {"panose1", 99}}, {Technical("PANOSE digit 1 is 6; the highest value is 5")});
  Expect(4, {{"panose0", 2}, {"panose1", 16}, {"panose3", 9}},
         {Technical("PANOSE digit 2 is 16; the highest value is 15"),
          Technical("PANOSE calls the font monospaced; the 'post' table does not")});
  Expect(4, {{"achVendID", 0x41424300}}, {Technical("The vendor code 0x41424300 has unprintable characters")});
}

TEST(OS2Structure, StylesAgree) {
  Expect(4, {{"fsSelection", 0x0061}},
         {Major("The style word 0x0061 calls the font regular as well as bold or italic"),
          Minor("The style word 0x0061 and the header's style bits 0x0000 disagree about bold"),
          Minor("The style word 0x0061 and the header's style bits 0x0000 disagree about italic"),
          Minor("The style word calls the font bold, but the weight class is 400")});
  Expect(3, {{"fsSelection", 0x8280}},
         {Technical("The style word 0x8280 has reserved bits set"),
          Technical("The style word 0x8280 uses bits that version 3 does not have")});
  Expect(4, {{"fsSelection", 0x0080}}, {Technical("The style word 0x0080 gives no style")});
}

TEST(OS2Structure, MetricsAreSound) {
  Expect(4, {{"ySubscriptXSize", 0}, {"ySuperscriptYOffset", -2001}, {"yStrikeoutPosition", 2000}},
         {Minor("ySubscriptXSize is 0; it should be positive"),
          Minor("ySuperscriptYOffset is -2001, more than twice the em (1000)")});
  Expect(
      4,
      {{"sTypoAscender", 0}, {"sTypoDescender", 1}, {"sTypoLineGap", -1}, {"usWinAscent", 0}, {"usWinDescent", 0x8000}},
      {Minor("sTypoAscender is 0; it should be positive"), Minor("sTypoDescender is 1; it should not be positive"),
       Minor("sTypoLineGap is -1; it should not be negative"),
       Major("usWinAscent is 0; glyphs would be cut off or lines torn apart"),
       Major("usWinDescent is 32768; glyphs would be cut off or lines torn apart")});
  Expect(4, {{"sxHeight", 701}}, {Minor("The x-height (701) and the cap height (700) are not possible")});
  Expect(1, {{"xAvgCharWidth", 499}}, {});
  Expect(4, {{"xAvgCharWidth", 500}}, {});
  Expect(4, {{"xAvgCharWidth", 499}}, {Technical("The average width is 499, but the glyphs average 600")});
  Expect(4, {{"xAvgCharWidth", 601}},
         {Technical("The average width is 601; the widths of the glyphs lie between 600 and 600")});
  Expect(5, {{"usUpperOpticalPointSize", 0}},
         {Minor("The optical size range 0 to 0 (in twentieths of a point) is empty")});
}

TEST(OS2Structure, CharactersAreThoseOfTheFont) {
  Expect(4, {{"ulUnicodeRange1", 0x81}, {"ulUnicodeRange2", 1 << 25}, {"ulUnicodeRange4", 0x80000000}},
         {Technical("The character range word 4 (0x80000000) has reserved bits set"),
          Technical("Range bit 57 does not agree with the characters of the font"),
          Technical("Range bit 7 is set, but the font has no character from U+0370 to U+03FF")});
  Expect(4, {{"usFirstCharIndex", 'A'}, {"usLastCharIndex", 'B'}},
         {Technical("The first character is given as U+0041, but is U+0020"),
          Technical("The last character is given as U+0042, but is U+0041")});
  Expect(4, {{"ulCodePageRange1", 0}}, {Technical("No code page is declared")});
  Expect(4, {{"ulCodePageRange1", 0x80000200}},
         {Technical("The code page words 0x80000200 0x00000000 have reserved bits set"),
          Technical("Code page bit 31 (symbols) does not agree with the encodings of the font")});
  Expect(
      4, {{"usBreakChar", 'B'}, {"usDefaultChar", 'C'}},
      {Technical("The break character U+0042 is not mapped"), Technical("The default character U+0043 is not mapped")});
  FontBuilder letters = GoodFont().Table(
      "cmap",
      CmapTable(
          {{3, 10, CmapGroups(12, {{1, 1, 1}, {' ', ' ', 1}, {'H', 'H', 1}, {'x', 'x', 2}, {0x10000, 0x10000, 2}})}}));
  Expect(4, {{"usLastCharIndex", 'x'}, {"ulUnicodeRange2", 1 << 25}, {"sxHeight", 0}, {"sCapHeight", 0}},
         {Technical("sxHeight is 0, but the font has the character U+0078"),
          Technical("sCapHeight is 0, but the font has the character U+0048")},
         letters);
  FontBuilder symbols = GoodFont().Table("cmap", CmapTable({{3, 0, CmapFormat4({{0xF020, 0xF021, 0x0FE1}})}}));
  Expect(4, {{"ulCodePageRange1", 0x80000000}, {"usFirstCharIndex", 9}, {"usBreakChar", 9}, {"ulUnicodeRange1", 2}}, {},
         symbols);
}

}  // namespace
