#include "Tests/VornFontTesterStructure_kern.h"
#include "Tests/VornFontTesterStructure_mort.h"
#include "Tests/VornFontTesterStructure_morx.h"
#include "support/LayoutBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;
using Kind = StateMachineKind;

constexpr StateTableWidth kClassic = StateTableWidth::kClassic;
constexpr StateTableWidth kExtended = StateTableWidth::kExtended;
constexpr StateTableWidth kWidths[] = {kClassic, kExtended};
constexpr uint16_t kPush = 0x8000, kMark = 0x8000, kStay = 0x4000, kAct = 0x2000;

Message Says(const std::string& severity, const std::string& text) { return {severity, text}; }

/// The messages about a machine, without their beginning, in a font of 40 glyphs.
std::vector<Message> MessagesOf(Kind kind, StateTableWidth width, const Bytes& machine) {
  const bool kerning = kind == Kind::kKerning;
  const uint32_t type = kind == Kind::kInsertion ? 5 : static_cast<uint32_t>(kind);
  const char* tag = kerning ? "kern" : width == kExtended ? "morx" : "mort";
  const TableBuilder kern = TableBuilder().U32(0x00010000).U32(1).U32(8 + machine.size()).U16(1).U16(0).Append(machine);
  const FontBuilder font =
      FontBuilder().Table("maxp", MaxpTable(40)).Table(tag, kerning ? kern : ChainTable(width, {{type, machine}}));
  const VornFontTestEntry entry = kerning              ? TestStructure_kern
                                  : width == kExtended ? TestStructure_morx
                                                       : TestStructure_mort;
  std::vector<Message> messages;
  const std::string beginning = kerning ? "kern: Subtable 0: " : tag + std::string(": Chain 0, subtable 0: ");
  for (const Message& message : test::Run(entry, font).messages) {
    if (message.text.starts_with(beginning))
      messages.push_back({message.severity, message.text.substr(beginning.size())});
  }
  return messages;
}
void ExpectOf(Kind kind, StateTableWidth width, const TableBuilder& machine, const std::vector<Message>& expected) {
  EXPECT_EQ(MessagesOf(kind, width, machine), expected);
}

/// Glyph 1 marks itself, glyph 2 behind it rearranges both.
MachineBuilder Rearrangement(StateTableWidth width) {
  MachineBuilder machine(Kind::kRearrangement, width);
  machine.Class("a", {1}).Class("b", {2});
  machine.State("start", {{"a", "mark"}}).State("line", {{"a", "mark"}}).State("after a", {{"b", "swap"}});
  return machine.Entry("mark", {.next = "after a", .flags = kMark}).Entry("swap", {.next = "", .flags = 0x2001});
}

/// Pushes "f" and "i" and makes a ligature of them where "i" follows; the list takes as many components as told.
MachineBuilder Ligature(StateTableWidth width, uint32_t components) {
  MachineBuilder machine(Kind::kLigature, width);
  machine.Class("f", {5}).Class("i", {6});
  machine.State("start", {{"f", "push"}}).State("line", {{"f", "push"}}).State("after f", {{"i", "make"}});
  machine.Entry("push", {.next = "after f", .flags = kPush});
  const bool extended = width == kExtended;
  MachineBuilder::EntryFields make = {.flags = uint16_t(extended ? kPush | kAct : kPush)};
  if (extended) make.words = {0};
  if (!extended) make.list = 0;
  machine.Entry("make", make);
  // The components of glyphs 5 and 6 follow the actions; in classic tables they count from the header.
  TableBuilder actions;
  const uint32_t base = extended ? 0 : 45;
  for (uint32_t i = 1; i <= components; ++i) {
    actions.U32(((i == components ? 0x80000000 : 0) | ((base + uint32_t(extended ? -5 : 0)) & 0x3FFFFFFF)), "action");
  }
  return machine.Extra(actions).Extra(TableBuilder().U16(0).U16(0)).Extra(TableBuilder().U16(9));
}

TEST(StateMachine, RightMachinesGiveNothing) {
  for (const StateTableWidth width : kWidths) ExpectOf(Kind::kRearrangement, width, Rearrangement(width).Build(), {});
  ExpectOf(Kind::kLigature, kExtended, Ligature(kExtended, 2).Build(), {});
}

TEST(StateMachine, HeadersAreJudged) {
  const auto patched = [](StateTableWidth width, const char* field, uint64_t value, std::vector<Message> expected) {
    ExpectOf(Kind::kRearrangement, width, Rearrangement(width).Build().Patch(field, value), expected);
  };
  ExpectOf(Kind::kRearrangement, kExtended, TableBuilder().Zeros(12),
           {{kFatal, "The state table header needs 16 bytes; only 12 are left in the table"}});
  patched(kClassic, "classCount", 3, {{kFatal, "The state table has 3 classes; there must be at least 4"}});
  patched(kClassic, "classTable", 7, {{kMajor, "Class table offset 0x0007 is too small"}});
  patched(kExtended, "stateArray", 15, {{kMajor, "State array offset 0x0000000f is too small"}});
  patched(kClassic, "entryTable", 0x7FFF, {{kFatal, "Entry table offset 0x7fff is too big"}});
  patched(kExtended, "entryTable", 0xFFFFFFFF, {{kFatal, "Entry table offset 0xffffffff is too big"}});
  const TableBuilder machine = Rearrangement(kClassic).Build();
  patched(kClassic, "stateArray", machine.Size() - 2, {{kFatal, "The first state lies beyond the end of the table"}});
  // An offset that only entries that act need is judged only where one acts.
  MachineBuilder idle(Kind::kContextual, kExtended);
  const TableBuilder still = idle.State("start").State("line").Extra({}).Build().Patch("extra0", 0);
  ExpectOf(Kind::kContextual, kExtended, still, {{kMinor, "No action can ever be performed"}});
  ExpectOf(Kind::kLigature, kExtended, Ligature(kExtended, 2).Build().Patch("extra1", 0).Patch("extra2", 0x4000),
           {{kMajor, "Component table offset 0x00000000 is too small"},
            {kFatal, "Ligature table offset 0x00004000 is too big"}});
}

TEST(StateMachine, StatesAndEntriesLieInTheirTables) {
  MachineBuilder one(Kind::kRearrangement, kExtended);
  one.Class("a", {1}).State("start", {{"a", "swap"}}).Entry("swap", {.flags = 0xA001});
  ExpectOf(Kind::kRearrangement, kExtended, one.Build(),
           {{kTechnical, "The state array has room for 1 state; it should have at least 2"}});
  const TableBuilder good = Rearrangement(kExtended).Build();
  const auto patched = [&](const char* field, uint64_t value, std::vector<Message> expected) {
    ExpectOf(Kind::kRearrangement, kExtended, good.With(field, value), expected);
  };
  const Message noAction = {kMinor, "No action can ever be performed"};
  patched("mark.next", 0x4000,
          {{kFatal, "State 16384, reached from entry 1, lies beyond the end of the table"},
           {kInformation, "State 2 is never referenced"},
           {kInformation, "Entry 2 is never referenced"},
           noAction});
  EXPECT_EQ(MessagesOf(Kind::kRearrangement, kExtended, good.With("mark.next", 3)).front(),
            Says(kMajor, "State 3, reached from entry 1, lies beyond the end of the state array"));
  EXPECT_EQ(MessagesOf(Kind::kLigature, kExtended, Ligature(kExtended, 2).Build().Patch("start/end", 3)).front(),
            Says(kMajor, "Entry 3, used by state 0 for class 0, lies beyond the end of the entry table"));
  patched("line/other", 0x4000,
          {{kFatal, "Entry 16384, used by state 1 for class 1, lies beyond the end of the table"}});
  patched("swap.flags", 0x2011, {{kTechnical, "1 entries have reserved flags set; the first is entry 2 (0x2011)"}});
  const TableBuilder classic = Rearrangement(kClassic).Build();
  const auto next = [&](uint64_t value, const std::string& text) {
    const auto messages = MessagesOf(Kind::kRearrangement, kClassic, classic.With("mark.next", value));
    EXPECT_EQ(messages.front(), Says(kMajor, "Entry 1: the new state offset " + text));
  };
  next(0x0021, "0x0021 is not the start of a state");
  next(8, "0x0008 lies before the state array");
}

TEST(StateMachine, ClassesAreJudged) {
  const auto patched = [](uint16_t value) {  // the class of glyph 1
    TableBuilder machine = Rearrangement(kClassic).Build();
    return MessagesOf(Kind::kRearrangement, kClassic,
                      machine.Patch("classes", uint64_t{1} << 32 | uint64_t{2} << 16 | uint64_t{value} << 8 | 5));
  };
  EXPECT_EQ(patched(6).front(),
            Says(kMajor, "1 glyphs have a class above the last one (5); the first is glyph 1 with class 6"));
  EXPECT_EQ(
      patched(3).front(),
      Says(kMinor, "1 glyphs have a class reserved for the end of text or line; the first is glyph 1 with class 3"));
  EXPECT_EQ(patched(2)[0], Says(kTechnical, "1 glyphs have the class of deleted glyphs; the first is glyph 1"));
  EXPECT_EQ(patched(2)[1], Says(kInformation, "Class 4 has no glyphs"));
}

TEST(StateMachine, AGlyphThatIsNeverPassedIsFatal) {
  const auto standstill = [](Kind kind, const MachineBuilder::EntryFields& back) {
    MachineBuilder machine(kind, kExtended);
    machine.Class("a", {1}).Class("b", {2});
    machine.State("start", {{"a", "forth"}, {"b", "act"}}).State("line").State("second", {{"a", "back"}});
    machine.Entry("forth", {.next = "second", .flags = kStay}).Entry("back", back);
    const bool contextual = kind == Kind::kContextual;
    machine.Entry(
        "act", {.flags = uint16_t(contextual ? 0 : 0x20), .words = {contextual ? uint16_t(0xFFFF) : uint16_t(0), 0}});
    TableBuilder extra;
    if (contextual) extra.U32(4).Append(LookupFormat6({{2, 3}}));
    return MessagesOf(kind, kExtended, machine.Extra(contextual ? extra : TableBuilder().U16(9).U16(9)).Build());
  };
  const Message fatal = {kFatal, "State 0, class 4: the glyph is never passed; 2 states follow one another for ever"};
  std::vector<Message> found = standstill(Kind::kContextual, {.next = "start", .flags = kStay});
  EXPECT_EQ(found, std::vector{fatal});
  found = standstill(Kind::kContextual, {.next = "start", .flags = kStay, .words = {0xFFFF, 0}});
  EXPECT_EQ(found, std::vector<Message>{}) << "a substitution is written so";
  found = standstill(Kind::kContextual, {.next = "start"});
  EXPECT_EQ(found, std::vector<Message>{});
  // One glyph inserted behind the current one, for ever; before it is another matter.
  found = standstill(Kind::kInsertion, {.next = "start", .flags = kStay | 0x20, .words = {0, 0xFFFF}});
  ASSERT_FALSE(found.empty());
  EXPECT_EQ(found.back().severity, kInformation);
  EXPECT_EQ(std::ranges::count(found, fatal), 1);
  found = standstill(Kind::kInsertion, {.next = "start", .flags = kStay | 0x820, .words = {0, 0xFFFF}});
  EXPECT_EQ(std::ranges::count(found, fatal), 0);
}

TEST(StateMachine, MarksAreSetBeforeTheyAreUsed) {
  TableBuilder machine = Rearrangement(kExtended).Build();
  ExpectOf(Kind::kRearrangement, kExtended, machine.Patch("mark.flags", 0),
           {{kMinor, "1 entries rearrange where not both ends can have been marked; the first is entry 2"}});
  MachineBuilder contextual(Kind::kContextual, kExtended);
  contextual.Class("a", {1}).State("start", {{"a", "use"}}).State("line");
  contextual.Entry("use", {.flags = 0, .words = {0, 0xFFFF}});
  contextual.Extra(TableBuilder().U32(4).Append(LookupFormat6({{1, 2}})));
  const Message unmarked = {kMinor, "1 entries use the mark where no glyph can have been marked; the first is entry 1"};
  ExpectOf(Kind::kContextual, kExtended, contextual.Build(), {unmarked});
  ExpectOf(Kind::kContextual, kExtended, contextual.Build().Patch("use.flags", kMark), {});  // at the second glyph
}

TEST(StateMachine, TheStackHoldsWhatIsTaken) {
  MachineBuilder once(Kind::kLigature, kExtended);
  once.Class("f", {5}).Class("i", {6}).State("start", {{"f", "push"}}).State("line");
  once.State("after f", {{"other", "rest"}, {"deleted", "rest"}, {"f", "rest"}, {"i", "make"}});
  once.Entry("push", {.next = "after f", .flags = kPush}).Entry("rest", {.next = "after f"});
  once.Entry("make", {.next = "after f", .flags = kAct, .words = {0}});
  once.Extra(TableBuilder().U32(0x3FFFFFFB).U32(0xBFFFFFFB)).Extra(TableBuilder().Zeros(4));
  ExpectOf(Kind::kLigature, kExtended, once.Extra(TableBuilder().U16(9)).Build(),
           {{kMajor, "Entry 3 needs 2 components, but at most 1 can be on the stack"}});
  MachineBuilder twoWays = Ligature(kExtended, 2);
  twoWays.Class("x", {7}).Entry("skip", {.next = "after f"});
  TableBuilder shortcut = twoWays.Build();
  ExpectOf(Kind::kLigature, kExtended, shortcut.Patch("start/x", 3),
           {{kMinor, "State 2, class 5: entry 2 needs 2 components, but there may be only 1 on the stack"}});
  // Row 1 as an ordinary state behind a push starts nothing.
  MachineBuilder ordinary(Kind::kLigature, kExtended);
  ordinary.Class("f", {5}).Class("i", {6});
  ordinary.State("start", {{"f", "push"}}).State("after f", {{"i", "make"}});
  ordinary.Entry("push", {.next = "after f", .flags = kPush}).Entry("make", {.flags = kPush | kAct, .words = {0}});
  ordinary.Extra(TableBuilder().U32(0x3FFFFFFB).U32(0xBFFFFFFB)).Extra(TableBuilder().Zeros(4));
  ExpectOf(Kind::kLigature, kExtended, ordinary.Extra(TableBuilder().U16(9)).Build(), {});
}

TEST(StateMachine, LigatureListsAndComponentsLieInTheirTables) {
  const auto patched = [](const char* field, uint64_t value) {
    return MessagesOf(Kind::kLigature, kExtended, Ligature(kExtended, 2).Build().Patch(field, value));
  };
  const std::string actions = "Entry 2: the ligature actions at 0x";
  EXPECT_EQ(patched("make.word0", 0x4000).front(), Says(kFatal, actions + "000100A8 lie beyond the end of the table"));
  EXPECT_EQ(patched("make.word0", 2).front(), Says(kMajor, actions + "000000B0 lie outside the action table"));
  EXPECT_EQ(patched("extra table 0", 0x3FFFFFFB3FFFFFFB).front(),
            Says(kFatal, actions + "000000A8 run beyond the end of the table"));
  EXPECT_EQ(patched("extra table 0", 0x3FFFFFFDBFFFFFFB).front(),
            Says(kMajor, "Entry 2, class 5: the components of glyphs 6 to 6 lie outside the component table"));
  EXPECT_EQ(
      patched("extra table 1", 0x00000005),
      std::vector<Message>({{kMinor, "1 components lead beyond the ligature table; the first is component 1 (5)"}}));
}

TEST(StateMachine, SubstitutionsAndInsertionsLieInTheirTables) {
  MachineBuilder contextual(Kind::kContextual, kExtended);
  contextual.Class("a", {1}).State("start", {{"a", "use"}}).State("line").Entry("use", {.words = {0xFFFF, 0}});
  contextual.Extra(TableBuilder().U32(4, "offset").Append(LookupFormat6({{1, 2}})));
  const auto use = [&](uint64_t index) {
    return MessagesOf(Kind::kContextual, kExtended, contextual.Build().Patch("use.word1", index)).front();
  };
  EXPECT_EQ(use(0x4000), Says(kFatal, "Substitution 16384 lies beyond the end of the table"));
  MachineBuilder insertion(Kind::kInsertion, kExtended);
  insertion.Class("a", {1}).State("start", {{"a", "put"}}).State("line");
  insertion.Entry("put", {.flags = 0x40, .words = {0, 0xFFFF}}).Extra(TableBuilder().U16(9).U16(0xFFFF));
  ExpectOf(Kind::kInsertion, kExtended, insertion.Build(), {{kInformation, "1 inserted glyphs are the deleted glyph"}});
  const auto put = [&](const char* field, uint64_t value) {
    return MessagesOf(Kind::kInsertion, kExtended, insertion.Build().Patch(field, value)).front();
  };
  EXPECT_EQ(put("put.word0", 1),
            Says(kFatal, "Entry 1: the inserted glyphs at 0x0000008A lie beyond the end of the table"));
  EXPECT_EQ(put("put.word0", 0xFFFF), Says(kMinor, "No action can ever be performed"));
  EXPECT_EQ(put("put.word1", 0).severity, kInformation);
}

TEST(StateMachine, KerningListsEndAndStatesMayPrecedeTheArray) {
  MachineBuilder machine(Kind::kKerning, kClassic);
  machine.Class("a", {1}).State("start", {{"a", "kern"}}).State("line");
  machine.Entry("kern", {.flags = kPush, .list = 0}).Extra(TableBuilder().S16(-50).S16(21));
  ExpectOf(Kind::kKerning, kClassic, machine.Build(),
           {{kMinor, "Entry 1 has 2 values, but at most 1 glyphs can be on the stack"}});
  const auto first = [&](const TableBuilder& table) { return MessagesOf(Kind::kKerning, kClassic, table).front(); };
  const TableBuilder good = machine.Build();
  EXPECT_EQ(first(good.With("extra table 0", 0x00020004)),
            Says(kFatal, "Entry 1: the values at 0x00000034 run beyond the end of the table"));
  EXPECT_EQ(first(good.With("kern.flags", 0xBFFF)),
            Says(kFatal, "Entry 1: the values at 0x0000400F lie beyond the end of the table"));
  TableBuilder second = good;
  const std::vector<Message> found =
      MessagesOf(Kind::kKerning, kClassic, second.Patch("stateArray", good.Offset("line/end")));
  EXPECT_EQ(std::ranges::count(
                found, Message{kInformation, "The state array offset is that of the initial state, not of the array"}),
            1);
  EXPECT_EQ(std::ranges::count(found, kMajor, &Message::severity), 0);
}

}  // namespace
