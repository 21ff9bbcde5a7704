#include "Tests/VornFontTesterStructure_feat.h"
#include "Tests/VornFontTesterStructure_prop.h"
#include "support/LayoutBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

/// Two features: 3 with the settings 0 and 2, 4 (exclusive) with 0, 1 and 2.
TableBuilder Feat() {
  TableBuilder feat;
  feat.U32(0x00010000, "version").U16(2, "count").U16(0, "reserved").U32(0);
  feat.U16(3, "type").U16(2, "settings").U32(36, "offset").U16(0, "flags").S16(256, "name");
  feat.U16(4, "type2").U16(3).U32(44, "offset2").U16(0xC001, "flags2").S16(257);
  feat.U16(0).S16(256).U16(2, "setting").S16(256);
  return feat.U16(0).S16(257).U16(1).S16(257).U16(2).S16(257, "last name");
}
void ExpectOfFeat(const Bytes& feat, std::vector<Message> expected, FontBuilder font = {}) {
  for (Message& message : expected) message.text.insert(0, "feat: ");
  font.Table("name", NameTable({{256, "Three"}, {257, "Four"}})).Table("feat", feat);
  Expect(TestStructure_feat, font, expected);
}

TEST(FeatStructure, NamesAndSettingsAreJudged) {
  const auto changed = [](const char* field, uint64_t value, const std::vector<Message>& expected) {
    SCOPED_TRACE(field);
    ExpectOfFeat(Feat().Patch(field, value), expected);
  };
  ExpectOfFeat(Feat(), {});
  ExpectOfFeat(Bytes(11), {{kFatal, "The table is too small; it is only 11 bytes in size and should be at least 12"}});
  changed("version", 0x00020000, {{kMajor, "Bad version number: 0x00020000"}});
  changed("reserved", 1, {{kTechnical, "The reserved fields (0x0001, 0x00000000) are not zero"}});
  changed("count", 0, {{kMinor, "The table has no features"}});
  changed("type2", 3, {{kMajor, "1 features are out of order; the first is entry 1 with type 3"}});
  changed("offset2", 48, {{kFatal, "Feature 4: the settings lie beyond the end of the table"}});
  changed("offset", 32,
          {{kMajor, "Feature 3: the settings offset 0x00000020 is too small"},
           {kMinor, "Feature 3: setting 0 follows setting 49153"},
           {kInformation, "Feature 3 lists the off setting 49153"}});
  changed("flags", 0x0100, {{kTechnical, "Feature 3: reserved flags are set (0x0100)"}});
  changed("flags", 0x4000,
          {{kTechnical, "Feature 3 has a default setting but its settings do not exclude one another"}});
  changed("flags2", 0xC003, {{kMajor, "Feature 4: the default setting has the index 3; there are only 3 settings"}});
  changed("flags2", 0x8003, {});
  changed("settings", 0,
          {{kInformation, "Feature 3 has no settings"},
           {kInformation, "There are 8 bytes between the feature names and the settings"}});
  changed("setting", 0, {{kMinor, "Feature 3: setting 0 follows setting 0"}});
  changed("setting", 1, {{kInformation, "Feature 3 lists the off setting 1"}});
  changed("name", 255,
          {{kTechnical, "1 name indices are not in the range 256 to 32767; the first is 255, of feature 3"}});
  changed("last name", 300,
          {{kMinor, "1 names are missing from the 'name' table; the first is name 300, of feature 4"}});
}

TEST(FeatStructure, ChainsHaveTheFeatures) {
  const TableBuilder chains = ChainTable(StateTableWidth::kExtended, {{4, LookupFormat6({})}}, {{3, 0, 1}, {0, 1, 0}});
  ExpectOfFeat(Feat(), {{kInformation, "Feature 4 is not used by any chain"}}, FontBuilder().Table("morx", chains));
  ExpectOfFeat(Feat().Patch("type2", 39), {}, FontBuilder().Table("morx", chains));
}

/// 'prop' of version 2 over a font of 10 glyphs, of which those from 6 on are 500 units wide.
TableBuilder Prop(const std::vector<std::pair<uint16_t, uint16_t>>& properties) {
  TableBuilder prop;
  return prop.U32(0x00020000, "version").U16(1, "format").U16(0, "default").Append(LookupFormat6(properties));
}
void ExpectOfProp(const Bytes& prop, std::vector<Message> expected) {
  for (Message& message : expected) message.text.insert(0, "prop: ");
  std::vector<std::pair<uint16_t, int16_t>> metrics(6, {0, 0});
  metrics.emplace_back(500, 0);
  const FontBuilder font = FontBuilder().Table("maxp", MaxpTable(10)).Table("hhea", HheaTable(7));
  Expect(TestStructure_prop, FontBuilder(font).Table("hmtx", MetricsTable(metrics)).Table("prop", prop), expected);
}

TEST(PropStructure, HeadersAreJudged) {
  ExpectOfProp(Bytes(7), {{kFatal, "The table is too small; it is only 7 bytes in size and should be at least 8"}});
  ExpectOfProp(Prop({}).Patch("version", 0x00040000),
               {{kTechnical, "Bad version number: 0x00040000; the table was not examined further"}});
  ExpectOfProp(Prop({}).Patch("format", 2), {{kMajor, "Bad format: 2"}});
  ExpectOfProp(Prop({}).Patch("format", 0).Truncate(12),
               {{kTechnical, "4 bytes follow the header of a table without a lookup"}});
  ExpectOfProp(Prop({}).Patch("default", 0x1020),
               {{kTechnical, "The default properties have a bracket partner"},
                {kTechnical, "1 glyphs have reserved bits set; the first is glyph -1 (0x1020)"}});
}

TEST(PropStructure, PropertiesOfGlyphsAreJudged) {
  ExpectOfProp(Prop({{1, 0x0040}, {2, 0x0080}, {3, 11}, {4, 18}}),
               {{kTechnical, "1 glyphs have reserved bits set; the first is glyph 1 (0x0040)"},
                {kMinor, "1 glyphs have an unknown direction class; the first is glyph 4 (18)"}});
  ExpectOfProp(Prop({{2, 0x0080}, {4, 18}}).Patch("version", 0x00010000),
               {{kTechnical, "1 glyphs attach on the right, which version 1 does not know; the first is glyph 2"},
                {kMinor, "1 glyphs have an unknown direction class; the first is glyph 4 (18)"}});
  ExpectOfProp(Prop({{4, 18}}).Patch("version", 0x00030000), {});
  ExpectOfProp(Prop({{5, 0x8000}, {8, 0x8000}}), {{kMinor, "1 floating glyphs have an advance; the first is glyph 8"}});
}

TEST(PropStructure, BracketsPointAtEachOther) {
  ExpectOfProp(Prop({{2, 0x1100}, {3, 0x1F00}}), {});
  ExpectOfProp(Prop({{2, 0x1100}, {3, 0x1E00}}),
               {{kTechnical, "2 bracket partners do not point back; the first is that of glyph 2"}});
  ExpectOfProp(Prop({{2, 0x1100}}),
               {{kTechnical, "1 bracket partners do not point back; the first is that of glyph 2"}});
  ExpectOfProp(Prop({{0, 0x1F00}, {2, 0x1000}, {5, 0x0100}}),
               {{kTechnical, "1 glyphs are their own bracket partner; the first is glyph 2"},
                {kMinor, "1 glyphs have a bracket partner that is not in the font; the first is glyph 0 (-1)"},
                {kInformation, "1 glyphs have an unused bracket offset; the first is glyph 5"}});
}

}  // namespace
