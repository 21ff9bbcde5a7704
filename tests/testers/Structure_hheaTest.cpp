#include "Tests/VornFontTesterStructure_hhea.h"
#include "support/GlyphBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

const auto [Information, Technical, Minor, Major, Fatal] = MessagesOf("hhea: ");

/// The 'hhea' of GoodFont with some fields changed.
using Changes = std::vector<std::pair<std::string, int64_t>>;
Bytes Changed(const Changes& changes) {
  TableBuilder hhea = HheaTable(3).Patch("minRightSideBearing", 100);
  for (const auto& [field, value] : changes) hhea.Patch(field, static_cast<uint64_t>(value));
  return hhea;
}

struct Case {
  Changes changes;
  std::vector<Message> expected;
};

void ExpectAll(const FontBuilder& font, const std::vector<Case>& cases) {
  for (const auto& [changes, expected] : cases) {
    SCOPED_TRACE(changes.empty() ? "unchanged" : changes[0].first + " " + std::to_string(changes[0].second));
    Expect(TestStructure_hhea, FontBuilder(font).Table("hhea", Changed(changes)), expected);
  }
}

TEST(HheaStructure, FieldsAreJudgedByTheirRangesAndTheEm) {
  ExpectAll(
      GoodFont(),
      {{{}, {}},
       {{{"ascender", 400}, {"descender", -600}}, {}},
       {{{"version", 0x00020000}}, {Technical("Bad version number: 0x20000")}},
       {{{"ascender", 399}}, {Minor("ascent (399) is smaller than 40.00  of the em (1000)")}},
       {{{"ascender", 0}, {"descender", 0}},
        {Minor("ascent (0) less than or equal to zero"), Minor("ascent (0) is smaller than 40.00  of the em (1000)"),
         Minor("ascent (0) is smaller than or equal to descent (0)"),
         Minor("descent (0) is greater than or equal to zero")}},
       {{{"descender", -601}}, {Minor("descent (-601) is greater than 60 percent of the em (1000)")}},
       {{{"descender", 700}},
        {Minor("descent (700) is greater than or equal to zero"),
         Minor("descent (700) is greater than 60 percent of the em (1000)")}},
       {{{"lineGap", -1}}, {Minor("line gap (-1) is smaller than zero")}},
       {{{"reserved0", 1}, {"reserved1", -2}, {"reserved2", 3}, {"reserved3", 4}, {"metricDataFormat", 5}},
        {Technical("Reserved word 0 (1) is not zero"), Technical("Reserved word 1 (-2) is not zero"),
         Technical("Reserved word 2 (3) is not zero"), Technical("Reserved word 3 (4) is not zero"),
         Technical("metricDataFormat (5) is not zero")}},
       {{{"numberOfHMetrics", 4}}, {Minor("numberLongMetrics (4) is greater than number of glyphs in the font (3)")}}});
}

TEST(HheaStructure, ExtremesAreHeldAgainstTheGlyphs) {
  ExpectAll(GoodFont(), {{{{"advanceWidthMax", 0}},
                          {Minor("advanceMax is equal to zero"), Minor("advanceMax (0) is wrong; it should be 600")}},
                         {{{"advanceWidthMax", 40000}}, {Minor("advanceMax (40000) is wrong; it should be 600")}},
                         {{{"minLeftSideBearing", -1}, {"minRightSideBearing", 1}, {"xMaxExtent", 2}},
                          {Minor("sideBearingMin (-1) is wrong; it should be 0"),
                           Minor("otherSideBearingMin (1) is wrong; it should be 100"),
                           Minor("extentMax (2) is wrong; it should be 500")}}});
}

TEST(HheaStructure, ExtremesWrapIn16Bits) {
  FontBuilder font = OutlineFont({SimpleGlyph({{{-30000, 0}, {30000, 9}}}), SquareGlyph(100)});
  font.Table("hmtx", MetricsTable({{40000, -5}, {300, 32700}}));
  const auto extremes = VornFontTesterStructure_hhea::GetHorizontalExtremeGlyphMetrics(*MemoryFont(font.Build()));
  EXPECT_EQ(extremes.advanceMax, 300) << "40000 is negative";
  EXPECT_EQ(extremes.sideBearingMin, -5);
  EXPECT_EQ(extremes.otherSideBearingMin, -32500) << "300 - 32700 - 100, above 40000 + 5 - 60000 = -19995";
  EXPECT_EQ(extremes.extentMax, -5541) << "of 60000 - 5 and 32700 + 100";
}

TEST(HheaStructure, TheCaretSlopeIsSoundAndFitsTheItalicAngle) {
  const auto caret = [](int rise, int run) { return Changes{{"caretSlopeRise", rise}, {"caretSlopeRun", run}}; };
  const std::string vertical = ") is non-vertical; the 'post' table indicates it should be vertical";
  const std::vector<Message> horizontal = {
      Minor("caretSlopeRise (0) and caretSlopeRun (1) will cause a horizontal caret")};
  const Message backward = Minor("caretSlopeRise (5) and caretSlopeRun (-1) will cause a backward-slanted caret");
  ExpectAll(GoodFont(), {{caret(0, 0), {Major("both caretSlopeRise and caretSlopeRun are zero")}},
                         {caret(0, 1), {horizontal[0], Minor("The caret slope (0/1" + vertical)}},
                         {caret(5, -1), {backward, Minor("The caret slope (5/-1" + vertical)}}});
  const Bytes slanted = PostTable().Patch("italicAngle", 0xFFF40000);
  for (const FontBuilder& font : {GoodFont().Table("post", slanted), GoodFont().Remove("post")}) {
    ExpectAll(font, {{caret(1, 0), {}},
                     {caret(0, 1), horizontal},
                     {caret(0, -1), {}},
                     {caret(7, 7), {Minor("caretSlopeRun (7) will cause a 45-degree caret")}},
                     {caret(5, -1), {backward}}});
  }
}

TEST(HheaStructure, TheCaretSlopeFitsTheSlantDescriptor) {
  const struct {
    uint32_t angle;  // 16.16 degrees
    std::vector<Message> expected;
  } cases[] = {
      {0, {}},
      {uint32_t{31} << 16, {Minor("caretSlopeRun is 0 and should be 1")}},
      {uint32_t{61} << 16, {Minor("caretSlopeRise is 1 and should be 0"), Minor("caretSlopeRun is 0 and should be 1")}},
      {uint32_t{0} - (31 << 16), {Minor("caretSlopeRun is 0 and should be -1")}},
      {uint32_t{180} << 16, {Minor("caretSlopeRise is 1 and should be -1")}},
      {uint32_t{32700} << 16,  // and 90 wrap to -32746 degrees, which is 14
       {Minor("caretSlopeRise is 1 and should be 0"), Minor("caretSlopeRun is 0 and should be -1")}}};
  for (const auto& [angle, expected] : cases) {
    SCOPED_TRACE(angle);
    const Bytes fdsc = TableBuilder().U32(0x00010000).U32(1).Text("slnt").U32(angle);
    Expect(TestStructure_hhea, GoodFont().Table("fdsc", fdsc), expected);
  }
}

TEST(HheaStructure, OtherTablesDecideHowFarTheTestGoes) {
  const Findings none = test::Run(TestStructure_hhea, GoodFont().Truncate("hhea", 0));
  EXPECT_FALSE(none.applies);
  ExpectMessages(none, {});
  const FontBuilder broken = GoodFont().Table("hhea", Bytes(36));
  Expect(TestStructure_hhea, FontBuilder(broken).Remove("head"), {Fatal("'head' table is needed for 'hhea' test.")});
  Expect(TestStructure_hhea, FontBuilder(broken).Remove("head").Remove("loca"), {});
  FontBuilder bitmaps = FontBuilder(broken).Remove("glyf").Table("EBLC", {1}).Table("EBDT", {1});
  Expect(TestStructure_hhea, bitmaps,
         {Information("table is redundant for sbit-only fonts and has not been checked.")});
}

}  // namespace
