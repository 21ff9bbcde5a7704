#include "TableAccess/AncillaryClasses/FTLookupSearch.h"
#include "TableAccess/TableClasses/FTFontTable_Zapf.h"
#include "TableAccess/TableClasses/FTFontTable_fdsc.h"
#include "TableAccess/TableClasses/FTFontTable_feat.h"
#include "TableAccess/TableClasses/FTFontTable_gvar.h"
#include "TableAccess/TableClasses/FTFontTable_just.h"
#include "TableAccess/TableClasses/FTFontTable_kern.h"
#include "TableAccess/TableClasses/FTFontTable_prop.h"
#include "support/LayoutBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

TEST(LookupSearch, EveryFormatGivesTheValueOfAGlyph) {
  const TableBuilder lookups[] = {LookupFormat0({0, 0, 0, 30, 40, 0}),
                                  LookupFormat2({{1, 2, 7}, {3, 3, 30}, {4, 4, 40}}),
                                  LookupFormat4({{1, {7, 7}}, {3, {30, 40}}}),
                                  LookupFormat6({{1, 7}, {3, 30}, {4, 40}}),
                                  LookupFormat8(3, {30, 40}),
                                  LookupFormat10(2, 3, {30, 40})};
  for (const TableBuilder& table : lookups) {
    const Tova::ByteView lookup(table.Data().data(), table.Size());
    SCOPED_TRACE(lookup.U16(0));
    const auto value = [&](uint32_t glyph) {
      const int64_t at = FTLookupSearch::FindValue(lookup, glyph);
      return at == FTLookupSearch::kNone ? -1 : int{lookup.U16(static_cast<uint64_t>(at))};
    };
    EXPECT_EQ(value(3), 30);
    EXPECT_EQ(value(4), 40);
    for (const uint32_t glyph : {6u, 0xFFFFu, 0x10003u}) EXPECT_EQ(value(glyph), -1) << glyph;
    EXPECT_EQ(FTLookupSearch::CalculateSize(lookup, 6), table.Size());
    EXPECT_EQ(FTLookupSearch::FindSegment(lookup, 3) >= 0, lookup.U16(0) == 2 || lookup.U16(0) == 4);
    EXPECT_EQ(FTLookupSearch::FindSingle(lookup, 3) >= 0, lookup.U16(0) == 6);
  }
  EXPECT_EQ(FTLookupSearch::CalculateSize(Tova::ByteView(Bytes{0, 5}.data(), 0), 6), 14u) << "format 0 of no bytes";
}

TEST(FeatTable, NamesAndSettingsAreFoundInsideTheTable) {
  TableBuilder feat;
  feat.U32(0x00010000).U16(2, "count").U16(0).U32(0);
  feat.U16(3).U16(2).U32(36).U16(0xC001).S16(256);
  feat.U16(1).U16(2).U32(44).U16(0x4001).S16(-2);
  feat.U16(0).S16(257).U16(4).S16(258).U16(6).S16(259);  // the fourth setting is cut off
  const MemoryFont font(FontBuilder().Table("feat", feat.Patch("count", 3)).Build());
  FTFeatureName name;
  uint64_t index = 0;
  EXPECT_TRUE(font->FindFontFeature(1, name, index) && index == 1 && name.fNameIndex == -2);
  EXPECT_EQ(name.GetDefaultIndex(), 0) << "its settings are not exclusive";
  EXPECT_FALSE(font->FindFontFeature(2, name, index));
  const auto& table = *font->FindTable<FTFontTable_feat>();
  EXPECT_EQ(table.GetNameCount(), 3u);
  EXPECT_TRUE(table.GetIndNameData(0, name) && name.GetDefaultIndex() == 1);
  EXPECT_FALSE(table.GetIndNameData(3, name));
  uint16_t setting = 0, code = 0;
  EXPECT_TRUE(table.GetIndSetting(0, 1, setting, code) && setting == 4 && code == 258);
  EXPECT_FALSE(table.GetIndSetting(0, 2, setting, code)) << "it has two";
  EXPECT_FALSE(table.GetIndSetting(1, 1, setting, code)) << "not in the table";
}

TEST(KernTable, SubtablesOfBothVersionsAreWalked) {
  TableBuilder old;
  old.U16(0).U16(2).U16(0).U16(10).U16(0x0201).Zeros(4);
  old.U16(0).U16(14).U16(0x0005).U16(3).Zeros(6 + 18);
  TableBuilder extended;
  extended.U32(0x00010000).U32(2).U32(12).U16(0x8001).U16(0).Zeros(4).U32(8, "length").U16(0x6003).U16(5);
  const auto ask = [](const Bytes& bytes, uint64_t index, FTKernSubtable& subtable) {
    const MemoryFont font(FontBuilder().Table("kern", bytes).Build());
    return font->FindTable<FTFontTable_kern>()->GetIndSubtable(index, subtable);
  };
  FTKernSubtable subtable;
  EXPECT_TRUE(ask(old, 1, subtable) && subtable.offset == 14);
  EXPECT_EQ(subtable.length, 32u) << "that of its pairs";
  EXPECT_FALSE(ask(old, 2, subtable));
  EXPECT_TRUE(ask(extended, 1, subtable));
  EXPECT_EQ(std::tuple(subtable.format, subtable.tupleIndex, subtable.Body()), std::tuple(3, 5, 28u));
  EXPECT_FALSE(ask(TableBuilder(extended).Truncate(27), 1, subtable));
}

TEST(SmallLayoutTables, FieldsAreReadFromTheirPlaces) {
  const TableBuilder prop = TableBuilder().U32(0x00020000).U16(1).U16(5).Append(LookupFormat6({{3, 0x1F00}}));
  const TableBuilder just = TableBuilder().U32(0x00010000).U16(0).U16(10).U16(20);
  const TableBuilder gvar = TableBuilder().U32(0x00010000).U16(2).U16(7).U32(0).U16(3);
  const TableBuilder zapf = TableBuilder().U32(0x00010000).U32(99).U32(12);
  const TableBuilder fdsc = TableBuilder().U32(0x00010000).U32(9).Text("wght").U32(6).Text("slnt").S32(-2);
  FontBuilder tables = FontBuilder().Table("Zapf", zapf).Table("fdsc", fdsc).Table("gvar", gvar);
  const MemoryFont font(tables.Table("just", just).Table("prop", prop).Build());
  EXPECT_EQ(font->FindTable<FTFontTable_prop>()->GetProperties(3), 0x1F00);
  EXPECT_EQ(font->FindTable<FTFontTable_prop>()->GetProperties(4), 5);
  EXPECT_EQ(FTFontTable_prop::PartnerOffsetOf(0x1F00), -1);
  EXPECT_EQ(FTFontTable_prop::PartnerOffsetOf(0x1700), 7);
  EXPECT_EQ(font->FindTable<FTFontTable_just>()->VerticalOffset(), 20);
  EXPECT_EQ(font->FindTable<FTFontTable_gvar>()->GetGlyphCount(), 3);
  EXPECT_EQ(font->CountGlobalCoordinates(), 7u);
  EXPECT_EQ(font->FindTable<FTFontTable_Zapf>()->GetGlyphInfoOffset(0), 12u);
  EXPECT_EQ(font->FindTable<FTFontTable_Zapf>()->GetGlyphInfoOffset(1), 0u);
  int32_t value = 0;
  EXPECT_TRUE(font->FindTable<FTFontTable_fdsc>()->GetDescriptor(FTTag("wght"), value));
  EXPECT_EQ(value, 6);
  EXPECT_FALSE(font->FindTable<FTFontTable_fdsc>()->GetDescriptor(FTTag("wdth"), value));
}

}  // namespace
