#include "Tests/VornFontTesterStructure_Zapf.h"
#include "Tests/VornFontTesterStructure_just.h"
#include "support/LayoutBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

/// Horizontal data: glyph 1 has a cluster of one width delta, glyph 2 a list of one action of a type; a machine gives
/// glyph 1 the class 5, which the delta is for.
TableBuilder Just(uint16_t actionType, const Bytes& actionData) {
  MachineBuilder machine(StateMachineKind::kJustification, StateTableWidth::kClassic);
  machine.Class("a", {1}).State("start", {{"a", "give"}}).State("line").Entry("give", {.flags = 5});
  const TableBuilder states = machine.Build();
  TableBuilder just;
  just.U32(0x00010000, "version").U16(0, "format").U16(10, "horizontal").U16(0, "vertical");
  just.U16(0, "classTable").U16(0, "widthDeltas").U16(0, "postcompensation").Append(LookupFormat6({{1, 0}}), "lookup");
  just.Patch("classTable", just.Size()).U16(8 + states.Size(), "classLength").U16(0).U32(0).Append(states);
  just.Patch("widthDeltas", just.Size()).U32(1, "deltas").U32(5, "deltaClass");
  just.S32(0, "growth").S32(0).S32(0).S32(0, "shrinkage").U16(0, "growFlags").U16(0);
  just.Patch("postcompensation", just.Size()).Append(LookupFormat6({{2, 20}})).U32(1, "actions");
  just.U16(5, "actionClass").U16(actionType, "type").U32(8 + actionData.size(), "length");
  return just.Append(actionData, "data");
}
void ExpectOfJust(const Bytes& just, std::vector<Message> expected, bool isOfData = true) {
  for (Message& message : expected) message.text.insert(0, isOfData ? "just: Horizontal data: " : "just: ");
  TableBuilder fvar;
  fvar.U32(0x00010000).U16(16).U16(2).U16(1).U16(20).Zeros(4).Text("wght").Zeros(16);
  const FontBuilder font = FontBuilder().Table("maxp", MaxpTable(10)).Table("fvar", fvar);
  Expect(TestStructure_just, FontBuilder(font).Table("just", just), expected);
}
const Bytes kNothing = {};

TEST(JustStructure, HeadersAreJudged) {
  ExpectOfJust(Just(3, kNothing), {});
  ExpectOfJust(Bytes(9), {{kFatal, "The table is too small; it is only 9 bytes in size and should be at least 10"}},
               false);
  ExpectOfJust(Just(3, kNothing).Patch("format", 1), {{kMajor, "Bad format: 1"}}, false);
  ExpectOfJust(Just(3, kNothing).Patch("horizontal", 0),
               {{kMinor, "The table has neither horizontal nor vertical data"}}, false);
  ExpectOfJust(Just(3, kNothing).Patch("horizontal", 9).Patch("vertical", 9),
               {{kMajor, "The offset of the data, 0x0009, is too small"}});
  ExpectOfJust(Just(3, kNothing).Patch("horizontal", 0x4000),
               {{kFatal, "The data at 0x00004000 lie beyond the end of the table"}});
  ExpectOfJust(Just(3, kNothing).Patch("widthDeltas", 0x4000).Patch("classTable", 0),
               {{kFatal, "The width delta table offset 0x4000 is too big"}});
  ExpectOfJust(Just(3, kNothing).Patch("widthDeltas", 0).Patch("classTable", 0),
               {{kMajor, "Glyphs have width deltas, but there is no width delta table"}});
}

TEST(JustStructure, WidthDeltasAndClassesAreJudged) {
  const std::string cluster = "the first is in the cluster at 0x" + [] {
    char text[9];
    std::snprintf(text, sizeof text, "%08zX", Just(3, kNothing).Offset("deltas"));
    return std::string(text);
  }();
  const auto changed = [](const char* field, uint64_t value, const std::vector<Message>& expected) {
    SCOPED_TRACE(field);
    ExpectOfJust(Just(3, kNothing).Patch(field, value), expected);
  };
  changed("deltaClass", 128, {{kTechnical, "1 width deltas have a class above 127; " + cluster}});
  changed("growth", 0x80000000, {{kMinor, "1 width deltas grow or shrink the wrong way; " + cluster}});
  changed("shrinkage", 1, {{kMinor, "1 width deltas grow or shrink the wrong way; " + cluster}});
  changed("growFlags", 0x1004, {{kTechnical, "1 width deltas have bad flags; " + cluster + " (0x1004)"}});
  changed("classLength", 15,
          {{kFatal, "The length of the class table, 15, is wrong; 102 bytes are left in the table"}});
  ExpectOfJust(Just(3, kNothing).Patch("deltaClass", 7).Patch("actionClass", 7),
               {{kInformation, "Class 5 is given to glyphs but has no width delta"}});
}

TEST(JustStructure, ActionsAreJudged) {
  const size_t at = Just(3, kNothing).Offset("actionClass");
  const auto expect = [&](const TableBuilder& just, const std::string& severity, const std::string& text) {
    char place[40];
    std::snprintf(place, sizeof place, "The action at 0x%08zX", at);
    ExpectOfJust(just, text.empty() ? std::vector<Message>{} : std::vector<Message>{{severity, place + text}});
  };
  expect(Just(3, kNothing).Patch("length", 0), kFatal, " has the length 0; 8 bytes are left in the table");
  expect(Just(1, Bytes(1)), kMajor, " has the length 9; its data need 10");
  expect(Just(1, {0, 3}), kTechnical, ": the length 10 is not a multiple of four");
  expect(Just(1, {0, 10, 0, 0}), kMajor, " uses glyph 10, which the font does not have");
  expect(Just(2, {0, 0, 0, 0, 0xFF, 0xFF, 0, 1}), "", "");
  expect(Just(2, {0, 0, 0, 0, 0, 1, 0xFF, 0xFF}), kMajor, " uses glyph 65535, which the font does not have");
  expect(Just(6, kNothing), kMajor, " has the unknown type 6");
  expect(Just(3, kNothing).Patch("actionClass", 300), kTechnical, " has the class 300");
  expect(Just(0, TableBuilder().S32(5).S32(5).U16(0).U16(0)), kMinor, ": the lower limit is not below the upper limit");
  expect(Just(0, TableBuilder().S32(4).S32(5).U16(0).U16(2)), kMajor, " has the length 20; its data need 24");
  expect(Just(4, TableBuilder().Text("wght").S32(1).S32(2).S32(1)), kMinor, ": the limits are out of order");
  expect(Just(4, TableBuilder().Text("wd\x01h").S32(1).S32(2).S32(3)), kMinor, ": the font has no axis 'wd?h'");
  expect(Just(5, {0, 1, 0, 1}), kTechnical, ": the flags are not zero");
  char list[80];
  std::snprintf(list, sizeof list, "The actions at 0x%08zX lie beyond the end of the table", at - 4);
  ExpectOfJust(Just(3, kNothing).Patch("actions", 2), {{kFatal, list}});
}

/// 'Zapf' of a font of two glyphs, of which the second has no information; the first has the text "A", a name and an
/// identifier, a group and a feature.
TableBuilder Zapf() {
  TableBuilder zapf;
  zapf.U32(0x00010000, "version").U32(0, "extraInfo").U32(16, "offset0").U32(0, "offset1");
  zapf.U32(0, "group").U32(14, "features").U16(1).U16('A', "text").U16(2, "names");
  zapf.U8(1, "kind").U8(1, "nameLength").Text("A").U8(64).U16(34);
  zapf.Patch("extraInfo", zapf.Size());
  zapf.U16(1, "word").U16(256, "groupName").U16(2).U16(0).U16(1, "groupGlyph").U32(0);
  return zapf.U16(0).U16(1, "featureCount").U16(3, "feature").U16(0);
}
void ExpectOfZapf(const Bytes& zapf, std::vector<Message> expected) {
  for (Message& message : expected) message.text.insert(0, "Zapf: ");
  TableBuilder feat;
  feat.U32(0x00010000).U16(1).U16(0).U32(0).U16(3).U16(0).U32(24).U16(0).S16(256);
  FontBuilder font = FontBuilder().Table("maxp", MaxpTable(2)).Table("name", NameTable({{256, "Group"}}));
  Findings findings = test::Run(TestStructure_Zapf, font.Table("feat", feat).Table("Zapf", zapf));
  std::erase(findings.messages, Message{kInformation, "Zapf: 1 glyphs have no information; the first is glyph 1"});
  ExpectMessages(findings, expected);
}

TEST(ZapfStructure, RecordsOfGlyphsAreJudged) {
  const auto changed = [](const char* field, uint64_t value, const std::vector<Message>& expected) {
    SCOPED_TRACE(field);
    ExpectOfZapf(Zapf().Patch(field, value), expected);
  };
  ExpectOfZapf(Zapf(), {});
  changed("version", 0x00030000, {{kMajor, "Bad version number: 0x00030000"}});
  changed("version", 0x00020000, {{kInformation, "The table has version 2.0, which is not examined"}});
  changed("extraInfo", 0x1000, {{kFatal, "The extra information at 0x00001000 lies beyond the end of the table"}});
  ExpectOfZapf(Zapf().Truncate(12).Patch("extraInfo", 12),
               {{kFatal, "The glyph offsets need 16 bytes; there are only 12 in the table"},
                {kFatal, "1 glyph records lie beyond the end of the table; the first is that of glyph 0"}});
  changed("offset1", 15, {{kMajor, "1 glyph offsets are too small; the first is that of glyph 1 (0x0000000F)"}});
  changed("offset1", 16, {{kMinor, "1 character identifiers are used twice; the first is 34, of glyph 1"}});
  changed("nameLength", 200,
          {{kFatal, "1 glyph records lie beyond the end of the table; the first is that of glyph 0"}});
  changed("kind", 128, {{kMajor, "1 names are of a kind without a known length; the first is of glyph 0 (128)"}});
  changed("kind", 9, {{kInformation, "1 names are of an unknown kind; the first is of glyph 0 (9)"}});
  changed("text", 0xD800, {{kMinor, "1 glyphs have text that is not Unicode; the first is glyph 0"}});
}

TEST(ZapfStructure, GroupsAndFeaturesAreJudged) {
  const auto changed = [](const char* field, uint64_t value, const std::vector<Message>& expected) {
    SCOPED_TRACE(field);
    ExpectOfZapf(Zapf().Patch(field, value), expected);
  };
  const std::string group = "The group at 0x00000024";
  // The features that follow read as further groups.
  changed("word", 4,
          {{kFatal, group + " lies beyond the end of the table"},
           {kMajor, "1 glyphs of groups are not in the font; the first is glyph 3"}});
  changed("groupName", 300, {{kMinor, "1 group names are missing from the 'name' table; the first is name 300"}});
  changed("groupGlyph", 2, {{kMajor, "1 glyphs of groups are not in the font; the first is glyph 2"}});
  changed("feature", 4, {{kInformation, "1 features are not in the 'feat' table; the first is feature 4"}});
  changed("featureCount", 2, {{kFatal, "The features at 0x00000032 lie beyond the end of the table"}});
  // A group of groups of which the one member is itself.
  TableBuilder nested = Zapf();
  const size_t own = nested.Size() - nested.Offset("word");
  nested.Patch("group", own).U16(0x4001).U16(0).U32(own, "member");
  ExpectOfZapf(nested, {{kMajor, "The group of groups at 0x0000003A stands in a group of groups"}});
  ExpectOfZapf(nested.Patch("member", 0), {});
}

}  // namespace
