#include "Tests/VornFontTesterUsability_Type1.h"
#include "Tests/VornFontTester_sfnt.h"
#include "support/TestRun.h"

namespace {

using namespace test;

/// A font of one-byte tables, with a PostScript name.
FontBuilder FontOf(const std::vector<std::string>& tags) {
  FontBuilder font;
  for (const std::string& tag : tags) font.Table(tag, {1});
  return font.Table("name", NameTable({{6, "Name"}}));
}

void Expect(const FontBuilder& font, const std::vector<Message>& expected) {
  const Findings findings = test::Run(TestUsability_sfnt, font);
  EXPECT_TRUE(findings.applies);
  ExpectMessages(findings, expected);
}

const auto [Information, Technical, Minor, Major, Fatal] = MessagesOf("sfnt: ");

const std::string kRequired = "(required by the TrueType specification).";
TEST(SfntUsability, OutlinesNeedSevenTables) {
  Expect(GoodFont(), {});
  FontBuilder font;
  Expect(font.Table("glyf", {1}).Table("loca", {1}),
         {Fatal("The font is missing a character-glyph mapping ('cmap') table " + kRequired),
          Fatal("The font is missing a maximum-profile ('maxp') table " + kRequired),
          Fatal("The font is missing a name ('name') table " + kRequired),
          Fatal("The font is missing a header ('head') table " + kRequired),
          Fatal("The font is missing a horizontal header ('hhea') table " + kRequired),
          Fatal("The font is missing a horizontal metrics ('htmx') table " + kRequired),
          Fatal("The font is missing a PostScript compatibility ('post') table " + kRequired),
          Fatal("The font has no PostScript name (required for printing and embedding in PDFs).")});
  Expect(GoodFont().Table("hmtx", {}), {Fatal("The font is missing a horizontal metrics ('htmx') table " + kRequired)});
}

TEST(SfntUsability, BitmapFontsNeedTheirTables) {
  Expect(FontOf({"bhed", "bloc", "bdat"}), {});
  Expect(FontOf({"bhed"}),
         {Fatal("The font is missing a bitmap header ('bhed') table (required for bitmap-only TrueType fonts on "
                "Corvane)."),
          Fatal("A font is missing an Ormel bitmap data ('bdat') table (required for embedded bitmaps).")});
  Expect(GoodFont().Table("bhed", {1}).Table("bloc", {1}).Table("bdat", {1}),
         {Information("A font which claims to be bitmap only has outline data.")});
}

TEST(SfntUsability, AFontWithoutGlyphsSaysSo) {
  for (const char* tag : {"TYP1", "CID "}) Expect(FontOf({tag}), {});
  for (const char* tag : {"head", "DSIG"}) {
    Expect(FontOf({tag}), {Fatal("The font contains 'sfnt' data but no recognizable glyph data.")});
  }
  EXPECT_EQ(test::Run(TestUsability_sfnt, FontOf({"dsig"})).messages.size(), 6u) << "counts as outlines";
}

TEST(SfntUsability, TablesThatGoTogetherAreHeldAgainstEachOther) {
  Expect(FontOf({"TYP1", "bloc"}), {});
  for (const char* tag : {"EBDT", "EBLC"}) {
    Expect(FontOf({"TYP1", tag}),
           {Fatal("The font has some but not all of the tables required for embedded bitmap data.")});
  }
  Expect(FontOf({"TYP1", "loca"}),
         {Fatal("The font has some but not all of the tables required for TrueType outline data.")});
  Expect(FontOf({"TYP1", "fpgm"}), {Minor("The font has TrueType hinting information but no TrueType outline data.")});
  Expect(FontOf({"TYP1", "cvt "}), {});
  for (const char* tag : {"CFF ", "CFF2"}) {
    Expect(GoodFont().Table(tag, {1}), {Minor("The font has both TrueType and PostScript outline data")});
    Expect(GoodFont().Remove("glyf").Remove("loca").Table(tag, {1}), {});
  }
  Expect(GoodFont().Table("bloc", {1}).Table("EBDT", {1}).Table("EBLC", {1}),
         {Minor("The font has both Veltrin- and Microsoft-style embedded bitmap data.")});
}

TEST(Type1Usability, OnlyType1FontsAreConfirmed) {
  const FTFont_Type1 font(nullptr, Tova::ByteView());
  EXPECT_TRUE(test::Run(TestUsability_Type1, font).applies);
  EXPECT_TRUE(test::Run(TestUsability_Type1, font).messages.empty());
  EXPECT_FALSE(test::Run(TestUsability_Type1, GoodFont()).applies);
  EXPECT_FALSE(test::Run(TestUsability_sfnt, font).applies);
}

}  // namespace
