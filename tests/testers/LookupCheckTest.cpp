#include <functional>

#include "TableAccess/FTLimits.h"
#include "Tests/VornFontTesterStructure_morx.h"
#include "Tests/VornFontTesterStructure_prop.h"
#include "support/LayoutBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

/// Messages about a lookup; those about the font that holds it are left out.
void ExpectOfLookup(const Bytes& lookup, std::vector<Message> expected, uint32_t fill = 0) {
  for (Message& message : expected) message.text = "morx: Chain 0, subtable 0: " + message.text;
  expected.push_back({kInformation, "morx: The font has no 'feat' table to name its features"});
  TableBuilder morx = ChainTable(StateTableWidth::kExtended, {{4, lookup}});
  morx.Patch("length0", 12 + lookup.size()).Patch("chainLength", morx.Size() - 8 + fill).Zeros(fill);
  Findings findings = test::Run(TestStructure_morx, FontBuilder().Table("maxp", MaxpTable(6)).Table("morx", morx));
  std::erase_if(findings.messages, [](const Message& message) {
    return message.text.find("multiple of four") != std::string::npos ||
           message.text.find("bytes follow") != std::string::npos;
  });
  ExpectMessages(findings, expected);
}

TEST(LookupCheck, RightLookupsOfAllFormatsGiveNothing) {
  for (const TableBuilder& lookup :
       {LookupFormat0({1, 2, 3, 4, 5, 0}), LookupFormat2({{0, 2, 5}, {3, 4, 1}}),
        LookupFormat4({{1, {2, 3}}, {5, {0}}}), LookupFormat6({{1, 2}, {3, 4}, {5, 0}}), LookupFormat8(2, {1, 1}),
        LookupFormat10(1, 2, {1, 1}), LookupFormat10(8, 2, {1, 1})}) {
    ExpectOfLookup(lookup, {});
  }
}

TEST(LookupCheck, HeadersAreJudged) {
  const auto bad = [](const char* field, uint64_t value) {
    return LookupFormat6({{1, 2}, {3, 4}, {5, 0}}).Patch(field, value);
  };
  const Message nothing = {kMinor, "No glyph is ever replaced"};
  ExpectOfLookup(bad("format", 5), {nothing, {kMajor, "The lookup has the unknown lookup format 5"}});
  ExpectOfLookup(LookupFormat10(3, 1, {}), {nothing, {kMajor, "The lookup has the value size 3"}});
  ExpectOfLookup(bad("unitSize", 2), {nothing, {kMajor, "The lookup has the unit size 2; it should be at least 4"}});
  ExpectOfLookup(bad("unitSize", 8).Zeros(32),
                 {{kTechnical, "The lookup has the unit size 8; it should be 4"},
                  {kTechnical, "The lookup has the search range 8; it should be 16"},
                  {kTechnical, "The lookup has the range shift 4; it should be 8"},
                  {kTechnical, "The lookup has no end marker"},
                  {kMajor, "The lookup has 1 units out of order; the first is unit 2 (glyphs 0 to 0)"}});
  ExpectOfLookup(bad("entrySelector", 2), {{kTechnical, "The lookup has the entry selector 2; it should be 1"}});
  ExpectOfLookup(LookupFormat8(0xFFFF, {1, 2}), {nothing, {kMajor, "The lookup covers glyphs beyond 65535"}});
  ExpectOfLookup(LookupFormat6({}), {nothing});
  ExpectOfLookup({}, {nothing, {kFatal, "The lookup at 0x0000003C starts beyond the end of the table"}});
}

TEST(LookupCheck, BoundsAreThoseOfTheTableAndOfTheSubtable) {
  ExpectOfLookup(LookupFormat0({1, 2, 3, 4, 5}), {{kTechnical, "The lookup ends 2 bytes beyond its subtable"}}, 4);
  ExpectOfLookup(LookupFormat0({1, 2, 3, 4, 5, 0}).Truncate(12),
                 {{kFatal, "The lookup needs 14 bytes; only 12 are left in the table"}});
  TableBuilder array = LookupFormat4({{1, {2, 3}}, {4, {0, 0}}});
  ExpectOfLookup(array.With("offset1", array.Offset("offset1") + 30), {}, 16);
  const Message beyond = {kFatal,
                          "The lookup has 1 value arrays beyond the end of the table; the first is in unit 1 (0x0025)"};
  ExpectOfLookup(array.Patch("offset1", 37), {beyond});
  ExpectOfLookup(array.Patch("offset1", 23),
                 {{kMajor, "The lookup has 1 value offsets that are too small; the first is in unit 1 (0x0017)"}});
}

TEST(LookupCheck, UnitsAscendAndEndWithAMarker) {
  const auto own = [](int glyphs) {
    return Message{kInformation, std::to_string(glyphs) + " glyphs are replaced by themselves; the first is glyph 1"};
  };
  ExpectOfLookup(LookupFormat4({{3, {3, 4}}, {1, {1, 2, 3}}}),
                 {{kInformation, "2 glyphs are replaced by themselves; the first is glyph 3"},
                  {kMajor, "The lookup has 1 units out of order; the first is unit 1 (glyphs 1 to 3)"}});
  ExpectOfLookup(LookupFormat4({{1, {1, 2}}, {2, {9, 3}}}),
                 {own(3), {kMajor, "The lookup has 1 units out of order; the first is unit 1 (glyphs 2 to 3)"}});
  ExpectOfLookup(
      LookupFormat2({{1, 1, 1}, {4, 2, 4}}),
      {own(1), {kTechnical, "The lookup has 1 units whose first glyph follows the last; the first is unit 1 (4-2)"}});
  ExpectOfLookup(LookupFormat6({{1, 2}, {3, 4}}).Patch("marker", 0), {{kTechnical, "The lookup has no end marker"}});
  TableBuilder counted = LookupFormat6({{1, 2}, {0xFFFF, 0}});
  ExpectOfLookup(counted, {{kInformation, "The lookup counts its end marker as a unit"}});
}

TEST(LookupCheck, ValuesBelongToGlyphsOfTheFont) {
  const TableBuilder lookup = LookupFormat2({{1, 1, 0}, {5, 8, 0}, {20, 20, 0}});
  const TableBuilder prop = TableBuilder().U32(0x00010000).U16(1).U16(0).Append(lookup);
  Expect(TestStructure_prop, FontBuilder().Table("maxp", MaxpTable(6)).Table("prop", prop),
         {{kMinor, "prop: The property table has values for 4 glyphs that the font does not have; the first is 6",
           "prop glyph 6 offset 8"}});
  Expect(TestStructure_prop, FontBuilder().Table("prop", prop), {});  // nothing is known of glyphs
}

TEST(LookupCheck, TheWorkIsBounded) {
  // Substitutions whose lookups lie two bytes apart over one array of values.
  constexpr uint32_t kLookups = 3000;
  TableBuilder substitutions;
  for (uint32_t i = 0; i < kLookups; ++i) substitutions.U32(4 * kLookups + 2 * i);
  for (uint32_t i = 0; i < 20000; ++i) substitutions.U16(0);
  MachineBuilder machine(StateMachineKind::kContextual, StateTableWidth::kExtended);
  std::map<std::string, std::string> cells;
  for (uint16_t i = 0; i < kLookups; ++i) {
    const std::string name = std::to_string(i);
    machine.Class(name, {i}).Entry(name, {.words = {0xFFFF, i}});
    cells[name] = name;
  }
  machine.State("start", cells).State("line").Extra(substitutions);
  const TableBuilder morx = ChainTable(StateTableWidth::kExtended, {{1, machine.Build()}});
  const uint64_t steps =
      std::max(FTLimits::Get().layoutStepsAllowed, FTLimits::Get().layoutStepsAllowedPerByte * morx.Size());
  ExpectMessage(test::Run(TestStructure_morx, FontBuilder().Table("morx", morx)),
                {kFatal, "morx: Chain 0, subtable 0: The examination was given up after " + std::to_string(steps) +
                             " steps; parts of the table refer to the same bytes over and over"});
}

}  // namespace
