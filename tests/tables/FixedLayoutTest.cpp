#include "TableAccess/TableClasses/FTFontTable_OS_2.h"
#include "TableAccess/TableClasses/FTFontTable_fdsc.h"
#include "TableAccess/TableClasses/FTFontTable_head.h"
#include "TableAccess/TableClasses/FTFontTable_hhea.h"
#include "TableAccess/TableClasses/FTFontTable_maxp.h"
#include "TableAccess/TableClasses/TagOnlyTables.h"
#include "support/TestRun.h"

namespace {

using namespace test;

TEST(TableFactory, TagsAreComparedExactly) {
  FontBuilder builder;
  for (const char* tag : {"OS/2", "OS_2", "cvt ", "cvt_", "DSIG", "dsig", "bhed"}) builder.Table(tag, {0, 3});
  const MemoryFont font(builder.Build());
  for (const uint32_t tag : {FTTag("OS/2"), FTTag("cvt "), FTTag("DSIG")}) {
    const FTFontTable& table = *font->GetTaggedTable(tag);
    EXPECT_EQ(typeid(table), typeid(FTFontTable));
  }
  EXPECT_EQ(font->FindTable<FTFontTable_OS_2>()->GetVersion(), 3);
  EXPECT_TRUE(font->FindTable<FTFontTable_cvt_>() && font->FindTable<FTFontTable_dsig>());
  EXPECT_EQ(font->FindTable<FTFontTable_bhed>()->GetTag(), FTTag("bhed"));
}

TEST(FixedLayout, FieldsAreReadFromTheirPlaces) {
  const MemoryFont font(GoodFont().Table("vhea", HheaTable(7)).Build());
  const auto* head = font->FindTable<FTFontTable_head>();
  EXPECT_EQ(head->Modified(), 3800000000);
  EXPECT_EQ(head->YMax(), 700);
  EXPECT_EQ(head->GlyphDataFormat(), 0);
  EXPECT_EQ(font->FindTable<FTFontTable_hhea>()->NumberLongMetrics(), 3);
  EXPECT_EQ(font->CountVerticalLongMetrics(), 7);
}

TEST(FixedLayout, AShortTableReadsAsZerosWhereItEnds) {
  for (const size_t size : {0, 18, 19, 20, 54}) {
    const MemoryFont font(GoodFont().Truncate("head", size).Build());
    EXPECT_EQ(font->FindTable<FTFontTable_head>()->UnitsPerEm(), size >= 20 ? 1000 : 0) << size;
  }
}

TEST(FixedLayout, MaximaAreThoseOfTheLongForm) {
  for (const bool isLong : {true, false}) {
    const TableBuilder maxp = MaxpTable(300).Patch("maxPoints", 17).Patch("version", isLong ? 0x00010000 : 0x00005000);
    const MemoryFont font(FontBuilder().Table("maxp", maxp).Build());
    const auto* table = font->FindTable<FTFontTable_maxp>();
    EXPECT_EQ(table->NumGlyphs(), 300);
    EXPECT_EQ(table->MaxPoints(), isLong ? 17 : 0);
  }
}

TEST(PostScriptTables, GlyphsOfCidFontsAreCountedWithoutAMaximumProfile) {
  const auto count = [](const std::string& text) {
    return MemoryFont(FontBuilder().Table("CID ", Bytes(text.begin(), text.end())).Build())->CountFontGlyphs();
  };
  EXPECT_EQ(count("x/CID /CIDCount 65535 def /CIDCount 1"), 65535);
  EXPECT_EQ(count("/CIDCount  \n12"), 12);
  for (const char* none : {"/CIDCount", "/CIDCount x"}) EXPECT_EQ(count(none), 0) << none;
}

TEST(Fdsc, TheAngleIsTheValueOfTheFirstSlantDescriptor) {
  const auto angle = [](uint32_t count, size_t size) {
    TableBuilder fdsc;
    fdsc.U32(0x00010000).U32(count).Text("wght").U32(7).Text("slnt").S32(-12 << 16).Text("slnt").S32(3);
    const MemoryFont font(FontBuilder().Table("fdsc", fdsc.Truncate(size)).Build());
    return font->FindTable<FTFontTable_fdsc>()->GetAngle();
  };
  EXPECT_EQ(angle(3, 32), -12 << 16);
  EXPECT_EQ(angle(0xFFFFFFFF, 32), -12 << 16);
  EXPECT_EQ(angle(1, 32), 0) << "only the weight is counted";
  for (const size_t size : {23u, 16u}) EXPECT_EQ(angle(0xFFFFFFFF, size), 0) << "the value is cut off";
}

}  // namespace
