#include "TableAccess/TableClasses/FTFontTable_loca.h"
#include "TableAccess/TableClasses/FTFontTable_vmtx.h"
#include "support/GlyphBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

constexpr char kNoGlyph[] = "A reference was made to a non-existent glyph";

TEST(GlyphLocations, HeadSaysHowOffsetsAreStored) {
  const Bytes offsets = TableBuilder().U32(0x00000004).U32(0x00030002).U32(0xFFFFFFFE);
  for (const int format : {0, 1, 2, -1}) {
    const bool isLong = format == 1;
    FontBuilder font;
    font.Table("head", HeadTable().Patch("indexToLocFormat", static_cast<uint64_t>(format)))
        .Table("maxp", MaxpTable(3));
    const MemoryFont memory(font.Table("loca", offsets).Build());
    const auto& loca = *memory->FindTable<FTFontTable_loca>();
    EXPECT_EQ(loca.GetGlyphOffset(0), isLong ? 4u : 0u);
    EXPECT_EQ(loca.GetGlyphOffset(2), isLong ? 0xFFFFFFFEu : 6u);
    EXPECT_EQ(loca.GetGlyphLength(0), isLong ? 0x0002FFFEu : 8u);
    EXPECT_EQ(loca.GetGlyphLength(1), isLong ? 0xFFFCFFFCu : ~uint64_t{1});  // from 8 back to 6
    EXPECT_EQ(loca.GetGlyphLength(2),
              isLong ? uint64_t{0} - 0xFFFFFFFEu : ~uint64_t{1});  // to an entry beyond the table
    ExpectThrow(kNoGlyph, [&] { loca.GetGlyphOffset(3); });
    ExpectThrow(kNoGlyph, [&] { loca.GetGlyphLength(3); });
  }
}

TEST(GlyphMetrics, LongEntriesAreFollowedBySideBearings) {
  const Bytes table = TableBuilder(MetricsTable({{500, -10}, {600, 20}})).S16(-30).S16(40);
  const struct {
    uint16_t longMetrics;
    uint16_t glyphs;
    std::vector<FTGlyphMetrics> expected;
  } cases[] = {{2, 4, {{500, 65526}, {600, 20}, {600, 65506}, {600, 40}}},
               {3, 2, {{500, 65526}, {600, 20}}},
               {4, 4, {{500, 65526}, {600, 20}, {65506, 40}, {0, 0}}},  // the table ends after 12 bytes
               {0, 2, {{0, 500}, {0, 65526}}}};
  for (const auto& [longMetrics, glyphs, expected] : cases) {
    FontBuilder font;
    font.Table("maxp", MaxpTable(glyphs)).Table("hmtx", table).Table("vmtx", table);
    const MemoryFont horizontal(FontBuilder(font).Table("hhea", HheaTable(longMetrics)).Build());
    const MemoryFont vertical(FontBuilder(font).Table("vhea", HheaTable(longMetrics)).Build());
    const auto& hmtx = *horizontal->FindTable<FTFontTable_hmtx>();
    const auto& vmtx = *vertical->FindTable<FTFontTable_vmtx>();
    for (uint16_t glyph = 0; glyph < glyphs; ++glyph) {
      EXPECT_EQ(hmtx.GetMetrics(glyph), expected[glyph]) << longMetrics << " long, glyph " << glyph;
      EXPECT_EQ(vmtx.GetMetrics(glyph), expected[glyph]) << longMetrics << " long, glyph " << glyph;
    }
    ExpectThrow(kNoGlyph, [&hmtx, end = glyphs] { hmtx.GetMetrics(end); });
  }
}

}  // namespace
