#include <gmock/gmock.h>
#include <sys/resource.h>

#include "Tests/VornFontTesterStructure_cmap.h"
#include "support/CmapBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

/// What the test finds in a font of so many glyphs with this table.
Findings RunOn(const Bytes& table, uint16_t glyphs = 10, bool messages = true) {
  return test::Run(TestStructure_cmap, GoodFont().Table("cmap", table).Table("maxp", MaxpTable(glyphs)),
                   {.messages = messages});
}

struct Case {
  const char* what;
  TableBuilder subtable;
  std::vector<Message> expected;  ///< texts without their beginning, "cmap: Encoding 0 (format N), "
  uint16_t platform = 3;
  uint16_t script = 1;
};

void Check(const std::string& format, const std::vector<Case>& cases) {
  for (Case each : cases) {
    SCOPED_TRACE(each.what);
    for (Message& message : each.expected) message.text = "cmap: Encoding 0 (format " + format + "), " + message.text;
    ExpectMessages(RunOn(CmapTable({{each.platform, each.script, each.subtable}})), each.expected);
  }
}

const Message kFinalMissing = {"MinorError", "missing final 0xFFFFU"};

TEST(StructureCmap, HeaderAndRecordsAreJudged) {
  const TableBuilder good = CmapFormat6(0x20, {1});
  const auto table = [&](size_t records) { return CmapTable(std::vector<CmapRecord>(records, {3, 1, good})); };
  ExpectMessages(RunOn(table(2)), {});
  ExpectMessages(RunOn(table(1).Patch("version", 7)), {{"TechnicalError", "cmap: Bad cmap version - 0x00000007"}});
  ExpectMessages(RunOn(table(0)), {{"FatalError", "cmap: No subtables"}});
  ExpectMessages(RunOn(table(1024)), {});
  ExpectMessages(RunOn(table(1025)), {{"MajorError", "cmap: Questionable number of cmap subtables, 1025"}});
  ExpectMessages(
      RunOn(table(1).Patch("numTables", 3).Truncate(12)),
      {{"FatalError", "cmap: The encoding data requires more room (28 bytes) than there is in the table (12 bytes)"},
       {"FatalError", "cmap: Encoding 0 (format 0), bad length: 0"}});
  ExpectMessages(
      RunOn(table(1).Patch("subtableOffset0", 100)),
      {{"FatalError", "cmap: Subtable 0 offset (0x00000064) is beyond the end of the table (0x00000018)"},
       {"FatalError", "cmap: Subtable 0 ending offset (0x00000064) is beyond the end of the table (0x00000018)"},
       {"FatalError", "cmap: Encoding 0 (format 0), bad length: 0"}});
  ExpectMessages(
      RunOn(CmapTable({{3, 11, good}, {0, 3, CmapFormat6(0x20, {1}).Patch("length", 13)}})),
      {{"MajorError", "cmap: Entry 0 has a bad script code (11) for the Microsoft platform"},
       {"FatalError", "cmap: Subtable 1 ending offset (0x0000002D) is beyond the end of the table (0x0000002C)"}});
  ExpectMessages(RunOn(CmapTable({{3, 1, CmapFormat6(0x20, {99}).Patch("format", 7)}})), {});

  const Findings none = test::Run(TestStructure_cmap, GoodFont().Remove("cmap"));
  EXPECT_FALSE(none.applies);
  ExpectMessages(none, {{"FatalError", "cmap: The font has no 'cmap' table, required by the TrueType spec."}});
}

TEST(StructureCmap, Format0) {
  const TableBuilder good = CmapFormat0({{1, 9}});
  Check("0", {{"right", good, {}, 1, 0},
              {"length", TableBuilder(good).Patch("length", 261), {{"FatalError", "bad length: 261"}}, 1, 0},
              {"glyph",
               TableBuilder(good).Patch("glyph7", 10),
               {{"FatalError", "glyph index (10) out of range (0-10)"}},
               1,
               0}});
}

TEST(StructureCmap, Format2) {
  const TableBuilder good = CmapFormat2({{0x81, 1}}, {{0, std::vector<uint16_t>(256, 1)}, {0x40, {5, 9}}});
  // Subheader 2 is used, 1 is not and inherits the range of subheader 0: one glyph within bounds, one beyond.
  const TableBuilder unused = CmapFormat2({{0x81, 2}}, {{0x20, {3, 9}, 1}, {0x40, {5}}, {0x40, {5}}});
  Check("2", {{"right", good, {}},
              {"keys",
               TableBuilder(good).Patch("subHeaderKey9", 2041).Patch("subHeaderKey10", 12),
               {{"MajorError", "subheader key 9 has the suspicious value 2041"},
                {"FatalError", "subheader key 10, value, 0x0C, not a multiple of 8"}}},
              {"counts",
               TableBuilder(good).Patch("entryCount1", 0).Patch("entryCount0", 257),
               {{"MinorError", "subheader 0 suspicious entry count 257"},
                {"MinorError", "subheader 1 suspicious entry count 0"}}},
              {"offset too small",
               TableBuilder(good).Patch("idRangeOffset1", 1),
               {{"FatalError", "subheader 1 idRangeOffset 0x0001 is too small"}}},
              {"offset too big",
               TableBuilder(good).Patch("idRangeOffset1", 516),
               {{"FatalError", "subheader 1 idRangeOffset 0x0204 is too big"}}},
              {"length",
               TableBuilder(good).Patch("length", 534),
               {{"FatalError", "length incorrect start == 534, end == 534"},
                {"FatalError", "subheader 0 idRangeOffset 0x000A is too big"},
                {"FatalError", "subheader 1 idRangeOffset 0x0202 is too big"}}},
              {"unused",
               unused,
               {{"MinorError", "subheader 1 never referenced"},
                {"FatalError", "subheader 1 produces out of range glyph index 2305"}}}});
}

TEST(StructureCmap, Format4) {
  const TableBuilder one = CmapFormat4({});
  const TableBuilder array = CmapFormat4({{0x41, 0x42, 0, {3, 9}}});
  const auto overlapping = CmapFormat4({{0x20, 0x30, -0x1F - 9}, {0x30, 0x2F}, {0x2F, 0x2F, -0x20}});
  Check("4",
        {
            {"one segment", one, {}},
            {"right", array, {}},
            {"search",
             CmapFormat4({{0x41, 0x41, -0x40}, {0x43, 0x43, -0x40}})
                 .Patch("searchRange", 6)
                 .Patch("entrySelector", 2)
                 .Patch("rangeShift", 0),
             {{"MajorError", "search range is 6; should be 4"},
              {"MajorError", "entry selector is 2; should be 1"},
              {"MajorError", "range shift is 0; should be 2"}}},
            {"no segment",
             TableBuilder(one).Patch("segCountX2", 0),
             {{"MajorError", "search range is 2; should be 0"}, kFinalMissing}},
            {"length",
             TableBuilder(one).Patch("length", 23),
             {{"FatalError", "length incorrect start == 24, end == 23"}}},
            {"end",
             TableBuilder(one).Patch("endCode0", 0xFFFE).Patch("startCode0", 0xFFFE).Patch("idDelta0", 3),
             {kFinalMissing}},
            {"last delta",
             TableBuilder(one).Patch("idDelta0", 0),
             {{"MinorError", "final segment has <0xFFFFU,0xFFFFU> range but idDelta != 1"}}},
            {"order",
             overlapping,
             {{"FatalError",
               "segment 0 from 0x0020 to 0x0030 produces glyph indices from 65528 to 8, exceeding the limit of 10"},
              {"FatalError", "segment startCode[1] 0x0030 is greater than endCode 0x002F"},
              {"FatalError",
               "segment 1 from 0x0030 to 0x002F produces glyph indices from 48 to 47, exceeding the limit of 10"},
              {"FatalError", "segment 2 from 0x002F to 0x002F overlaps pervious segment"},
              {"FatalError",
               "segment 2 from 0x002F to 0x002F produces glyph indices from 15 to 15, exceeding the limit of 10"}}},
            {"array glyphs",
             CmapFormat4({{0x41, 0x43, 1, {8, 9, 0}}, {0x50, 0x50, -9, {9}}}),
             {{"FatalError", "segment maps char 0x0042 to out of range glyph index 2305"}}},
            {"array places",
             CmapFormat4({{0x41, 0x42, 0, {3, 9}}, {0x50, 0x51, 0, {3, 9}}})
                 .Patch("idRangeOffset0", 2)
                 .Patch("idRangeOffset1", 12),
             {{"MinorError", "idRangeOffset[ 0 ] == 0x00000002 is too small; it should be 0x00000006"},
              {"FatalError", "idRangeOffset[ 1 ] == 0x0000000C is too large by 4 bytes"}}},
            {"last array",
             TableBuilder(one).Patch("idRangeOffset0", 0xFFFF),
             {{"MinorError", "idRangeOffset[ 0 ] == 0x0000FFFF an unexpeced value for the last segment"}}},
            {"wide codes",
             CmapFormat4({{0x41, 0x100, -0x40}, {0x101, 0x102, -0x100}}),
             {{"FatalError", "segment endCode[0] == 0x0100 is out of range"},
              {"FatalError",
               "segment 0 from 0x0041 to 0x0100 produces glyph indices from 1 to 192, exceeding the limit of 10"},
              {"FatalError", "segment startCode[1] == 0x0101 is out of range"}},
             1,
             0},
            {"last of single bytes",
             CmapFormat4({{0x41, 0x41, -0x40}}).Patch("startCode1", 0x41).Patch("idDelta1", -0x40),
             {{"FatalError", "segment 1 from 0x0041 to 0xFFFF overlaps pervious segment"}},
             1,
             0},
        });
}

TEST(StructureCmap, Format6) {
  const TableBuilder good = CmapFormat6(0x20, {1, 9});
  const TableBuilder wide = CmapFormat6(256, std::vector<uint16_t>(257, 1));
  const std::vector<Message> wideFindings = {{"FatalError", "bad first code (0x100)"},
                                             {"TechnicalError", "bad entry count (257) "}};
  Check("6", {{"right", good, {}},
              {"no length", TableBuilder(good).Patch("length", 0), {{"FatalError", "negative length: 0"}}},
              {"empty", CmapFormat6(0x20, {}), {{"MajorError", "entryCount is 0"}}},
              {"glyph 0",
               CmapFormat6(0x20, {0, 10, 0}),
               {{"TechnicalError", "subtable begins with glyph 0 (wasted space)"},
                {"TechnicalError", "subtable ends with glyph 0 (wasted space)"},
                {"FatalError", "glyph index 1, glyph ID (2560) out of range (0-10)"}}},
              {"wide codes", wide, {}},
              {"Japanese", TableBuilder(wide).Patch("language", 11), {}, 1, 1},
              {"Chinese", TableBuilder(wide).Patch("language", 33), {}, 1, 25},
              {"custom", wide, wideFindings, 1, 0}});
  const Findings custom = RunOn(CmapTable({{4, 0, wide}}));
  ExpectMessage(custom, {"FatalError", "cmap: Encoding 0 (format 6), bad first code (0x100)"});
}

TEST(StructureCmap, Formats8To13) {
  const std::vector<CmapGroup> bad = {{5, 4, 1}, {0x41, 0x43, 7}, {0x44, 0x46, 8}};
  const std::vector<Message> findings = {{"MinorError", "group 0, invalid character range (0x0005-0x0004)"},
                                         {"MinorError", "group 2, invalid glyph range (8-10)"}};
  const Message tooBig = {"FatalError", "calculated size (8248) is greater than the size stated in the header (8244)"};
  Check("8.0", {{"4 bytes too many", CmapGroups(8, bad), {tooBig, findings[0], findings[1]}},
                {"length", CmapGroups(8, bad).Patch("length", 8248).Zeros(4), findings},
                {"shorter",
                 CmapGroups(8, {}).Patch("length", 8213).Zeros(5),
                 {{"MinorError", "calculated size (8212) is less than the size stated in the header (8213)"}}}});
  Check("12.0",
        {{"groups", CmapGroups(12, bad), findings},
         {"exact sum", CmapGroups(12, {{0, 1, 0xFFFFFFFF}}), {{"MinorError", "group 0, invalid glyph range (-1-0)"}}},
         {"count",
          CmapGroups(12, {}).Patch("nGroups", 0xFFFFFFFF),
          {{"FatalError", "calculated size (4) is greater than the size stated in the header (16)"}}},
         {"longer",
          CmapGroups(12, {}).Patch("length", 18).Zeros(2),
          {{"MinorError", "calculated size (16) is less than the size stated in the header (18)"}}}});
  Check("13.0", {{"groups",
                  CmapGroups(13, {{5, 4, 1}, {0x41, 0x43, 9}, {0x44, 0x46, 10}}),
                  {findings[0], {"MinorError", "group 2, invalid glyph index (10)"}}},
                 {"longer",
                  CmapGroups(13, {}).Patch("length", 18).Zeros(2),
                  {{"MinorError", "calculated size (16) is less than the size stated in the header (18)"}}}});
  Check("10.0", {{"6 bytes too few",
                  CmapFormat10(0x41, {9, 10}),
                  {{"MinorError", "calculated size (18) is less than the size stated in the header (24)"},
                   {"FatalError", "character 0x41000001 is mapped to illegal glyph 10 (maximum glyph ID is 10)"}}},
                 {"count",
                  CmapFormat10(0x41, {9}).Patch("length", 18).Patch("numChars", 3),
                  {{"FatalError", "calculated size (20) is greater than the size stated in the header (18)"}}}});
}

TEST(StructureCmap, Format14) {
  const auto table = [](const TableBuilder& subtable) {
    return CmapTable(
        {{0, 3, CmapGroups(12, {{0x41, 0x42, 8}, {0x43, 0x43, 0xFFFF}, {0x44, 0x44, 10}})}, {0, 5, subtable}});
  };
  const Message badGlyph = {"MinorError", "cmap: Encoding 0 (format 12.0), group 1, invalid glyph range (65535-65535)"};
  const Message noGlyph = {"MinorError", "cmap: Encoding 0 (format 12.0), group 2, invalid glyph range (10-10)"};
  const std::string in = "cmap: Encoding 1 (format 14), ";
  const TableBuilder good = CmapFormat14({{0xFE00, {{0x41, 1}}, {{0x41, 9}}}, {0xE0100, {}, {{0x42, 1}}}});
  ExpectMessages(RunOn(table(good)), {badGlyph, noGlyph});
  ExpectMessages(
      RunOn(table(CmapFormat14({{0xFE00}, {0xFE01, {{0x41, 0}, {0x42, 3}}, {{0x50, 0}, {0x51, 0xFFFF}, {0x52, 10}}}}))),
      {badGlyph,
       noGlyph,
       {"TechnicalError",
        in + "table 1, default range 1, variation selector U+FE01, character U+0043 mapped to invalid glyph (-1)."},
       {"MajorError", in + "table 1, default range 1, variation selector U+FE01, character U+0044 mapped to "
                           "nonexistent glyph (10), glyph count == 10."},
       {"TechnicalError",
        in + "table 1, default range 1, variation selector U+FE01, character U+0045 mapped to glyph 0."},
       {"MajorError",
        in + "table 1, nondefault mapping 0, variation selector U+FE01, character U+0050 mapped to glyph 0."},
       {"MajorError",
        in +
            "table 1, nondefault mapping 1, variation selector U+FE01, character U+0051 mapped to invalid glyph (-1)."},
       {"MajorError", in + "table 1, nondefault mapping 1, variation selector U+FE01, character U+0051 mapped to "
                           "nonexistent glyph (65535), glyph count == 10."},
       {"MajorError", in + "table 1, nondefault mapping 2, variation selector U+FE01, character U+0052 mapped to "
                           "nonexistent glyph (10), glyph count == 10."}});
  ExpectMessage(RunOn(table(TableBuilder(good).Patch("length", 60).Zeros(9))),
                {"MinorError", in + "calculated size (58) is less than the size stated in the header (60)"});
  ExpectMessage(RunOn(table(TableBuilder(good).Patch("mappings1", 2))),
                {"FatalError", in + "calculated size (63) is greater than the size stated in the header (58)"});
  ExpectMessages(RunOn(CmapTable({{3, 0, good}})),
                 {{"FatalError",
                   "cmap: There is no encoding in the 'cmap' which can be used as the basis for a Unicode encoding"}});
}

/// Tables that claim more than time and memory allow: the result is there, the messages are limited, and a table beyond
/// all bounds is refused.
TEST(StructureCmap, HostileTablesStayInBounds) {
  rusage before = {}, after = {};
  getrusage(RUSAGE_SELF, &before);
  const TableBuilder groups = CmapGroups(12, std::vector<CmapGroup>(87000, {0, 0xFFFFFFFF, 0}));
  const Findings many = RunOn(CmapTable({{3, 10, groups}, {1, 0, CmapFormat0({{1, 200}})}}));
  EXPECT_EQ(many.messages.size(), 65536u);
  EXPECT_THAT(many.severities, testing::ElementsAre("MinorError", "FatalError")) << "the last finding gave no message";

  TableBuilder shared = CmapTable(std::vector<CmapRecord>(60000, {3, 1, {}}));
  for (int i = 0; i < 60000; ++i) shared.Patch("subtableOffset" + std::to_string(i), shared.Size());
  TableBuilder selectors;
  for (uint32_t i = 0; i < 40000; ++i) selectors.U24(0xFE00).U32(10).U32(10);
  const TableBuilder variations = TableBuilder().U16(14).U32(0).U32(40000).Append(selectors);
  const TableBuilder basis = CmapFormat6(0x20, {1});
  const std::vector<Bytes> tables = {
      TableBuilder(shared).Append(CmapFormat6(0, std::vector<uint16_t>(60000, 1))),
      TableBuilder(shared).Append(CmapGroups(12, std::vector<CmapGroup>(40000, {1, 2, 3}))),
      CmapTable({{3, 1, basis}, {0, 5, variations}})};
  for (const Bytes& table : tables) {
    EXPECT_THAT(RunOn(table, 10, false).severities, testing::Contains("FatalError"));
  }
  getrusage(RUSAGE_SELF, &after);
  EXPECT_LT((after.ru_maxrss - before.ru_maxrss) / 1024, 160) << "megabytes";
}

}  // namespace
