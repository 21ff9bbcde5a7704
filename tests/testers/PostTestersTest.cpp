#include "Tests/VornFontTesterStructure_post.h"
#include "Tests/VornFontTesterUsability_post.h"
#include "support/CmapBuilder.h"
#include "support/MetadataBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

const auto [Information, Technical, Minor, Major, Fatal] = MessagesOf("post: ");

void Expect(const Bytes& table, const std::vector<Message>& expected, uint16_t glyphs = 3) {
  Expect(TestStructure_post, GoodFont().Table("post", table).Table("maxp", MaxpTable(glyphs)), expected);
}

TEST(PostStructure, SizeAndFormatAreJudged) {
  Expect(PostTable(), {});
  Expect(PostTable().Truncate(31), {Fatal("The table is 31 bytes long; it needs at least 32")});
  Expect(PostTable().Patch("version", 0x00020001), {Major("The table has the unknown format 0x00020001")});
  Expect(PostTable().U8(0), {Technical("The table is 33 bytes long; its format takes 32")});
  Expect(PostTable().Patch("version", 0x00010000), {Minor("Format 1 names exactly 258 glyphs, but the font has 3")});
  Expect(PostTable().Patch("version", 0x00010000), {}, 258);
  Expect(PostTable().Patch("version", 0x00020000).U8(0), {Fatal("The table ends before its glyph count")});
  Expect(PostTable().Patch("version", 0x00040000).U16(1),
         {Major("The names of 3 glyphs need 38 bytes, but the table has 34")});
  Expect(StoredNamesTable({0, 1, 2}, {}).Patch("numGlyphs", 4),
         {Major("The names of 4 glyphs need 42 bytes, but the table has 40")});
}

TEST(PostStructure, EveryGlyphHasAName) {
  Expect(StoredNamesTable({0, 258, 259}, {"a", "b"}), {});
  Expect(StoredNamesTable({0, 1}, {}), {Major("The table names 2 glyphs, but the font has 3")});
  Expect(StoredNamesTable({0, 1, 2, 3}, {}), {Minor("The table names 4 glyphs, but the font has 3")});
  Expect(StoredNamesTable({0, 300, 258}, {"a", "b", "c"}),
         {Major("1 glyphs have no name, since the table holds only 3 names; glyph 1 has the name index 300"),
          Technical("2 stored names are used by no glyph, the first of them name 1")});
  Expect(StoredNamesTable({0, 259, 2}, {"a", "b"}), {Technical("No glyph uses the first stored name")});
  Expect(NameOffsetsTable({0, -2, 0}), {Technical("Format 2.5 is obsolete; formats 2 and 3 replace it"),
                                        Major("1 glyphs have no standard name; glyph 1 has the name index -1")});
  Expect(NameOffsetsTable({0, 0, 0}), {Technical("Format 2.5 is obsolete; formats 2 and 3 replace it"),
                                       Technical("All name offsets are zero; format 1 would do")});
}

TEST(PostStructure, NamesFillTheTable) {
  const TableBuilder good = StoredNamesTable({0, 258, 259}, {"a", "b"});
  Expect(TableBuilder(good).Zeros(3), {});
  Expect(TableBuilder(good).Zeros(4), {Technical("4 bytes follow the last name in use")});
  Expect(TableBuilder(good).U8(1).Text("c"), {Technical("The table holds 3 names, but the glyphs use only 2")});
  Expect(TableBuilder(good).U8(9).Text("c"), {Technical("The last name needs 10 bytes, but only 2 are left")});
  Expect(good.With("length1", 5),
         {Major("1 glyphs have no name, since the table holds only 1 names; glyph 2 has the name index 259"),
          Minor("The last name needs 6 bytes, but only 2 are left")});
}

TEST(PostStructure, MemoryAndUnderlineAreJudged) {
  Expect(PostTable().Patch("minMemType42", 5).Patch("minMemType1", 0xFFFFFFFF).Patch("maxMemType1", 7),
         {Technical("The minimum memory use (4294967295) exceeds the maximum (7)")});
  Expect(PostTable().Patch("underlineThickness", 0).Patch("underlinePosition", 0x8000),
         {Minor("The underline thickness is 0; it should be positive"),
          Minor("The underline position is -32768, farther from the baseline than the em (1000)")});
}

/// What the usability test finds in a font whose glyphs have these names (a standard one by its index), with 'A', 'B'
/// and 'C' mapped to glyphs 1, 2 and 3.
void ExpectUse(const TableBuilder& post, const std::vector<Message>& expected, uint16_t glyphs = 6) {
  const Bytes cmap = CmapTable({{3, 1, CmapFormat4({{'A', 'C', 1 - 'A'}})}});
  const FontBuilder font = GoodFont().Table("post", post).Table("cmap", cmap).Table("maxp", MaxpTable(glyphs));
  Expect(TestUsability_post, font, expected);
}

TEST(PostUsability, ReservedNamesAreForTheirGlyphs) {
  ExpectUse(StoredNamesTable({0, 36, 37, 38, 1, 0}, {}),
            {Technical("1 more glyphs are named '.notdef', the first of them glyph 5"),
             Technical("Glyph 4 is named '.null'; that name is for glyph 1")});
  ExpectUse(StoredNamesTable({258}, {"a\x80"}),
            {Minor("Glyph 0 is named 'a\uFFFD'; it should be '.notdef'"),
             Technical("1 glyph names contain characters other than letters, digits, periods and underscores, the "
                       "first of them 'a\uFFFD' (glyph 0)")});
  const Findings none = test::Run(TestUsability_post, GoodFont());
  ExpectMessages(none, {Information("The font gives its glyphs no names")});
  EXPECT_FALSE(test::Run(TestUsability_post, GoodFont().Truncate("post", 31)).applies);
}

TEST(PostUsability, NamesAreSpelledAsProgramsExpect) {
  ExpectUse(StoredNamesTable({0, 258, 259, 260, 261, 262}, {"", "a b", "c-d", std::string(64, 'x'), ""}),
            {Minor("2 glyphs have an empty name, the first of them glyph 1"),
             Minor("1 glyph names contain a space, the first of them 'a b' (glyph 2)"),
             Technical("1 glyph names contain characters other than letters, digits, periods and underscores, the "
                       "first of them 'c-d' (glyph 3)"),
             Technical("1 glyph names are longer than 63 characters, the first of them '" + std::string(63, 'x') +
                       "...' (glyph 4)")});
  ExpectUse(StoredNamesTable({0, 36, 40, 40, 258, 259}, {"a", "a"}),
            {Minor("2 glyphs have the name of an earlier glyph; glyphs 2 and 3 are both named 'E'"),
             Major("2 characters are mapped to glyphs named after other characters: U+0042 to glyph 2, named 'E'")});
}

TEST(PostUsability, NamesAreTrueToTheMapping) {
  ExpectUse(StoredNamesTable({0, 37, 36, 38}, {}),
            {Major("2 characters are mapped to glyphs named after other characters: U+0041 to glyph 1, named 'B'")});
  ExpectUse(StoredNamesTable({0, 68, 37, 38}, {}), {});  // 'A' may be named "a"
  ExpectUse(StoredNamesTable({0, 36, 258, 259, 260, 261}, {"uni0041", "u00043", "uni004", "u41"}),
            {Technical("1 glyphs are named after characters that are mapped to other glyphs: glyph 2 is named "
                       "'uni0041', but U+0041 is glyph 1")});
}

TEST(PostUsability, AnglePitchAndUnderlineFitTheFont) {
  const auto expect = [](const TableBuilder& post, uint16_t style, const std::vector<Message>& expected) {
    FontBuilder font = GoodFont().Table("post", post.With("version", 0x00040000));
    Expect(TestUsability_post, font.Table("head", HeadTable().Patch("style", style)), expected);
  };
  const Message upright = Minor("The italic angle is 46.000000 degrees, but the header does not call the font italic");
  expect(PostTable().Patch("italicAngle", 46 << 16), 0,
         {Minor("The italic angle is 46.000000 degrees, which is unlikely"), upright});
  expect(PostTable().Patch("italicAngle", 0x00008000), 2,
         {Minor("The italic angle is 0.500000 degrees, which leans to the left")});
  expect(PostTable().Patch("italicAngle", 0xFFF40000), 2, {});
  expect(PostTable(), 2, {Minor("The header calls the font italic, but the italic angle is zero")});
  expect(PostTable().Patch("underlinePosition", 1), 0, {Technical("The underline position is 1, above the baseline")});
}

TEST(PostUsability, FixedPitchIsWhatTheWidthsSay) {
  const auto expect = [](uint32_t fixed, uint16_t width, const std::vector<Message>& expected) {
    FontBuilder font = GoodFont().Table("post", PostTable().Patch("version", 0x00040000).Patch("isFixedPitch", fixed));
    font.Table("cmap", CmapTable({{3, 1, CmapFormat4({{'M', 'M', 1 - 'M'}, {'i', 'i', 2 - 'i'}})}}));
    Expect(TestUsability_post, font.Table("hmtx", MetricsTable({{0, 0}, {600, 0}, {width, 0}})), expected);
  };
  expect(1, 600, {});
  expect(0, 600, {Minor("Every glyph is 600 units wide, but the font is not marked as fixed-pitch")});
  expect(0, 300, {});
  expect(0x10000, 300, {Minor("The font is marked as fixed-pitch, but U+004D is 600 units wide and U+0069 is 300")});
}

}  // namespace
