#include "Tests/VornFontTesterStructure_kern.h"
#include "support/TestRun.h"

namespace {

using namespace test;

/// Expects the messages, without their beginning, in a font of 10 glyphs and 1000 units per em.
void ExpectOf(const Bytes& kern, std::vector<Message> expected) {
  for (Message& message : expected) message.text.insert(0, "kern: ");
  Expect(TestStructure_kern, FontBuilder().Table("head", HeadTable()).Table("maxp", MaxpTable(10)).Table("kern", kern),
         expected);
}
/// The same for messages about the one subtable.
void ExpectOfSubtable(const Bytes& kern, std::vector<Message> expected) {
  for (Message& message : expected) message.text.insert(0, "Subtable 0: ");
  ExpectOf(kern, expected);
}

struct Pair {
  uint16_t left, right;
  int16_t value;
};
/// Version 0 with a subtable of three pairs, and what these would have for searching.
TableBuilder Pairs(const std::vector<Pair>& pairs = {{1, 2, -20}, {1, 3, 30}, {4, 2, 5}}) {
  TableBuilder kern;
  kern.U16(0, "version").U16(1, "count").U16(0, "subtableVersion").U16(14 + 6 * pairs.size(), "length");
  kern.U16(1, "coverage").U16(pairs.size(), "pairs").U16(12, "range").U16(1, "selector").U16(6, "shift");
  for (const Pair& pair : pairs) kern.U16(pair.left).U16(pair.right).S16(pair.value);
  return kern;
}
/// Version 1.0 with a subtable of this format.
TableBuilder Version1(uint16_t coverage, const Bytes& body) {
  TableBuilder kern;
  kern.U32(0x00010000, "version").U32(1, "count").U32(8 + body.size(), "length").U16(coverage, "coverage");
  return kern.U16(0, "tuple").Append(body);
}

TEST(KernStructure, HeadersAreJudged) {
  ExpectOf(Pairs(), {});
  ExpectOf(Bytes(3), {{kFatal, "The table is too small; it is only 3 bytes in size and should be at least 4"}});
  ExpectOf(Bytes{0, 1, 0, 0, 0},
           {{kFatal, "The table is too small; it is only 5 bytes in size and should be at least 8"}});
  ExpectOf(Pairs().Patch("version", 2), {{kMajor, "Bad version number: 0x00020001"}});
  ExpectOf(TableBuilder().U32(0), {{kMinor, "The table has no subtables"}});
  ExpectOf(Pairs().Zeros(4), {{kTechnical, "4 bytes follow the last subtable"}});
  ExpectOf(Pairs().Patch("count", 2), {{kFatal, "Subtable 1 of 2 lies beyond the end of the table"}});
  ExpectOfSubtable(Pairs().Patch("subtableVersion", 1), {{kTechnical, "The subtable's version is 1; it should be 0"}});
  ExpectOfSubtable(Pairs().Patch("coverage", 0x10), {{kTechnical, "Reserved coverage bits are set (0x0010)"},
                                                     {kInformation, "The subtable kerns vertical text"}});
  ExpectOfSubtable(Pairs().Patch("coverage", 0x0401), {{kMajor, "The subtable has the unknown format 4"}});
  ExpectOfSubtable(Version1(0x2000, Bytes(8)), {{kMinor, "The subtable is for the global coordinate 0; the font has 0"},
                                                {kInformation, "The subtable has no pairs"}});
  ExpectOfSubtable(Version1(0x0005, {}).Patch("tuple", 3),
                   {{kMajor, "The subtable has the unknown format 5"},
                    {kTechnical, "The subtable has the tuple index 3 but is not for a variation"}});
  ExpectOfSubtable(Version1(0, Bytes(8)).Patch("length", 7),
                   {{kFatal, "The length of the subtable, 7, is wrong; 16 bytes are left in the table"}});
  ExpectOfSubtable(Version1(2, Bytes(7)),
                   {{kFatal, "The header of the format needs 16 bytes; only 15 are left in the table"}});
}

TEST(KernStructure, PairsAscend) {
  ExpectOfSubtable(Pairs({{1, 3, 0}, {1, 2, 0}, {4, 2, 0}}),
                   {{kMajor, "1 pairs are out of order; the first is pair 1 (glyphs 1 and 2)"}});
  ExpectOfSubtable(
      Pairs({{1, 2, 0}, {1, 2, 0}, {4, 10, 0}}),
      {{kMinor, "1 pairs are repeated; the first is pair 1 (glyphs 1 and 2)"},
       {kMinor, "1 pairs have glyphs that the font does not have; the first is pair 2 (glyphs 4 and 10)"}});
  ExpectOfSubtable(Pairs({{1, 2, 1000}, {1, 3, -1001}, {4, 0xFFFF, INT16_MIN}}),
                   {{kMinor, "2 values are larger than the em; the first is -1001"}});
  ExpectOfSubtable(Pairs({{1, 2, 1000}, {1, 3, 1}, {4, 5, INT16_MIN}}).Patch("coverage", 5), {});
  ExpectOfSubtable(Pairs().Patch("range", 6).Patch("selector", 0).Patch("shift", 12),
                   {{kTechnical, "The search range is 6; it should be 12"},
                    {kTechnical, "The entry selector is 0; it should be 1"},
                    {kTechnical, "The range shift is 12; it should be 6"}});
}

TEST(KernStructure, TheLengthIsThatOfThePairs) {
  ExpectOfSubtable(Pairs().Patch("length", 30).Truncate(34),
                   {{kFatal, "The 3 pairs need 32 bytes; only 30 are left in the table"},
                    {kTechnical, "The length of the subtable is 30; its 3 pairs take 32 bytes"}});
  TableBuilder first = Pairs().Patch("count", 2).Patch("length", 26);
  ExpectOf(first.Append(Bytes(20)),
           {{kMajor, "Subtable 0: The length of the subtable is 26; its 3 pairs need 32 bytes"},
            {kTechnical, "Subtable 1: The subtable's version is 4; it should be 0"},
            {kTechnical, "Subtable 1: The length of the subtable is 2; its 0 pairs take 14 bytes"},
            {kInformation, "Subtable 1: The subtable has no pairs"},
            {kTechnical, "12 bytes follow the last subtable"}});
  std::vector<Pair> many;
  for (uint16_t i = 0; i < 12100; ++i) many.push_back({uint16_t(i / 8 % 10), uint16_t(i % 8), 0});
  std::ranges::sort(many, {}, [](const Pair& pair) { return std::pair(pair.left, pair.right); });
  TableBuilder cut = Pairs(many);
  const Findings findings =
      test::Run(TestStructure_kern,
                FontBuilder().Table("kern", cut.Patch("range", 49152).Patch("selector", 13).Patch("shift", 23448)));
  ASSERT_EQ(findings.messages.size(), 2u) << "one, and the repeated pairs of this test";
  ExpectMessage(findings, {kInformation,
                           "kern: Subtable 0: The length of the subtable, 7078, is that of its 12100 pairs "
                           "(72614 bytes) cut to 16 bits"});
}

TEST(KernStructure, ClassesLeadIntoTheArray) {
  // Two rows of two values; offsets count from the subtable's start.
  TableBuilder body;
  body.U16(4, "rowWidth").U16(16, "leftTable").U16(24, "rightTable").U16(32, "array");
  body.U16(1).U16(2).U16(32).U16(36, "left").U16(2).U16(2).U16(0).U16(2, "right").S16(1).S16(2).S16(-3).S16(4, "last");
  const auto changed = [&](const char* field, uint64_t value) { return Version1(2, body.With(field, value)); };
  ExpectOfSubtable(Version1(2, body), {});
  ExpectOfSubtable(changed("rowWidth", 3), {{kMajor, "The row width is 3"}});
  ExpectOfSubtable(changed("left", 34),
                   {{kMajor, "1 left values are not the start of a row; the first is 0x0022, of glyph 2"}});
  ExpectOfSubtable(changed("right", 1),
                   {{kMajor, "1 right values are not the place of a column; the first is 0x0001, of glyph 3"}});
  ExpectOfSubtable(changed("last", 0x7000), {{kMinor, "1 values are larger than the em; the first is 28672"}});
  ExpectOfSubtable(changed("left", 40), {{kFatal, "The kerning array ends beyond the end of the table"}});
  ExpectOfSubtable(Version1(2, body).Patch("length", 38),
                   {{kTechnical, "The kerning array ends beyond the end of the subtable"}});
  ExpectOfSubtable(changed("array", 48),
                   {{kFatal, "The kerning array lies beyond the end of the table"},
                    {kMajor, "2 left values are not the start of a row; the first is 0x0020, of glyph 1"}});
  ExpectOfSubtable(changed("rightTable", 46), {{kFatal, "The right class table lies beyond the end of the table"}});
}

TEST(KernStructure, IndicesHaveValues) {
  TableBuilder body;
  body.U16(10, "glyphs").U8(2, "values").U8(2).U8(1).U8(0, "flags").S16(5).S16(1500, "value");
  body.Zeros(9).U8(1, "left").Zeros(10).U8(0).U8(1, "index");
  const auto changed = [&](const char* field, uint64_t value) {
    return Version1(3, body.With("value", 6).Patch(field, value));
  };
  ExpectOfSubtable(Version1(3, body), {{kMinor, "1 values are larger than the em; the first is 1500"}});
  ExpectOfSubtable(changed("flags", 1), {{kTechnical, "The flags (0x01) are not zero"}});
  ExpectOfSubtable(changed("left", 2),
                   {{kMajor, "1 classes of glyphs are above the last one; the first is class 2 of glyph 9"}});
  ExpectOfSubtable(changed("index", 2), {{kMajor, "1 class pairs have no value; the first is 1, 0 with the index 2"}});
  ExpectOfSubtable(changed("glyphs", 11),
                   {{kFatal, "The arrays need 42 bytes; only 40 are left in the table"},
                    {kTechnical, "The subtable has classes for 11 glyphs; the font has only 10"}});
}

}  // namespace
