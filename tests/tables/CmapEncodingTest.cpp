#include <unicode/uniset.h>

#include <algorithm>

#include "TableAccess/TableClasses/FTFontTable_cmap.h"
#include "support/CmapBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;
using Pairs = std::vector<FTEncodingPair>;

FTEncoding Encoding(const Bytes& bytes, uint32_t platform = 3, uint32_t script = 1) {
  return FTEncoding(Tova::ByteView(bytes.data(), bytes.size()), platform, script);
}

Pairs EveryByte(const std::map<uint32_t, uint32_t>& glyphs) {
  Pairs pairs;
  for (uint32_t code = 0; code < 256; ++code) pairs.push_back({code, glyphs.contains(code) ? glyphs.at(code) : 0});
  return pairs;
}

TEST(CmapEncoding, LookUpsAgreeWithThePairs) {
  const struct {
    const char* what;
    TableBuilder subtable;
    Pairs pairs;  // the whole mapping
  } cases[] = {
      {"Format0KeepsGlyph0", CmapFormat0({{65, 1}, {66, 255}}), EveryByte({{65, 1}, {66, 255}})},
      {"Format2",
       CmapFormat2({{0x81, 1}, {0x82, 1}, {0x90, 2}}, {{0x41, {7, 0, 8}, 1}, {0x40, {5, 0, 6}, 0xFFFF}, {0x50, {9}}}),
       {{0x41, 8}, {0x43, 9}, {0x8140, 4}, {0x8142, 5}, {0x8240, 4}, {0x8242, 5}}},
      {"Format4IsNotModulo65536",
       CmapFormat4({{0x41, 0x43, -0x40}, {0x50, 0x51, 0x10}, {0xC000, 0xC001, 0x5000}}),
       {{0x41, 1}, {0x42, 2}, {0x43, 3}, {0x50, 0x60}, {0x51, 0x61}, {0xC000, 0x11000}, {0xC001, 0x11001}}},
      {"Format4LeavesGlyph0OutAndGoesBelow", CmapFormat4({{0x41, 0x43, -0x42}}), {{0x41, 0xFFFFFFFF}, {0x43, 1}}},
      {"Format4ArraysTakeNoDelta",
       CmapFormat4({{0x41, 0x43, 5, {30, 0, 10}}, {0xFFFE, 0xFFFF, 1, {3, 4}}}),
       {{0x41, 30}, {0x43, 10}, {0xFFFE, 3}}},
      {"Format4SegmentsOverlap",
       CmapFormat4({{0x41, 0x43, -0x40}, {0x43, 0x44, -0x30}, {0x40, 0x44, 0, {9, 0, 0, 8, 3}}}),
       {{0x40, 9}, {0x41, 1}, {0x42, 2}, {0x43, 3}, {0x43, 0x13}, {0x43, 8}, {0x44, 0x14}, {0x44, 3}}},
      {"Format12GroupsOverlap",
       CmapGroups(12, {{8, 10, 65535}, {9, 10, 40}, {7, 9, 7}}),
       {{7, 7}, {8, 65535}, {8, 8}, {9, 65536}, {9, 40}, {9, 9}, {10, 1}, {10, 41}}},
      {"Format6", CmapFormat6(0xFFFD, {4, 0, 3}), {{0xFFFD, 4}, {0xFFFF, 3}}},
      {"Format8IsNotReduced",
       CmapGroups(8, {{0x10000, 0x10001, 70000}, {5, 6, 0}}),
       {{6, 1}, {0x10000, 70000}, {0x10001, 70001}}},
      {"Format10", CmapFormat10(0xFFFFFFFE, {0, 9, 8}), {{0xFFFFFFFF, 9}}},
      {"Format12ReducesAbove65536",
       CmapGroups(12, {{0x41, 0x42, 65536}, {0x50, 0x50, 196609}, {0x60, 0x61, 0}}),
       {{0x41, 65536}, {0x42, 1}, {0x50, 1}, {0x61, 1}}},
      {"Format13", CmapGroups(13, {{8, 9, 65537}, {10, 11, 0}, {9, 10, 2}}), {{8, 1}, {9, 1}, {9, 2}, {10, 2}}},
      {"Format14", CmapFormat14({{0xFE00, {{0x41, 1}}, {{0x42, 7}}}}), {}}};
  for (const auto& [what, subtable, pairs] : cases) {
    SCOPED_TRACE(what);
    const FTEncoding encoding = Encoding(subtable);
    EXPECT_EQ(encoding.GetMapping(), pairs);
    EXPECT_EQ(encoding.GetMappingCount(), pairs.size());
    for (const FTEncodingPair& pair : pairs) {
      const auto first = std::ranges::find(pairs, pair.character, &FTEncodingPair::character);
      EXPECT_EQ(encoding.CharacterToGlyph(pair.character), first->glyph) << pair.character;
      const auto lowest = std::ranges::find(pairs, pair.glyph, &FTEncodingPair::glyph);
      EXPECT_EQ(encoding.GlyphToCharacter(static_cast<int32_t>(pair.glyph)), lowest->character) << pair.glyph;
      for (const uint32_t beside : {pair.character - 1, pair.character + 1}) {
        const bool isGap = std::ranges::find(pairs, beside, &FTEncodingPair::character) == pairs.end();
        EXPECT_FALSE(isGap && encoding.MapsCharacter(beside)) << beside;
      }
    }
    EXPECT_EQ(encoding.GlyphToCharacter(0x7FFF0000), 0xFFFFu);
    EXPECT_FALSE(encoding.MapsGlyph(0x7FFF0000));
  }
}

TEST(CmapEncoding, UnusableSubtablesThrowAtEveryLookUp) {
  const std::vector<std::pair<TableBuilder, std::string>> cases = {
      {CmapFormat4({}).Patch("endCode0", 0xFFFE), "tEndCodes[ tCount-1 ] == kUnicodeNotAChar"},
      {CmapFormat4({}).Patch("segCountX2", 0), "tEndCodes[ tCount-1 ] == kUnicodeNotAChar"},
      {CmapFormat6(0xFFFE, {1, 2, 3}), "tTemp >= 65536UL"},
      {CmapFormat6(1, {}).Patch("format", 5), "true"}};
  for (const auto& [subtable, assertion] : cases) {
    const FTEncoding encoding = Encoding(subtable);
    const auto lookUp = [&] { encoding.MapsCharacter(1); };
    for (int i = 0; i < 2; ++i) EXPECT_EQ(ExpectThrow("The font has an invalid 'cmap' table", lookUp), assertion);
  }
}

TEST(CmapEncoding, HugeClaimsAreCountedAndLookedUpAsTheyStand) {
  for (const uint16_t format : {uint16_t{8}, uint16_t{12}, uint16_t{13}}) {
    std::vector<CmapGroup> groups(80000, {0, 0xFFFFFFFF, 7});
    groups[0] = {1000, 1000, 9};
    const TableBuilder subtable = CmapGroups(format, groups);
    const FTEncoding encoding = Encoding(subtable);
    EXPECT_EQ(encoding.CharacterToGlyph(1000), 9u);
    EXPECT_EQ(encoding.CharacterToGlyph(70000), format == 13 ? 7u : format == 12 ? 70007u - 65536 : 70007u);
    EXPECT_GE(encoding.GetMappingCount(), 79999u * 0xFFFFFFFF);
    ExpectThrow("The font has an invalid 'cmap' table", [&] { encoding.GetMapping(); });
  }
}

Bytes TwoScripts() {
  return CmapTable({{1, 0, CmapFormat0({{0x41, 3}}).Patch("language", 12)},
                    {3, 0, CmapFormat4({{0x41, 0x41, -0x40}})},
                    {3, 1, CmapGroups(12, {{0x41, 0x42, 0}, {0x10000, 0x10000, 2}})},
                    {3, 10, CmapGroups(12, {}).Patch("language", 0x10009)},
                    {0, 5, CmapFormat14({})}});
}

TEST(CmapTable, EncodingsAreFoundByTheirCodes) {
  const MemoryFont font(GoodFont().Table("cmap", TwoScripts()).Build());
  constexpr uint32_t kAny = FTFont_sfnt::kAny;
  uint64_t index = 99;
  EXPECT_TRUE(font->FindFontEncoding(3, kAny, kAny, index) && index == 1);
  EXPECT_TRUE(font->FindFontEncoding(kAny, kAny, 0x10009, index) && index == 3);
  EXPECT_TRUE(font->FindFontEncoding(1, 0, 12, index) && index == 0);
  EXPECT_FALSE(font->FindFontEncoding(1, 0, 0, index));
  const auto& table = *font->FindTable<FTFontTable_cmap>();
  EXPECT_TRUE(table[0]->IsUnicodableEncoding() && !table[0]->IsUnicodeEncoding());
  EXPECT_TRUE(table[1]->IsUnicodeEncoding() && !table[4]->IsUnicodableEncoding());
}

TEST(CmapTable, CharactersAreLookedUpInTheBestUnicodeEncoding) {
  const MemoryFont font(GoodFont().Table("cmap", TwoScripts()).Build());
  EXPECT_EQ(font->UnicodeToGlyphID(0x42), 1u);
  EXPECT_EQ(font->UnicodeToGlyphID(0x41), 0xFFFFu) << "glyph 0 counts as none";
  EXPECT_EQ(font->GlyphIDToUnicode(2), 0x10000u);
  EXPECT_EQ(font->GlyphIDToUnicode(9), 0xFFFFu);
  std::vector<CmapRecord> records;
  uint32_t glyph = 10;
  for (const auto& [platform, script] :
       std::vector<std::pair<uint16_t, uint16_t>>{{3, 10}, {3, 1}, {0, 1}, {0, 2}, {0, 0}, {0, 3}, {0, 4}}) {
    records.push_back({platform, script, CmapGroups(12, {{0x41, 0x41, ++glyph}})});
    EXPECT_EQ(MemoryFont(GoodFont().Table("cmap", CmapTable(records)).Build())->UnicodeToGlyphID(0x41), glyph);
  }
  EXPECT_EQ(MemoryFont(GoodFont().Remove("cmap").Build())->UnicodeToGlyphID(0x41), 0xFFFFu);
}

TEST(CmapTable, RecordsThatAreNotWhollyThereAreLeftOut) {
  TableBuilder table = CmapTable({{3, 1, CmapFormat4({})}, {3, 1, CmapFormat4({})}});
  table.Patch("subtableOffset0", 0x7FFFFFFF).Truncate(19);
  const MemoryFont font(GoodFont().Table("cmap", table).Build());
  EXPECT_EQ(font->CountFontEncodings(), 1u);
  EXPECT_FALSE(font->FindTable<FTFontTable_cmap>()->GetIndEncoding(0)->MapsCharacter(0));
}

TEST(CmapEncoding, CharacterSetHoldsWhatHasAUsableGlyph) {
  const TableBuilder groups = CmapGroups(12, {{0x41, 0x43, 0xFFFE}, {0x50, 0x52, 0}, {0x10FFFE, 0x110005, 4}});
  const auto text = [](const FTEncoding& encoding) {
    icu::UnicodeString pattern;
    std::string utf8;
    encoding.GetCharacterSet().toPattern(pattern, true).toUTF8String(utf8);
    return utf8;
  };
  EXPECT_EQ(text(Encoding(groups)), "[ACQR\\U0010FFFE\\U0010FFFF]");
  const TableBuilder roman = CmapFormat0({{0x41, 1}, {0x80, 2}, {0x81, 0}, {0x82, 255}});
  EXPECT_EQ(text(Encoding(roman, 1, 0)), "[A\\u00C4\\u00C7]");
  const TableBuilder japanese = CmapFormat2({{0x82, 1}}, {{0x41, {4}}, {0xA0, {5, 6}}});
  EXPECT_EQ(text(Encoding(japanese, 1, 1)), "[A\\u3042\\u3043]") << "0x82A1 is the small i";
}

}  // namespace
