#include <gmock/gmock.h>

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

/// Expects these findings of a font whose only encoding is the subtable, as "FatalError: bad length: 261": the
/// severity, and the text without its beginning.
struct Expect {
  std::string format;
  uint16_t platform = 3;
  uint16_t script = 1;

  void operator()(const TableBuilder& subtable, const std::vector<std::string>& findings,
                  int line = __builtin_LINE()) const {
    SCOPED_TRACE(line);
    std::vector<Message> expected;
    for (const std::string& finding : findings) {
      const size_t colon = finding.find(": ");
      expected.push_back(
          {finding.substr(0, colon), "cmap: Encoding 0 (format " + format + "), " + finding.substr(colon + 2)});
    }
    ExpectMessages(RunOn(CmapTable({{platform, script, subtable}})), expected);
  }
};

TEST(StructureCmap, HeaderAndRecordsAreJudged) {
  const TableBuilder good = CmapFormat6(0x20, {1});
  const auto table = [&](size_t records) { return CmapTable(std::vector<CmapRecord>(records, {3, 1, good})); };
  ExpectMessages(RunOn(table(2)), {});
  ExpectMessages(RunOn(table(1).Patch("version", 7)), {{kTechnical, "cmap: Bad cmap version - 0x00000007"}});
  ExpectMessages(RunOn(table(0)), {{kFatal, "cmap: No subtables"}});
  ExpectMessages(RunOn(table(1025)), {{kMajor, "cmap: Questionable number of cmap subtables, 1025"}});
  ExpectMessages(
      RunOn(table(1).Patch("numTables", 3).Truncate(12)),
      {{kFatal, "cmap: The encoding data requires more room (28 bytes) than there is in the table (12 bytes)"},
       {kFatal, "cmap: Encoding 0 (format 0), bad length: 0"}});
  ExpectMessages(RunOn(table(1).Patch("subtableOffset0", 100)),
                 {{kFatal, "cmap: Subtable 0 offset (0x00000064) is beyond the end of the table (0x00000018)"},
                  {kFatal, "cmap: Subtable 0 ending offset (0x00000064) is beyond the end of the table (0x00000018)"},
                  {kFatal, "cmap: Encoding 0 (format 0), bad length: 0"}});
  ExpectMessages(RunOn(CmapTable({{3, 11, good}, {0, 3, CmapFormat6(0x20, {1}).Patch("length", 13)}})),
                 {{kMajor, "cmap: Entry 0 has a bad script code (11) for the Microsoft platform"},
                  {kFatal, "cmap: Subtable 1 ending offset (0x0000002D) is beyond the end of the table (0x0000002C)"}});
  const Findings none = test::Run(TestStructure_cmap, GoodFont().Remove("cmap"));
  EXPECT_FALSE(none.applies);
  ExpectMessages(none, {{kFatal, "cmap: The font has no 'cmap' table, required by the TrueType spec."}});
}

TEST(StructureCmap, Format0) {
  const Expect expect{"0", 1, 0};
  const TableBuilder good = CmapFormat0({{1, 9}});
  expect(good, {});
  expect(good.With("length", 261), {"FatalError: bad length: 261"});
  expect(good.With("glyph7", 10), {"FatalError: glyph index (10) out of range (0-10)"});
}

TEST(StructureCmap, Format2) {
  const Expect expect{"2"};
  const TableBuilder good = CmapFormat2({{0x81, 1}}, {{0, std::vector<uint16_t>(256, 1)}, {0x40, {5, 9}}});
  expect(good, {});
  expect(good.With("subHeaderKey9", 2041).Patch("subHeaderKey10", 12),
         {"MajorError: subheader key 9 has the suspicious value 2041",
          "FatalError: subheader key 10, value, 0x0C, not a multiple of 8"});
  expect(good.With("entryCount1", 0).Patch("entryCount0", 257),
         {"MinorError: subheader 0 suspicious entry count 257", "MinorError: subheader 1 suspicious entry count 0"});
  expect(good.With("idRangeOffset0", 9).Patch("idRangeOffset1", 516),
         {"FatalError: subheader 0 idRangeOffset 0x0009 is too small",
          "FatalError: subheader 1 idRangeOffset 0x0204 is too big"});
  expect(good.With("length", 534), {"FatalError: length incorrect start == 534, end == 534",
                                    "FatalError: subheader 0 idRangeOffset 0x000A is too big",
                                    "FatalError: subheader 1 idRangeOffset 0x0202 is too big"});
  // Subheader 2 is used, 1 is not and inherits the range of subheader 0: one glyph within bounds, one beyond.
  expect(
      CmapFormat2({{0x81, 2}}, {{0x20, {3, 9}, 1}, {0x40, {5}}, {0x40, {5}}}),
      {"MinorError: subheader 1 never referenced", "FatalError: subheader 1 produces out of range glyph index 2305"});
}

TEST(StructureCmap, Format4Header) {
  const Expect expect{"4"};
  const TableBuilder one = CmapFormat4({});
  expect(one, {});
  expect(CmapFormat4({{0x41, 0x41, -0x40}, {0x43, 0x43, -0x40}}).Patch("searchRange", 6).Patch("rangeShift", 0),
         {"MajorError: search range is 6; should be 4", "MajorError: range shift is 0; should be 2"});
  expect(one.With("entrySelector", 2), {"MajorError: entry selector is 2; should be 0"});
  expect(one.With("segCountX2", 0),
         {"MajorError: search range is 2; should be 0", "MinorError: missing final 0xFFFFU"});
  expect(one.With("length", 23), {"FatalError: length incorrect start == 24, end == 23"});
  expect(one.With("endCode0", 0xFFFE).Patch("startCode0", 0xFFFE).Patch("idDelta0", 3),
         {"MinorError: missing final 0xFFFFU"});
  expect(one.With("idDelta0", 0), {"MinorError: final segment has <0xFFFFU,0xFFFFU> range but idDelta != 1"});
}

TEST(StructureCmap, Format4Segments) {
  const Expect expect{"4"};
  const std::string limit = ", exceeding the limit of 10";
  expect(CmapFormat4({{0x20, 0x30, -0x28}, {0x30, 0x2F}, {0x2F, 0x2F, -0x20}}),
         {"FatalError: segment 0 from 0x0020 to 0x0030 produces glyph indices from 65528 to 8" + limit,
          "FatalError: segment startCode[1] 0x0030 is greater than endCode 0x002F",
          "FatalError: segment 1 from 0x0030 to 0x002F produces glyph indices from 48 to 47" + limit,
          "FatalError: segment 2 from 0x002F to 0x002F overlaps pervious segment",
          "FatalError: segment 2 from 0x002F to 0x002F produces glyph indices from 15 to 15" + limit});
  const TableBuilder arrays = CmapFormat4({{0x41, 0x42, 0, {3, 9}}, {0x50, 0x51, -9, {9, 18}}});
  expect(arrays, {});
  expect(arrays.With("idDelta0", 1), {"FatalError: segment maps char 0x0042 to out of range glyph index 2305"});
  expect(arrays.With("idRangeOffset0", 2).Patch("idRangeOffset1", 12),
         {"MinorError: idRangeOffset[ 0 ] == 0x00000002 is too small; it should be 0x00000006",
          "FatalError: idRangeOffset[ 1 ] == 0x0000000C is too large by 4 bytes"});
  expect(CmapFormat4({}).Patch("idRangeOffset0", 0xFFFF),
         {"MinorError: idRangeOffset[ 0 ] == 0x0000FFFF an unexpeced value for the last segment"});

  const Expect expectOfBytes{"4", 1, 0};
  expectOfBytes(CmapFormat4({{0x41, 0x100, -0x40}, {0x101, 0x102, -0x100}}),
                {"FatalError: segment endCode[0] == 0x0100 is out of range",
                 "FatalError: segment 0 from 0x0041 to 0x0100 produces glyph indices from 1 to 192" + limit,
                 "FatalError: segment startCode[1] == 0x0101 is out of range"});
  expectOfBytes(CmapFormat4({{0x41, 0x41, -0x40}}).Patch("startCode1", 0x41).Patch("idDelta1", 0xFFC0),
                {"FatalError: segment 1 from 0x0041 to 0xFFFF overlaps pervious segment"});
}

TEST(StructureCmap, Format6) {
  const Expect expect{"6"};
  const TableBuilder good = CmapFormat6(0x20, {1, 9});
  expect(good, {});
  expect(good.With("length", 0), {"FatalError: negative length: 0"});
  expect(CmapFormat6(0x20, {}), {"MajorError: entryCount is 0"});
  expect(CmapFormat6(0x20, {0, 10, 0}), {"TechnicalError: subtable begins with glyph 0 (wasted space)",
                                         "TechnicalError: subtable ends with glyph 0 (wasted space)",
                                         "FatalError: glyph index 1, glyph ID (2560) out of range (0-10)"});
  const TableBuilder wide = CmapFormat6(256, std::vector<uint16_t>(257, 1));
  expect(wide, {});
  Expect{"6", 1, 25}(wide.With("language", 33), {});
  Expect{"6", 1, 0}(wide, {"FatalError: bad first code (0x100)", "TechnicalError: bad entry count (257) "});
  ExpectMessage(RunOn(CmapTable({{4, 0, wide}})), {kFatal, "cmap: Encoding 0 (format 6), bad first code (0x100)"});
}

std::string Size(int calculated, const char* comparison, int stated) {
  return "calculated size (" + std::to_string(calculated) + ") is " + comparison +
         " than the size stated in the header (" + std::to_string(stated) + ")";
}

TEST(StructureCmap, Formats8To13) {
  const std::vector<CmapGroup> bad = {{5, 4, 1}, {0x41, 0x43, 7}, {0x44, 0x46, 8}};
  const std::string characters = "MinorError: group 0, invalid character range (0x0005-0x0004)";
  const std::string glyphs = "MinorError: group 2, invalid glyph range (8-10)";
  const Expect expect8{"8.0"}, expect10{"10.0"}, expect12{"12.0"}, expect13{"13.0"};
  expect8(CmapGroups(8, bad), {"FatalError: " + Size(8248, "greater", 8244), characters, glyphs});
  expect8(CmapGroups(8, bad).Patch("length", 8248).Zeros(4), {characters, glyphs});
  expect12(CmapGroups(12, bad), {characters, glyphs});
  expect12(CmapGroups(12, {{0, 1, 0xFFFFFFFF}}), {"MinorError: group 0, invalid glyph range (-1-0)"});
  expect12(CmapGroups(12, {}).Patch("nGroups", 0xFFFFFFFF), {"FatalError: " + Size(4, "greater", 16)});
  expect13(CmapGroups(13, {{5, 4, 1}, {0x41, 0x43, 9}, {0x44, 0x46, 10}}),
           {characters, "MinorError: group 2, invalid glyph index (10)"});
  for (const Expect& expect : {expect12, expect13}) {
    expect(CmapGroups(expect.format == "12.0" ? 12 : 13, {}).Patch("length", 18).Zeros(2),
           {"MinorError: " + Size(16, "less", 18)});
  }
  expect10(CmapFormat10(0x41, {9, 10}),
           {"MinorError: " + Size(18, "less", 24),
            "FatalError: character 0x41000001 is mapped to illegal glyph 10 (maximum glyph ID is 10)"});
  expect10(CmapFormat10(0x41, {9}).Patch("length", 18).Patch("numChars", 3),
           {"FatalError: " + Size(20, "greater", 18)});
}

TEST(StructureCmap, Format14) {
  const auto run = [](const TableBuilder& subtable) {
    const auto basis = CmapGroups(12, {{0x41, 0x42, 8}, {0x43, 0x43, 0xFFFF}, {0x44, 0x44, 10}});
    Findings findings = RunOn(CmapTable({{0, 3, basis}, {0, 5, subtable}}));
    std::erase_if(findings.messages, [](const Message& each) { return each.text.find("12.0") != std::string::npos; });
    return findings;
  };
  const std::string in = "cmap: Encoding 1 (format 14), ";
  const TableBuilder good = CmapFormat14({{0xFE00, {{0x41, 1}}, {{0x41, 9}}}, {0xE0100, {}, {{0x42, 1}}}});
  ExpectMessages(run(good), {});
  const std::string range = in + "table 1, default range 1, variation selector U+FE01, character ";
  const auto mapping = [&](int index, const std::string& text) {
    return Message{kMajor, in + "table 1, nondefault mapping " + std::to_string(index) +
                               ", variation selector U+FE01, character " + text};
  };
  ExpectMessages(
      run(CmapFormat14({{0xFE00}, {0xFE01, {{0x41, 0}, {0x42, 3}}, {{0x50, 0}, {0x51, 0xFFFF}, {0x52, 10}}}})),
      {{kTechnical, range + "U+0043 mapped to invalid glyph (-1)."},
       {kMajor, range + "U+0044 mapped to nonexistent glyph (10), glyph count == 10."},
       {kTechnical, range + "U+0045 mapped to glyph 0."},
       mapping(0, "U+0050 mapped to glyph 0."),
       mapping(1, "U+0051 mapped to invalid glyph (-1)."),
       mapping(1, "U+0051 mapped to nonexistent glyph (65535), glyph count == 10."),
       mapping(2, "U+0052 mapped to nonexistent glyph (10), glyph count == 10.")});
  ExpectMessages(run(good.With("length", 60).Zeros(2)), {{kMinor, in + Size(58, "less", 60)}});
  ExpectMessage(run(good.With("mappings1", 2)), {kFatal, in + Size(63, "greater", 58)});
  const std::string none =
      "cmap: There is no encoding in the 'cmap' which can be used as the basis for a Unicode encoding";
  ExpectMessages(RunOn(CmapTable({{3, 0, good}})), {{kFatal, none}});
}

/// Tables that claim more than time and memory allow: the result is there, the messages are limited, and a table beyond
/// all bounds is refused.
TEST(StructureCmap, HostileTablesStayInBounds) {
  const TableBuilder groups = CmapGroups(12, std::vector<CmapGroup>(87000, {0, 0xFFFFFFFF, 0}));
  const Findings many = RunOn(CmapTable({{3, 10, groups}, {1, 0, CmapFormat0({{1, 200}})}}));
  EXPECT_EQ(many.messages.size(), 87001u);

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
}

}  // namespace
