#include <gtest/gtest.h>

#include "TableAccess/AncillaryClasses/FTUnicodeMap.h"
#include "TableAccess/AncillaryClasses/FTWorkBudget.h"
#include "TableAccess/Glyphs/FTGlyphInk.h"
#include "support/CmapBuilder.h"
#include "support/GlyphBuilder.h"

namespace {

using namespace test;

FTUnicodeMap MapOf(const Bytes& table) {
  FTWorkBudget budget;
  return FTUnicodeMap(Tova::ByteView(table.data(), table.size()), budget);
}
FTUnicodeMap MapOf(const TableBuilder& subtable) { return MapOf(CmapTable({{3, 10, subtable}}).Data()); }

/// The glyphs of these characters.
std::vector<int> Glyphs(const FTUnicodeMap& map, const std::vector<uint32_t>& characters) {
  std::vector<int> glyphs;
  for (const uint32_t character : characters) glyphs.push_back(map.GlyphFor(character));
  return glyphs;
}
using Ints = std::vector<int>;

TEST(UnicodeMap, Format4ReducesGlyphsAndAddsTheDeltaToWords) {
  EXPECT_EQ(Glyphs(MapOf(CmapFormat4({{0xF020, 0xF022, 0x0FE3}})), {0xF020, 0xF021, 0xF022, 0xF023}),
            Ints({3, 4, 5, 0}));
  EXPECT_EQ(Glyphs(MapOf(CmapFormat4({{'A', 'C', 5, {10, 0, 12}}})), {'A', 'B', 'C'}), Ints({15, 0, 17}));
  EXPECT_EQ(MapOf(CmapFormat4({{0xFFF0, 0xFFFE, 0x20}})).GlyphFor(0xFFFF), 0) << "the code that ends the segments";
}

TEST(UnicodeMap, OverlapsAndWhatIsOutOfOrderAddNothing) {
  EXPECT_EQ(Glyphs(MapOf(CmapGroups(12, {{5, 6, 9}, {3, 4, 65535}, {6, 8, 20}})), {3, 4, 5, 6, 7, 8}),
            Ints({0, 0, 9, 10, 21, 22}));
  const std::vector<CmapGroup> everything(2000, {0, 0x10FFFF, 1});
  EXPECT_EQ(MapOf(CmapGroups(13, everything)).Glyphs().Count(), 0x110000u) << "one step for each character";
  EXPECT_EQ(MapOf(CmapFormat4(std::vector<CmapSegment>(8000, {0, 0xFFFE, 1}))).Glyphs().Count(), 0xFFFFu);
}

TEST(UnicodeMap, ReadsWordsAndGroupsThatTheBytesHold) {
  EXPECT_EQ(Glyphs(MapOf(CmapFormat6('A', {1, 2})), {'@', 'A', 'B', 'C'}), Ints({0, 1, 2, 0}));
  EXPECT_EQ(Glyphs(MapOf(CmapFormat10(0x1F600, {7, 8}).Patch("numChars", 0xFFFFFFFF)), {0x1F600, 0x1F601, 0x1F602}),
            Ints({7, 8, 0}));
  EXPECT_EQ(Glyphs(MapOf(CmapGroups(12, {{'A', 'B', 0x1FFFF}}).Patch("nGroups", 0xFFFFFFFF)), {'A', 'B'}),
            Ints({0xFFFF, 0}));
}

TEST(UnicodeMap, FullEncodingsComeFirstAndSharedSubtablesCountOnce) {
  TableBuilder table = CmapTable({{0, 3, CmapFormat6('A', {1, 2})},
                                  {1, 0, CmapFormat6('Z', {9})},
                                  {3, 1, CmapFormat6('A', {5})},
                                  {3, 10, CmapGroups(12, {{'B', 'C', 7}})},
                                  {0, 5, CmapFormat14({})}});
  table.Patch("subtableOffset2", 4 + 8 * 5);  // that of the first
  const FTUnicodeMap map = MapOf(table.Data());
  EXPECT_EQ(map.Records().size(), 5u);
  ASSERT_EQ(map.Encodings().size(), 2u) << "(3, 1) has the bytes of (0, 3)";
  EXPECT_EQ(map.Encodings()[1].record.index, 3u);
  EXPECT_EQ(Glyphs(map, {'A', 'B', 'C', 'Z'}), Ints({1, 7, 8, 0}));
  EXPECT_EQ(map.Glyphs().FirstFrom('B'), 'B');
  EXPECT_EQ(map.Glyphs().LastUpTo(0x10FFFF), 'C');
  EXPECT_EQ(map.Glyphs().FirstFrom('D'), std::nullopt);
  EXPECT_EQ(map.Glyphs().LastUpTo('@'), std::nullopt);
}

TEST(UnicodeMap, EveryClaimIsCharged) {
  const std::vector<CmapGroup> everything(1, {0, 0x10FFFF, 1});
  const Bytes table = CmapTable({{3, 10, CmapGroups(13, everything)}});
  FTWorkBudget budget;
  const auto make = [&] { FTUnicodeMap(Tova::ByteView(table.data(), table.size()), budget); };
  for (int i = 0; i < 15; ++i) make();
  EXPECT_THROW(make(), FTWorkBudgetEnd);
}

/// Whether glyph 0 of these is blank.
bool IsBlank(const std::vector<Bytes>& glyphs, uint32_t glyph = 0) {
  FontBuilder font = OutlineFont(glyphs);
  const Bytes& loca = font["loca"];
  const Bytes& glyf = font["glyf"];
  FTWorkBudget budget;
  const FTGlyphLocations locations = {Tova::ByteView(loca.data(), loca.size()), true,
                                      static_cast<uint16_t>(glyphs.size())};
  return FTGlyphInk(Tova::ByteView(glyf.data(), glyf.size()), locations, budget).IsBlank(glyph);
}

TEST(GlyphInk, BlankGlyphsDrawNothing) {
  const Bytes square = SquareGlyph(100);
  EXPECT_FALSE(IsBlank({square}));
  EXPECT_TRUE(IsBlank({{}}));
  EXPECT_TRUE(IsBlank({square}, 1)) << "the font does not have it";
  Bytes none = square;
  none[1] = 0;
  EXPECT_TRUE(IsBlank({none})) << "no contours";
  EXPECT_TRUE(IsBlank({SimpleGlyph({{{0, 0}, {0, 9}, {0, 5}}})})) << "no width";
  EXPECT_TRUE(IsBlank({CompoundGlyph({{0x0003, 1}}), {}}));
  EXPECT_FALSE(IsBlank({CompoundGlyph({{0x0003, 1}, {0x0003, 2}}), {}, square}));
}

TEST(GlyphInk, CompoundsTooDeepOrTooLongHaveInk) {
  EXPECT_FALSE(IsBlank({CompoundGlyph({{0x0003, 0}})})) << "contains itself";
  const auto nested = [](uint16_t depth) {
    std::vector<Bytes> glyphs;
    for (uint16_t i = 1; i <= depth; ++i) glyphs.push_back(CompoundGlyph({{0x0003, i}}));
    glyphs.emplace_back();
    return glyphs;
  };
  EXPECT_TRUE(IsBlank(nested(8)));
  EXPECT_FALSE(IsBlank(nested(9)));
  EXPECT_TRUE(IsBlank({CompoundGlyph(std::vector<Component>(4096, {0x0003, 1})), {}}));
  EXPECT_FALSE(IsBlank({CompoundGlyph(std::vector<Component>(4097, {0x0003, 1})), {}}));
}

}  // namespace
