#include <gmock/gmock.h>

#include "Tests/VornFontTesterStructure_glyf.h"
#include "Tests/VornFontTesterStructure_loca.h"
#include "support/GlyphBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

const auto [Information, Technical, Minor, Major, Fatal] = MessagesOf("glyf: ");

const Message kEmptyGlyph1 = Information("Glyph 1 has no visual appearance");

TEST(GlyfStructure, ChecksThatOtherTablesAllowItToRun) {
  const FontBuilder good = OutlineFont({SquareGlyph(9), Bytes(), SquareGlyph(9)});
  Expect(TestStructure_glyf, good, {kEmptyGlyph1});
  EXPECT_FALSE(test::Run(TestStructure_glyf, FontBuilder(good).Remove("glyf")).applies);
  for (const std::string tag : {"maxp", "head", "loca"}) {
    Expect(TestStructure_glyf, FontBuilder(good).Remove(tag),
           {{kFatal, "glyf: Required table ('" + tag + "') is missing!"}});
  }
  FontBuilder odd = good;
  odd["glyf"].push_back(0);
  Expect(TestStructure_glyf, odd,
         {{kTechnical, "glyf: Table has an odd number of bytes (" + std::to_string(odd["glyf"].size()) + ")"},
          kEmptyGlyph1});
}

TEST(GlyfStructure, TheFirstTwoGlyphsAndTheContourCountAreJudged) {
  const FontBuilder font = OutlineFont({Bytes(), SquareGlyph(9)}).Table("maxp", MaxpTable(2).Patch("maxContours", 2));
  const Message contours = Minor("Maximum contour count is 2 in the 'maxp' table but 1 here");
  Expect(TestStructure_glyf, font,
         {Minor("Glyph 0 has no visual appearance but should"), Information("Glyph 0 has no visual appearance"),
          Minor("Glyph 1 should have no visual appearance but does"), contours});
  // Simple glyphs are skipped, contours and all, when nobody asks for minor errors.
  const FontBuilder damaged = OutlineFont({SquareGlyph(9).Patch("xMin", 5), Bytes()});
  ExpectMessages(test::Run(TestStructure_glyf, damaged, {.severities = {"FatalError"}}),
                 {kEmptyGlyph1, Minor("Maximum contour count is 1 in the 'maxp' table but 0 here")});
}

TEST(GlyfStructure, BoxesAreComparedWithPointsAndWithTheFontsBox) {
  const TableBuilder glyph = SimpleGlyph({{{-5, -6}, {-5, 900}, {800, 900}}});
  const std::vector<Message> expected = {
      kEmptyGlyph1, Minor("Glyph 2: x-minimum (-5) is less than the global x-minimum in the 'head' table (0)"),
      Minor("Glyph 2: y-minimum (-6) is less than the global y-minimum in the 'head' table (0)"),
      Minor("Glyph 2: x-maximum (800) is greater than the global x-maximum in the 'head' table (500)"),
      Minor("Glyph 2: y-maximum (900) is greater than the global y-maximum in the 'head' table (700)")};
  Expect(TestStructure_glyf, OutlineFont({SquareGlyph(9), Bytes(), glyph}), expected);
  for (const char* side : {"xMin", "yMin", "xMax", "yMax"}) {
    const Findings findings = test::Run(
        TestStructure_glyf, OutlineFont({SquareGlyph(9), Bytes(), TableBuilder(SquareGlyph(9)).Patch(side, 4)}));
    ASSERT_EQ(findings.messages.size(), 2u) << side;
    EXPECT_TRUE(findings.messages[1].text.starts_with(
        "glyf: Glyph 2: bad bounding box computed; computed value is ( 0, 9, 0, 9 ) and computed value is ( "));
  }
}

TEST(GlyfStructure, ContoursThatCloseOnThemselvesEndOnTheCurveTheyStartOn) {
  const Contour open = {{0, 0}, {9, 0}, {9, 9}};
  const struct {
    std::vector<Contour> contours;
    std::vector<int> reported;
  } cases[] = {
      {{{{0, 0}, {9, 9}, {0, 0, false}}}, {0}},
      {{{{0, 0, false}, {9, 9}, {0, 0}}}, {0}},
      {{{{0, 0}, {9, 9}, {0, 0}}}, {}},
      // In later contours the end before and the last point but one are compared, with the flags of the true ends.
      {{open, {{1, 1}, {9, 9}, {5, 5, false}}}, {1}},
      {{open, {{1, 1}, {8, 8}, {1, 1, false}}}, {}}};
  for (const auto& [contours, reported] : cases) {
    const auto maxp = MaxpTable(3).Patch("maxContours", contours.size());
    FontBuilder font = OutlineFont({SquareGlyph(9), Bytes(), SimpleGlyph(contours)}).Table("maxp", maxp);
    std::vector<Message> expected = {kEmptyGlyph1};
    for (const int contour : reported) {
      expected.push_back(
          {kMinor,
           "glyf: Glyph 2, contour " + std::to_string(contour) +
               " starts and stops at the same point, but the start point is on the curve and the stop point is not"});
    }
    Expect(TestStructure_glyf, font, expected);
  }
}

TEST(GlyfStructure, ComponentFlagsComeBeforeComponentGlyphs) {
  const auto run = [](const std::vector<Component>& components) {
    return test::Run(TestStructure_glyf, OutlineFont({SquareGlyph(9), Bytes(), CompoundGlyph(components)}));
  };
  ExpectMessages(run({{0x0810, 0}, {0x0088, 0}, {0x0009, 0}, {0x0040, 0}, {0x0080, 0}}),
                 {kEmptyGlyph1, Technical("Glyph 2, component 0: Undefined component flags set (0x00000810)"),
                  Major("Glyph 2, component 1: Multiple component scaling flags set")});
  // A glyph that does not exist fails the decoding before it comes to be judged.
  EXPECT_THAT(run({{0, 3}}).severities, testing::ElementsAre("Information", "FatalError"));
}

TEST(LocaStructure, SizeFitsTheGlyphCount) {
  const struct {
    bool isLong;
    size_t size;
    std::vector<Message> expected;
  } cases[] = {{false, 6, {}},
               {false, 7, {{kMinor, "loca: The length of the table is 8 bytes; it should be a multiple of four."}}},
               {false, 4, {{kFatal, "loca: The length of the table is 4 bytes; it should be 8."}}},
               {false, 10, {{kMinor, "loca: The length of the table is 10 bytes; it should be 8."}}},
               {true, 12, {{kFatal, "loca: The length of the table is 12 bytes; it should be 16."}}},
               {true,
                17,
                {{kMinor, "loca: The length of the table is 16 bytes; it should be a multiple of four."},
                 {kMinor, "loca: The length of the table is 17 bytes; it should be 16."}}}};
  for (const auto& [isLong, size, expected] : cases) {
    FontBuilder font = OutlineFont({SquareGlyph(9), SquareGlyph(9), SquareGlyph(9)});
    font.Table("head", HeadTable().Patch("indexToLocFormat", isLong ? 1 : 0)).Table("loca", Bytes(size));
    SCOPED_TRACE(size);
    Expect(TestUsability_loca, font, expected);
  }
  EXPECT_FALSE(test::Run(TestUsability_loca, OutlineFont({SquareGlyph(9)}).Truncate("loca", 0)).applies);
}

TEST(LocaStructure, OffsetsAscendInsideTheGlyphTable) {
  for (const auto& entry :
       {TestUsability_loca, TestStructure_glyf}) {  // an empty last glyph starts where the table ends
    const Findings findings = test::Run(entry, OutlineFont({SquareGlyph(9), Bytes(), SquareGlyph(9), Bytes()}));
    EXPECT_THAT(findings.severities, testing::Each("Information"));
  }
  FontBuilder font = OutlineFont({SquareGlyph(9), SquareGlyph(9), SquareGlyph(9)});
  font.Table("glyf", Bytes(15)).Table("loca", TableBuilder().U32(0).U32(20).U32(10).U32(0));
  Expect(TestUsability_loca, font,
         {{kFatal,
           "loca: Entries 1 and 2 are out of order; their 'glyf' table offsets are 0x00000014 and "
           "0x0000000A, respectively."},
          {kFatal,
           "loca: Entry 1 has a 'glyf' table offset of 20, which is greater than the length of the 'glyf' "
           "table (15 bytes)."}});
}

}  // namespace
