#include "Tests/VornFontTesterStructure_maxp.h"
#include "support/GlyphBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

const auto [Information, Technical, Minor, Major, Fatal] = MessagesOf("maxp: ");

/// A simple glyph of 4 points and 3 instruction bytes, one of 5 points in 2 contours, a compound of both, and one of
/// that and the first.
FontBuilder NestedFont() {
  const Bytes twoContours = SimpleGlyph({{{0, 0}, {5, 0}}, {{0, 0}, {5, 0}, {5, 5}}});
  return OutlineFont({SquareGlyph(100, {1, 2, 3}), twoContours, CompoundGlyph({{0, 0}, {0, 1}, {0, 1}}),
                      CompoundGlyph({{1, 2}, {0, 0}})});
}

/// The table that is right for the first glyphs of that font.
TableBuilder NestedMaxp(uint16_t glyphs, bool deep) {
  TableBuilder maxp = MaxpTable(glyphs);
  maxp.Patch("maxPoints", 5).Patch("maxContours", 3).Patch("maxSizeOfInstructions", 3);
  maxp.Patch("maxCompositePoints", deep ? 18 : 14).Patch("maxCompositeContours", deep ? 6 : 5);
  return maxp.Patch("maxComponentElements", 3).Patch("maxComponentDepth", deep ? 2 : 1);
}

const Message kDeep = Minor(
    "The table's maximum component depth is 2; fonts with maximum component depth greater than 1 may not work "
    "properly on Corvane");

TEST(MaxpStructure, PostScriptOutlinesHaveTheShortForm) {
  const auto expect = [](const Bytes& maxp, const std::vector<Message>& expected) {
    for (const char* tag : {"CFF ", "CFF2"}) {
      Expect(TestStructure_maxp, GoodFont().Table(tag, {1}).Table("maxp", maxp), expected);
    }
  };
  const std::string version = "The table's version is 0x00010000; it should be 0x00010000";
  TableBuilder table = MaxpTable(3).Patch("version", 0x00005000);
  expect(table, {Technical("The table is 32 bytes in size; it should be 6")});
  expect(table.Truncate(6), {});
  expect(table.Truncate(5), {Fatal("The table is 5 bytes in size; it should be 6")});
  expect(MaxpTable(3).Truncate(6), {Minor(version)});
}

TEST(MaxpStructure, OtherOutlinesHaveTheLongForm) {
  FontBuilder bare = GoodFont().Remove("glyf");
  Expect(TestStructure_maxp, bare, {});
  Expect(TestStructure_maxp, bare.Truncate("maxp", 33), {Technical("The table is 33 bytes in size; it should be 32")});
  Expect(TestStructure_maxp, bare.Truncate("maxp", 31), {Fatal("The table is 31 bytes in size; it should be 32")});
  const Bytes shortForm = MaxpTable(4).Patch("version", 0x00005000).Truncate(6);
  Expect(TestStructure_maxp, NestedFont().Table("maxp", shortForm),
         {Fatal("The table is 6 bytes in size; it should be 32"),
          Minor("The table's version is 0x00005000; it should be 0x00010000"),
          Minor("The table's maximum point count is 0; it should be 5"),
          Minor("The table's maximum contour count is 0; it should be 3"),
          Minor("The table's maximum component point count is 0; it should be 18"),
          Minor("The table's maximum component contour count is 0; it should be 6"),
          Minor("The maxZones field is equal to 0; it should be equal to 2"),
          Minor("The table's maxSizeOfInstructions field is 0; it should be 3"),
          Minor("The table's maximum subcomponent count is 0; it should be 3"),
          Minor("The table's maximum component depth is 0; it should be 2")});
}

TEST(MaxpStructure, MaximaAreThoseOfAsManyGlyphsAsTheTableStates) {
  const auto run = [](const Bytes& maxp) { return test::Run(TestStructure_maxp, NestedFont().Table("maxp", maxp)); };
  ExpectMessages(run(NestedMaxp(3, false)), {});
  ExpectMessages(run(NestedMaxp(4, true)), {kDeep});
  ExpectMessages(run(NestedMaxp(3, false).Patch("maxComponentDepth", 2)),
                 {Minor("The table's maximum component depth is 2; it should be 1"), kDeep});
  EXPECT_FALSE(test::Run(TestStructure_maxp, NestedFont().Truncate("maxp", 0)).applies);
}

}  // namespace
