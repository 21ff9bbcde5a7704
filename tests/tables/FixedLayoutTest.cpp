#include "TableAccess/TableClasses/FTFontTable_OS_2.h"
#include "TableAccess/TableClasses/FTFontTable_TYP1.h"
#include "TableAccess/TableClasses/FTFontTable_fdsc.h"
#include "TableAccess/TableClasses/FTFontTable_hdmx.h"
#include "TableAccess/TableClasses/FTFontTable_head.h"
#include "TableAccess/TableClasses/FTFontTable_hhea.h"
#include "TableAccess/TableClasses/FTFontTable_maxp.h"
#include "TableAccess/TableClasses/FTFontTable_post.h"
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
  EXPECT_NE(font->FindTable<FTFontTable_cvt_>(), nullptr);
  EXPECT_NE(font->FindTable<FTFontTable_dsig>(), nullptr);
  EXPECT_EQ(font->FindTable<FTFontTable_bhed>()->GetTag(), FTTag("bhed"));
}

TEST(FixedLayout, FieldsAreReadFromTheirPlaces) {
  FontBuilder builder = GoodFont().Table("vhea", HheaTable(7));
  const MemoryFont font(builder.Build());
  const auto* head = font->FindTable<FTFontTable_head>();
  EXPECT_EQ(head->MagicNumber(), 0x5F0F3CF5u);
  EXPECT_EQ(head->Modified(), 3800000000);
  EXPECT_EQ(head->YMax(), 700);
  EXPECT_EQ(head->GlyphDataFormat(), 0);
  const auto* hhea = font->FindTable<FTFontTable_hhea>();
  EXPECT_EQ(hhea->Descender(), -200);
  EXPECT_EQ(hhea->NumberLongMetrics(), 3);
  EXPECT_EQ(font->CountVerticalLongMetrics(), 7);
}

TEST(FixedLayout, OnlyFormatOneMeansLongOffsets) {
  for (const int format : {-1, 0, 1, 2}) {
    TableBuilder head = HeadTable();
    head.Patch("indexToLocFormat", static_cast<uint64_t>(format));
    const MemoryFont font(FontBuilder().Table("head", head).Build());
    EXPECT_EQ(font->FindTable<FTFontTable_head>()->FontUsesLongGlyphOffsets(), format == 1) << format;
  }
}

TEST(FixedLayout, AShortTableReadsAsZerosWhereItEnds) {
  for (size_t size = 0; size <= 54; ++size) {
    const MemoryFont font(GoodFont().Truncate("head", size).Build());
    EXPECT_EQ(font->FindTable<FTFontTable_head>()->UnitsPerEm(), size >= 20 ? 1000 : 0) << size;
  }
}

TEST(MaximumProfile, MaximaAreThoseOfTheLongForm) {
  TableBuilder maxp = MaxpTable(300);
  maxp.Patch("maxPoints", 17);
  const MemoryFont longForm(FontBuilder().Table("maxp", maxp).Build());
  EXPECT_EQ(longForm->FindTable<FTFontTable_maxp>()->MaxPoints(), 17);
  const Tova::Data same = longForm->FindTable<FTFontTable_maxp>()->RebuildDataInternal();
  EXPECT_EQ(Tova::ByteView(TovaDataGetBytes(same.get()), TovaDataGetLength(same.get())),
            Tova::ByteView(maxp.Data().data(), maxp.Size()));

  const MemoryFont shortForm(FontBuilder().Table("maxp", maxp.Patch("version", 0x00005000)).Build());
  const auto* table = shortForm->FindTable<FTFontTable_maxp>();
  EXPECT_EQ(table->NumGlyphs(), 300);
  EXPECT_EQ(table->MaxPoints(), 0);
  EXPECT_EQ(TovaDataGetLength(table->RebuildDataInternal().get()), 32u);
}

TEST(DeviceMetrics, RecordsAreReachedByIndex) {
  TableBuilder hdmx;
  hdmx.U16(0).U16(2).U32(4).U32(0x0A0B0C0D).U32(0x14151617);
  const MemoryFont font(FontBuilder().Table("hdmx", hdmx).Build());
  const auto* table = font->FindTable<FTFontTable_hdmx>();
  EXPECT_EQ(table->GetDeviceRecord(1).U8(0), 0x14);
  EXPECT_EQ(table->GetDeviceRecord(2).Data(), nullptr);
}

TEST(TableCopy, HasBytesOfItsOwnAndReadsThemAgain) {
  auto font = std::make_unique<MemoryFont>(GoodFont().Build());
  const auto* source = (*font)->FindTable<FTFontTable_head>();
  EXPECT_EQ(source->UnitsPerEm(), 1000);
  const FTFontTable_head copy(*source);
  EXPECT_FALSE(copy.DataRead());
  font.reset();
  EXPECT_EQ(copy.UnitsPerEm(), 1000);
}

TEST(PostScriptTables, GlyphsOfCidFontsAreCountedThoseOfType1AreNot) {
  const auto bytes = [](const std::string& text) { return Bytes(text.begin(), text.end()); };
  const auto cid = [&](const std::string& text) {
    return MemoryFont(FontBuilder().Table("CID ", bytes(text)).Build())->CountFontGlyphs();
  };
  EXPECT_EQ(cid("x/CID /CIDCount 65535 def /CIDCount 1"), 65535);
  EXPECT_EQ(cid("/CIDCount"), 0);
  EXPECT_EQ(cid("/CIDCount  \n12"), 12);
  EXPECT_EQ(cid("/CIDCount x"), 0);
  const MemoryFont type1(FontBuilder().Table("TYP1", bytes("/CharStrings 228 dict")).Build());
  EXPECT_EQ(type1->FindTable<FTFontTable_TYP1>()->NumGlyphs(), 0u);
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

TEST(Post, TheItalicAngleIsSigned) {
  const Bytes post = PostTable().Patch("italicAngle", 0xFFF48000);
  const MemoryFont font(FontBuilder().Table("post", post).Build());
  EXPECT_EQ(font->FindTable<FTFontTable_post>()->GetItalicAngle(), -753664) << "-11.5 degrees";
}

}  // namespace
