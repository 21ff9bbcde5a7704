#include "TableAccess/AncillaryClasses/FTLookupTable.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "support/TestRun.h"

namespace {

using namespace test;

std::string Text(TovaStringRef string) { return string ? std::string(Tova::Text(string)) : "(none)"; }

TEST(SfntFont, NamesFallBackFromFullNameToPostScriptNameToUniqueName) {
  const auto name = [](std::vector<std::pair<uint16_t, std::string>> names) {
    return Text(MemoryFont(GoodFont().Table("name", NameTable(names)).Build())->GetName());
  };
  EXPECT_EQ(name({{3, "Unique"}, {6, "PS"}, {4, "Full"}}), "Full");
  EXPECT_EQ(name({{3, "Unique"}, {6, "PS"}}), "PS");
  EXPECT_EQ(name({{3, "Unique"}}), "Unique");
  EXPECT_EQ(name({{1, "Family"}}), "(none)");
}

TEST(SfntFont, IdentifierJoinsChecksumAdjustmentAndUniqueName) {
  EXPECT_EQ(Text(MemoryFont(GoodFont().Build())->GetIdentifier()), "1234ABCD|Good 1.0");
  // A bitmap-only font has its adjustment in 'bhed'.
  const Bytes bhed = HeadTable().Patch("checkSumAdjustment", 0xBEEF);
  EXPECT_EQ(Text(MemoryFont(GoodFont().Table("head", {}).Table("bhed", bhed).Build())->GetIdentifier()),
            "0000BEEF|Good 1.0");
}

TEST(SfntFont, TheFirstEntryOfATagHidesLaterOnes) {
  FontBuilder builder = GoodFont().Truncate("post", 0);
  builder.Entry("post", 12, 4).Entry("head", 12, 4);
  const MemoryFont font(builder.Build());
  EXPECT_FALSE(font->HasTaggedTable(FTTag("post"))) << "the first 'post' is empty";
  EXPECT_EQ(font->GetFontUnitsPerEm(), 1000);
}

TEST(SfntFont, AWrappingEntryKeepsTheBytesThatExist) {
  FontBuilder builder = GoodFont();
  const uint32_t size = static_cast<uint32_t>(builder.Build().size()) + 16;
  const MemoryFont font(builder.Entry("wrap", size - 4, 0xFFFFFFF0).Build());
  const FTFontTable* table = font->GetTaggedTable(FTTag("wrap"));
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->GetSize(), 4u);
  EXPECT_EQ(table->Bytes().U32(2), 0u) << "half outside";
}

TEST(SfntFont, HintingIsKnownByItsTablesAndByTheMaximumProfile) {
  const Bytes maxp = MaxpTable(3).Patch("maxSizeOfInstructions", 1);
  const auto hinted = [](const char* tag, const Bytes& bytes) {
    return MemoryFont(GoodFont().Table(tag, bytes).Build())->IsHintedFont();
  };
  EXPECT_TRUE(hinted("cvt_", {0, 1}) && hinted("prep", {0x4B}) && hinted("maxp", maxp));
  EXPECT_FALSE(hinted("cvt ", {0, 1}) || hinted("prep", {}));
}

TEST(SfntFont, ABitmapFontWithOutlinesIsNotBitmapOnly) {
  const auto bitmapOnly = [](const FontBuilder& font) { return MemoryFont(font.Build())->IsSbitOnly(); };
  FontBuilder bitmaps;
  bitmaps.Table("bloc", {1}).Table("bdat", {1});
  EXPECT_TRUE(bitmapOnly(bitmaps));
  EXPECT_FALSE(bitmapOnly(FontBuilder(bitmaps).Table("CFF ", {1})));
  EXPECT_TRUE(bitmapOnly(FontBuilder(bitmaps).Table("glyf", {1}))) << "'loca' is missing";
  EXPECT_FALSE(bitmapOnly(FontBuilder(bitmaps).Remove("bdat").Table("EBDT", {1}))) << "tables of two kinds";
}

TEST(LookupTable, FindsValuesInEveryFormat) {
  const auto words = [](const std::vector<int>& values) {
    TableBuilder table;
    for (const int value : values) table.S16(value);
    return table;
  };
  const struct {
    const char* what;
    TableBuilder table;
    std::vector<std::pair<uint32_t, int>> values;  // of glyphs; -1 for none
  } cases[] = {
      {"simple array", words({0, 70, 71}), {{1, 71}, {2, -1}}},
      {"segments 10-19 and 30-39, whose end mark is no glyph",
       words({2, 6, 2, 12, 1, 0, 19, 10, 5, 39, 30, 6, 0xFFFF, 0xFFFF, 9}),
       {{9, -1}, {10, 5}, {25, -1}, {39, 6}, {0xFFFF, -1}}},
      {"array at 24 for 10-11", words({4, 6, 1, 6, 0, 0, 11, 10, 24, 0xFFFF, 0xFFFF, 0, 500, 501}), {{11, 501}}},
      {"single glyphs", words({6, 4, 2, 8, 1, 0, 3, 30, 7, 70}), {{3, 30}, {5, -1}, {7, 70}, {8, -1}}},
      {"trimmed array", words({8, 5, 2, 50, 51}), {{4, -1}, {6, 51}, {7, -1}}},
      {"unknown format", words({3}), {{1, -1}}},
      {"entries of no size", words({6, 0, 9, 0, 0, 0, 3, 30}), {{5, -1}}}};
  for (const auto& [what, table, values] : cases) {
    for (const auto& [glyph, value] : values) {
      const Tova::ByteView found = FTLookUp(Tova::ByteView(table.Data().data(), table.Size()), glyph);
      EXPECT_EQ(found.Empty() ? -1 : int{found.U16(0)}, value) << what << ", glyph " << glyph;
    }
  }
}

}  // namespace
