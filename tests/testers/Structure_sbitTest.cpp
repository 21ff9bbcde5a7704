#include "Tests/VornFontTesterStructure_sbit.h"
#include "support/BitmapBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

const auto [Information, Technical, Minor, Major, Fatal] = MessagesOf("sbit: ");

/// A font of three glyphs with these bitmaps.
FontBuilder Font(const TableBuilder& location, const TableBuilder& data) {
  return GoodFont().Table("EBLC", location).Table("EBDT", data);
}
void Expect(const TableBuilder& location, const TableBuilder& data, const std::vector<Message>& expected) {
  Expect(TestStructure_sbit, Font(location, data), expected);
}
/// The same for a font whose only strike has these index subtables.
void ExpectImages(const std::vector<BitmapSubtable>& subtables, const TableBuilder& data,
                  const std::vector<Message>& expected) {
  Expect(BitmapLocationTable({{8, subtables}}), data, expected);
}

/// Images of 3 by 2 pixels, one bit each: small metrics and a byte for each row, or big ones and rows that run on.
const Bytes kByteAligned = {2, 3, 0, 2, 4, 0xE0, 0xE0};
const Bytes kBitAligned = {2, 3, 0, 2, 4, 0, 0, 4, 0xFC};
const std::vector<BitmapSubtable> kGood = {{0, 0, BitmapIndex1(1, {0, 7})}};
const TableBuilder kGoodData = BitmapDataTable({kByteAligned});

TEST(BitmapLocation, FindsImagesInTheFirstSubtableOfTheGlyph) {
  const TableBuilder location = BitmapLocationTable({{8,
                                                      {{0, 2, BitmapIndex3(1, {0, 9, 9, 8})},
                                                       {3, 9, BitmapIndex4(1, {{5, 3}, {3, 4}, {5, 9}, {0, 30}})},
                                                       {5, 20, BitmapIndex5(6, 10, 2, 3, {12, 11})},
                                                       {21, 65535, BitmapIndex2(5, 7, 2, 3)}}}});
  const Bytes bytes = location;
  const FTBitmapLocation bitmaps(Tova::ByteView(bytes.data(), bytes.size()), {});
  const FTBitmapStrike strike = bitmaps.GetStrike(0);
  const auto find = [&](uint32_t glyph) {
    const auto image = bitmaps.FindImage(strike, glyph);
    return image ? std::to_string(image->format) + " at " + std::to_string(image->start) + ", " +
                       std::to_string(image->length)
                 : "(none)";
  };
  EXPECT_EQ(find(0), "1 at 4, 9");
  EXPECT_EQ(find(1), "(none)") << "no image";
  EXPECT_EQ(find(2), "(none)") << "ends before it starts";
  EXPECT_EQ(find(5), "1 at 7, 1") << "the first entry, in the first subtable";
  EXPECT_EQ(find(4), "(none)") << "not listed";
  EXPECT_EQ(find(11), "6 at 14, 10");
  EXPECT_EQ(find(65535), "5 at " + std::to_string(4 + 7 * (65535 - 21)) + ", 7");
  EXPECT_EQ(ExpectThrow("An attempt was made to access an array element outside of the array bounds",
                        [&] { bitmaps.GetStrike(1); }),
            "iIndex < StrikeCount()");
}

TEST(SbitStructure, TablesGoTogether) {
  const TableBuilder location = BitmapLocationTable({{8, kGood}});
  Expect(location, kGoodData, {});
  EXPECT_FALSE(test::Run(TestStructure_sbit, GoodFont()).applies);
  Expect(TestStructure_sbit, GoodFont().Table("EBLC", location).Table("bdat", kGoodData),
         {Fatal("The font has a 'bdat' table, but no 'bloc' table"),
          Fatal("The font has a 'EBLC' table, but no 'EBDT' table")});
  Expect(TestStructure_sbit, Font(location, kGoodData).Table("bloc", location).Table("bdat", kGoodData),
         {Minor("The font has two sets of embedded bitmaps")});
  FontBuilder only = GoodFont().Remove("glyf").Table("bloc", location).Table("bdat", kGoodData);
  Expect(TestStructure_sbit, only, {Major("A bitmap-only font with a 'bloc' table needs a 'bhed' table")});
  Expect(TestStructure_sbit, only.Remove("head"), {Fatal("The font has no header, neither 'bhed' nor 'head'")});
  Expect(TestStructure_sbit, GoodFont().Table("bhed", HeadTable()),
         {Minor("The font has outlines, but the header of a bitmap-only font"),
          Technical("The font has two headers, 'bhed' and 'head'")});
}

TEST(SbitStructure, HeadersAndStrikesAreJudged) {
  const TableBuilder location = BitmapLocationTable({{8, kGood}});
  Expect(TableBuilder(location).Truncate(7), kGoodData,
         {Fatal("The 'EBLC' table is too short for its header (7 bytes)")});
  Expect(location.With("version", 1), kGoodData.With("version", 2),
         {Major("The 'EBLC' table has the version 0x00000001; it should be 0x00020000"),
          Major("The 'EBDT' table has the version 0x00000002; it should be 0x00020000")});
  Expect(BitmapLocationTable({}), kGoodData, {Minor("The 'EBLC' table has no strikes")});
  Expect(location.With("numSizes", 5), kGoodData, {Fatal("The 'EBLC' table announces 5 strikes, but has room for 1")});
  Expect(
      TableBuilder(location)
          .Patch("ppemX0", 0)
          .Patch("bitDepth0", 3)
          .Patch("flags0", 0x13)
          .Patch("colorRef0", 1)
          .Patch("hori0Ascender", 0xFD)
          .Patch("endGlyphIndex0", 3)
          .Patch("indexTablesSize0", 1000),
      kGoodData,
      {Major("Strike 0 is for 0 by 8 pixels per em"), Major("Strike 0 has the bit depth 3; it should be 1, 2, 4 or 8"),
       Minor("Strike 0 has the direction flags 0x13; one direction must be set"),
       Technical("Strike 0 has the undefined flags 0x13"), Technical("Strike 0 has data in reserved fields"),
       Minor("Strike 0 has an ascender (-3) below its descender (-2)"),
       Major("Strike 0 ends with glyph 3, but the font has 3 glyphs"),
       Major("The index tables of strike 0 are said to end at byte 1056 of 80")});
  Expect(BitmapLocationTable({{9, kGood}, {8, kGood}, {9, kGood}, {10, {}}})
             .Patch("startGlyphIndex0", 3)
             .Patch("indexSubTableArrayOffset1", 5000),
         kGoodData,
         {Major("Strike 0 runs from glyph 3 to glyph 2"), Technical("Strike 1 is out of order; sizes ascend"),
          Fatal("The index of strike 1 ends at byte 5008, beyond the end of the table (272 bytes)"),
          Minor("Strikes 0 and 2 are for the same size and depth"), Minor("Strike 3 has no glyphs")});
}

TEST(SbitStructure, IndexSubtablesAreJudged) {
  const TableBuilder one = BitmapIndex1(1, {0, 7});
  ExpectImages({{1, 1, one}, {0, 1, BitmapIndex1(1, {0, 7, 7})}}, kGoodData,
               {Major("Index subtables 1 and 0 of strike 0 share glyphs"),
                Technical("The index subtables of strike 0 are out of order from subtable 1 on")});
  ExpectImages(
      {{1, 0, one}, {2, 3, BitmapIndex1(1, {0, 7, 7})}}, kGoodData,
      {Major("Strike 0 has 1 index subtables whose first glyph is above the last; subtable 0 covers glyphs 1 to 0"),
       Major("Strike 0 has 1 index subtables beyond the glyphs of the font; subtable 1 ends with glyph 3 of 3"),
       Minor("Strike 0 has 1 index subtables outside the strike's glyphs 0 to 2; subtable 1 covers glyphs 2 to 3")});
  ExpectImages(
      {{0, 0, one.With("indexFormat", 6)}, {1, 1, one.With("imageFormat", 4)}, {2, 2, one.With("imageFormat", 5)}},
      kGoodData,
      {Major("Strike 0 has 1 index subtables of an unknown format; subtable 0 has format 6"),
       Major("Strike 0 has 1 index subtables with an unknown image format; subtable 1 has image format 4"),
       Major("Strike 0 has 1 index subtables whose images have no metrics, the first of them subtable 2")});
  ExpectImages(
      {{0, 2, one}}, kGoodData,
      {Fatal("Strike 0 has 1 index subtables that end beyond the table (80 bytes); subtable 0 ends at byte 88")});
  ExpectImages(
      {{0, 1, BitmapIndex4(1, {{1, 0}, {1, 7}, {2, 7}, {0, 7}})}}, kGoodData,
      {Major("Strike 0 has 1 glyph lists that are out of order; that of subtable 0 is at glyph 1"),
       Minor("Strike 0 has 1 glyph lists that leave their range; that of subtable 0 has glyph 2, outside 0 to 1")});
}

TEST(SbitStructure, ImagesLieInsideTheData) {
  ExpectImages({{0, 2, BitmapIndex3(1, {0, 7, 7, 6})}}, kGoodData,
               {Major("Strike 0 has 1 images that end before they start, the first of them glyph 2")});
  ExpectImages({{0, 0, BitmapIndex1(1, {0, 8})}}, kGoodData,
               {Fatal("Strike 0 has 1 images that end beyond the bitmap data (11 bytes); glyph 0 ends at byte 12")});
  ExpectImages({{0, 2, BitmapIndex2(5, 5, 0, 0)}}, kGoodData,
               {Fatal("Strike 0 has 2 images that end beyond the bitmap data (11 bytes); glyph 1 ends at byte 14"),
                Technical("Strike 0 has 3 images with unused bytes; glyph 0 needs 0 of its 5")});
  Expect(BitmapLocationTable({{8, {{0, 65535, BitmapIndex2(5, 0x10000000, 1, 1)}}, 0, 65535}}), kGoodData,
         {Major("Strike 0 ends with glyph 65535, but the font has 3 glyphs"),
          Major("Strike 0 has 1 index subtables beyond the glyphs of the font; subtable 0 ends with glyph 65535 of 3"),
          Fatal("Strike 0 has 65536 images that end beyond the bitmap data (11 bytes); glyph 0 ends at byte 268435460"),
          Technical("Strike 0 has 65536 images with unused bytes; glyph 0 needs 1 of its 268435456")});
}

TEST(SbitStructure, ImagesHaveTheBytesTheyNeed) {
  const TableBuilder bits = BitmapDataTable({kBitAligned, {0}});
  ExpectImages({{0, 0, BitmapIndex1(7, {0, 9})}}, bits, {});
  ExpectImages({{0, 0, BitmapIndex1(7, {0, 10})}}, bits,
               {Technical("Strike 0 has 1 images that look byte-aligned, but their format says bit-aligned, the first "
                          "of them glyph 0")});
  ExpectImages({{0, 0, BitmapIndex1(7, {0, 8})}}, bits,
               {Major("Strike 0 has 1 images that are cut off; glyph 0 (3 by 2 pixels) needs 9 bytes, but has 8")});
  ExpectImages({{0, 0, BitmapIndex1(7, {0, 7})}}, bits,
               {Major("Strike 0 has 1 images that are cut off; glyph 0 (0 by 0 pixels) needs 8 bytes, but has 7")});
  ExpectImages({{0, 0, BitmapIndex1(6, {0, 10})}}, bits, {});
  ExpectImages({{0, 1, BitmapIndex5(5, 1, 2, 3, {0, 1})}}, bits, {});
  ExpectImages({{0, 1, BitmapIndex5(5, 1, 3, 3, {0, 1})}}, bits,
               {Major("Strike 0 has 2 images that are cut off; glyph 0 (3 by 3 pixels) needs 2 bytes, but has 1")});
}

TEST(SbitStructure, ComponentsHaveImages) {
  const auto composite = [](uint8_t component) { return Bytes{2, 3, 0, 2, 4, 0, 0, 1, 0, component, 0, 0}; };
  const auto font = [&](const std::vector<uint8_t>& components) {
    std::vector<Bytes> images;
    for (const uint8_t component : components) images.push_back(composite(component));
    return BitmapDataTable(images);
  };
  const std::vector<BitmapSubtable> three = {{0, 2, BitmapIndex1(8, {0, 12, 24, 36})}};
  ExpectImages(three, font({1, 2, 0}),
               {Major("Strike 0 has 3 images whose components lead in a circle, the first of them glyph 0")});
  ExpectImages(three, font({3, 0, 2}),
               {Major("Strike 0 has 1 components that are not glyphs of the font; glyph 0 uses glyph 3"),
                Major("Strike 0 has 1 images whose components lead in a circle, the first of them glyph 2")});
  ExpectImages({{0, 1, BitmapIndex1(8, {0, 12, 12})}}, font({1}),
               {Major("Strike 0 has 1 components without an image; glyph 0 uses glyph 1")});
  ExpectImages({{0, 0, BitmapIndex1(8, {0, 12})}, {1, 1, BitmapIndex1(3, {0, 12})}}, font({1}),
               {Major("Strike 0 has 1 index subtables with an unknown image format; subtable 1 has image format 3")});
}

TEST(SbitStructure, OverlappingIndexesEndTheTest) {
  const std::vector<BitmapSubtable> subtables(100, {0, 2, BitmapIndex3(1, {0, 0, 0, 0})});
  const Bytes one = BitmapLocationTable({{8, subtables}});
  TableBuilder many = TableBuilder().U32(0x00020000).U32(2000);
  for (int i = 0; i < 2000; ++i) many.U32(8 + 48 * 2000).Append(Bytes(one.begin() + 12, one.begin() + 56));
  many.Append(Bytes(one.begin() + 56, one.end()));
  const Findings findings = test::Run(TestStructure_sbit, Font(many, kGoodData));
  ASSERT_FALSE(findings.messages.empty());
  EXPECT_TRUE(findings.messages.back().text.starts_with("sbit: The indexes of the 'EBLC' table overlap so much"))
      << findings.messages.back();
}

TEST(SbitStructure, ScaledSizesAreJudged) {
  const auto run = [](const TableBuilder& scaled) {
    return test::Run(TestStructure_sbit, Font(BitmapLocationTable({{8, kGood}}), kGoodData).Table("EBSC", scaled));
  };
  TableBuilder scaled;
  scaled.U32(0x00020000, "version").U32(1, "numSizes").Zeros(24);
  scaled.U8(9, "ppemX").U8(9, "ppemY").U8(8, "substitutePpemX").U8(8);
  ExpectMessages(run(scaled), {});
  ExpectMessages(run(scaled.With("ppemX", 0)), {Minor("Scaled size 0 has a zero size")});
  ExpectMessages(run(scaled.With("ppemX", 8).Patch("ppemY", 8).Patch("substitutePpemX", 7)),
                 {Major("Scaled size 0 uses a strike of 7 by 8 pixels, which the font lacks"),
                  Technical("Scaled size 0 is for 8 by 8 pixels, which the font has as a strike")});
  ExpectMessages(run(scaled.With("version", 1).Patch("numSizes", 2)),
                 {Major("The 'EBSC' table has the version 0x00000001; it should be 0x00020000"),
                  Fatal("The 'EBSC' table has 36 bytes; its 2 sizes take 64")});
  ExpectMessages(run(scaled.With("numSizes", 0)), {Technical("The 'EBSC' table has 36 bytes; its 0 sizes take 8")});
}

}  // namespace
