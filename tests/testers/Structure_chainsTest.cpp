#include "Tests/VornFontTesterStructure_mort.h"
#include "Tests/VornFontTesterStructure_morx.h"
#include "support/LayoutBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

constexpr StateTableWidth kWidths[] = {StateTableWidth::kClassic, StateTableWidth::kExtended};
/// Expects the messages of the test of 'morx' or 'mort', without their beginning, in a font of 10 glyphs.
void ExpectOf(StateTableWidth width, const Bytes& table, std::vector<Message> expected, FontBuilder font = {}) {
  const bool extended = width == StateTableWidth::kExtended;
  const std::string tag = extended ? "morx" : "mort";
  for (Message& message : expected) message.text.insert(0, tag + ": ");
  font.Table("maxp", MaxpTable(10)).Table(tag, table);
  const Message unnamed = {kInformation, tag + ": The font has no 'feat' table to name its features"};
  Findings findings = test::Run(extended ? TestStructure_morx : TestStructure_mort, font);
  std::erase(findings.messages, unnamed);
  ExpectMessages(findings, expected);
}

/// Two lookups, each a subtable for a flag of its own.
TableBuilder Good(StateTableWidth width) {
  const TableBuilder lookup = LookupFormat6({{1, 2}});
  return ChainTable(width, {{4, lookup, 1}, {4, lookup, 2}}, {{3, 0, 1}, {3, 2, 2}, {0, 1, 0}});
}
/// It with a field changed.
void ExpectChanged(const char* field, uint64_t value, const std::vector<Message>& expected) {
  for (const StateTableWidth width : kWidths) {
    SCOPED_TRACE(field);
    ExpectOf(width, Good(width).Patch(field, value), expected);
  }
}

TEST(Chains, ARightTableGivesNothing) { ExpectChanged("chainCount", 1, {}); }

TEST(Chains, HeadersAreJudged) {
  const TableBuilder morx = Good(StateTableWidth::kExtended);
  const auto extended = [&](const char* field, uint64_t value, const std::vector<Message>& expected) {
    ExpectOf(StateTableWidth::kExtended, morx.With(field, value), expected);
  };
  extended("version", 0, {{kMajor, "Bad version number: 0; it should be 2 or 3"}});
  extended("version", 1, {{kMajor, "Bad version number: 1; it should be 2 or 3"}});
  extended("reserved", 7, {{kTechnical, "The reserved field (0x0007) is not zero"}});
  ExpectOf(StateTableWidth::kExtended, Bytes(7),
           {{kFatal, "The table is too small; it is only 7 bytes in size and should be at least 8"}});
  ExpectOf(StateTableWidth::kClassic, Good(StateTableWidth::kClassic).Patch("version", 2),
           {{kInformation, "The font also has a 'morx' table, which is used instead"},
            {kMajor, "Bad version number: 0x00000002"}},
           FontBuilder().Table("morx", morx));
  ExpectChanged("chainCount", 2, {{kFatal, "Chain 1 of 2 lies beyond the end of the table"}});
  for (const StateTableWidth width : kWidths) {
    ExpectOf(width, Good(width).Patch("chainCount", 0).Truncate(11), {{kMinor, "The table has no chains"}});
    ExpectOf(width, Good(width).Zeros(4), {{kTechnical, "4 bytes follow the last chain"}});
  }
}

TEST(Chains, LengthsLeadFromOneToTheNext) {
  for (const StateTableWidth width : kWidths) {
    const TableBuilder good = Good(width);
    const std::string size = std::to_string(good.Size() - 8);
    ExpectOf(width, good.With("chainLength", 0),
             {{kFatal, "Chain 0: The length of the chain, 0, is wrong; " + size + " bytes are left in the table"}});
    const size_t second = good.Offset("length1");
    const std::string left = std::to_string(good.Size() - second);
    ExpectOf(width, good.With("length1", 0),
             {{kFatal, "Chain 0, subtable 1: The length of the subtable, 0, is wrong; " + left +
                           " bytes are left in the table"}});
    const std::string length = std::to_string(good.Size() - second + 4);
    ExpectOf(width, good.With("length1", good.Size() - second + 4).Zeros(4),
             {{kMajor, "Chain 0, subtable 1: The length of the subtable, " + length + ", is wrong; " + left +
                           " bytes are left in the chain"},
              {kTechnical, "4 bytes follow the last chain"}});
    ExpectOf(width, good.With("subtableCount", 1),
             {{kInformation, "Chain 0: Feature 3, setting 2 switches on nothing for its flags 0x00000002"},
              {kTechnical, "Chain 0: " + left + " bytes follow the last subtable of the chain"}});
    ExpectOf(width, good.With("subtableCount", 3),
             {{kFatal, "Chain 0, subtable 2: The subtable lies beyond the end of the table"}});
    ExpectOf(width, good.With("featureCount", 400).Truncate(good.Offset("length0")),
             {{kFatal, "Chain 0: The length of the chain, " + size + ", is wrong; " +
                           std::to_string(good.Offset("length0") - 8) + " bytes are left in the table"}});
  }
}

TEST(Chains, FeaturesSwitchSubtablesOn) {
  ExpectChanged("setting2", 3, {{kInformation, "Chain 0: The last feature entry is 0, 3 and not 0, 1"}});
  ExpectChanged("setting1", 0, {{kMinor, "Chain 0: Feature 3, setting 0 stands twice"}});
  ExpectChanged("enable1", 6,
                {{kInformation, "Chain 0: Feature 3, setting 2 switches on nothing for its flags 0x00000004"}});
  ExpectChanged("enable1", 1, {{kMinor, "Chain 0, subtable 1: No feature switches the subtable on (0x00000002)"}});
  ExpectChanged("flags1", 0,
                {{kInformation, "Chain 0: Feature 3, setting 2 switches on nothing for its flags 0x00000002"},
                 {kMinor, "Chain 0, subtable 1: The subtable belongs to no feature and never runs"}});
  ExpectChanged("coverage1", 7, {{kMajor, "Chain 0, subtable 1: The subtable has the unknown type 7"}});
  TableBuilder feat;  // type 3, not exclusive, with setting 0
  feat.U32(0x00010000).U16(1).U16(0).U32(0).U16(3, "type").U16(1).U32(24).U16(0).S16(256).U16(0).S16(256);
  const auto named = [](const Bytes& table) { return FontBuilder().Table("feat", table); };
  for (const StateTableWidth width : kWidths) {
    ExpectOf(width, Good(width), {{kInformation, "Chain 0: Feature 3: setting 2 is not in the 'feat' table"}},
             named(feat));
    ExpectOf(width, Good(width).Patch("setting1", 1), {}, named(feat));  // switches setting 0 off
    ExpectOf(width, Good(width), {{kInformation, "Chain 0: Feature 3 is not in the 'feat' table"}},
             named(feat.With("type", 4)));
  }
}

TEST(Chains, GlyphCoverageIsThereAndNotEmpty) {
  TableBuilder morx = Good(StateTableWidth::kExtended).Patch("version", 3);
  morx.U32(0, "list").U32(8, "offset").U16(0x0100, "bitmap").U16(0).Patch("chainLength", morx.Size() - 8);
  const auto expect = [&](const char* field, uint64_t value, const std::vector<Message>& expected) {
    ExpectOf(StateTableWidth::kExtended, morx.With(field, value), expected);
  };
  expect("list", 0xFFFFFFFF, {});
  expect("bitmap", 0, {{kMinor, "Chain 0: The glyph coverage of subtable 1 is empty; it never runs"}});
  expect("offset", 11, {{kFatal, "Chain 0: The glyph coverage of subtable 1 lies beyond the end of the table"}});
  morx.U32(0x01010101);
  expect("offset", 11,
         {{kTechnical, "Chain 0: The glyph coverage of subtable 1 lies beyond the end of the chain"},
          {kTechnical, "4 bytes follow the last chain"}});
}

TEST(Chains, TemporaryGlyphsAreReplacedAgain) {
  const auto lookup = [](uint16_t glyph, uint16_t value) { return LookupFormat6({{glyph, value}}); };
  for (const StateTableWidth width : kWidths) {
    ExpectOf(width, ChainTable(width, {{4, lookup(1, 12)}, {4, lookup(12, 2)}}), {});
    ExpectOf(width, ChainTable(width, {{4, lookup(12, 2)}, {4, lookup(1, 12)}}),
             {{kMinor,
               "1 glyphs that the font does not have are made and not replaced again; the first is glyph 12, made by "
               "subtable 1 of chain 0"}});
    ExpectOf(width, ChainTable(width, {{4, lookup(1, 0xFFFF)}}), {});
    MachineBuilder machine(StateMachineKind::kRearrangement, width);
    machine.Class("temporary", {12}).State("start", {{"temporary", "swap"}}).State("line");
    const TableBuilder takes = machine.Entry("swap", {.flags = 0xA001}).Build();
    ExpectOf(width, ChainTable(width, {{4, lookup(1, 12)}, {0, takes}}), {});
  }
}

TEST(Chains, FindingsOfOneKindAreLimitedAndSevereOnesStay) {
  std::vector<ChainFeature> features(14, {3, 0, 1});
  features.push_back({0, 1, 0});
  const TableBuilder morx =
      ChainTable(StateTableWidth::kExtended, {{4, LookupFormat6({{1, 2}}), 1}}, features).Patch("length0", 4);
  const auto run = [&](const RunOptions& options) {
    return test::Run(TestStructure_morx, FontBuilder().Table("morx", morx), options).messages;
  };
  const std::vector<Message> all = run({});
  ASSERT_EQ(all.size(), 13u);
  const Message tenth = {kMinor, "morx: Chain 0: Feature 3, setting 0 stands twice", "morx offset 144 (Chain 0)"};
  EXPECT_EQ(all[9], tenth);
  EXPECT_EQ(all[10].text, "morx: Chain 0: 3 more findings of this kind were left out");
  EXPECT_EQ(all[11].severity, kFatal);
  EXPECT_EQ(run({.severities = {"MajorError"}}), std::vector{all[11]});
}

}  // namespace
