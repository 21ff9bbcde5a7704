#include "fuzz/RichFont.h"

#include "support/BitmapBuilder.h"
#include "support/CmapBuilder.h"
#include "support/GlyphBuilder.h"
#include "support/LayoutBuilder.h"
#include "support/MetadataBuilder.h"

namespace fuzz {

using namespace test;

namespace {

/// One of each kind of state machine and lookup, as small as they come, in the tables that hold them.
void AddLayoutTables(FontBuilder& font) {
  const auto machine = [](StateMachineKind kind, StateTableWidth width, const MachineBuilder::EntryFields& act) {
    MachineBuilder builder(kind, width);
    builder.Class("a", {1}).Entry("act", act).State("start", {{"a", "act"}}).State("line");
    for (int extra = 0; extra < 3; ++extra) builder.Extra({0x80, 0, 0, 4, 0, 8, 0, 1, 0, 1, 0, 3});
    return ChainSubtable{kind == StateMachineKind::kInsertion ? 5 : static_cast<uint32_t>(kind), builder.Build()};
  };
  const auto chains = [&](StateTableWidth width, const Bytes& lookup) {
    return ChainTable(width, {machine(StateMachineKind::kRearrangement, width, {.flags = 0xA001}),
                              machine(StateMachineKind::kContextual, width, {.flags = 0x8000, .words = {0, 1}}),
                              machine(StateMachineKind::kLigature, width, {.flags = 0xA000, .words = {0}}),
                              machine(StateMachineKind::kInsertion, width, {.flags = 0x821, .words = {0, 1}}),
                              {4, lookup}});
  };
  font.Table("morx", chains(StateTableWidth::kExtended, LookupFormat4({{1, {2, 3}}, {4, {9}}})).Patch("version", 3));
  font.Table("mort", chains(StateTableWidth::kClassic, LookupFormat2({{1, 2, 3}, {4, 4, 9}})));
  TableBuilder kern;
  const Bytes kerning =
      machine(StateMachineKind::kKerning, StateTableWidth::kClassic, {.flags = 0x8000, .list = 0}).body;
  kern.U32(0x00010000)
      .U32(4)
      .U32(28)
      .U16(0)
      .U16(0)
      .U16(2)
      .U16(12)
      .U16(1)
      .U16(0)
      .U16(1)
      .U16(2)
      .S16(3)
      .U16(1)
      .U16(3)
      .S16(4);
  kern.U32(8 + kerning.size()).U16(1).U16(0).Append(kerning);
  kern.U32(34).U16(2).U16(0).U16(2).U16(16).U16(22).U16(32).U16(1).U16(1).U16(32).U16(1).U16(1).U16(0).U16(0).S16(7);
  kern.U32(27).U16(3).U16(0).U16(5).U8(1).U8(1).U8(1).U8(0).S16(5).Zeros(10).U8(0);
  font.Table("kern", kern).Table("gvar", TableBuilder().U32(0x00010000).U16(1).U16(1).Zeros(12));
  font.Table("prop", TableBuilder().U32(0x00010000).U16(1).U16(0).Append(LookupFormat6({{1, 0x1100}, {2, 0x9F00}})));
  TableBuilder feat;
  feat.U32(0x00010000).U16(1).U16(0).U32(0).U16(3).U16(1).U32(24).U16(0x8000).S16(256).U16(0).S16(256);
  const Bytes classes = machine(StateMachineKind::kJustification, StateTableWidth::kClassic, {.flags = 5}).body;
  TableBuilder just;
  just.U32(0x00010000).U16(0).U16(10).U16(0).U16(0, "classes").U16(0, "deltas").U16(0, "actions");
  just.Append(LookupFormat8(1, {0})).Patch("deltas", just.Size()).U32(1).U32(5).Zeros(20);
  just.Patch("actions", just.Size())
      .Append(LookupFormat10(1, 1, {10}))
      .U8(0)
      .U32(2)
      .U16(5)
      .U16(0)
      .U32(22)
      .U32(1)
      .U32(2);
  just.U16(0).U16(1).U16(1).U16(5).U16(4).U32(24).Text("wght").Zeros(12);
  just.Patch("classes", just.Size()).U16(8 + classes.size()).U16(0).U32(0).Append(classes);
  TableBuilder zapf;
  zapf.U32(0x00010000).U32(28).U32(28).U32(0).U32(0).U32(0).U32(0);
  zapf.U32(23).U32(41).U16(1).U16('A').U16(2).U8(1).U8(1).Text("A").U8(64).U16(34).U8(0);
  zapf.U16(0x4001).U16(0).U32(31).U16(0x8001).U16(0).U16(256).U16(1).U16(0).U16(0).U16(1).U16(3).U16(0);
  font.Table("feat", feat).Table("just", just).Table("Zapf", zapf);
}

}  // namespace

FontBuilder RichFont() {
  const Bytes program = {0xB0, 1, 0x58, 0x1B, 0x59};
  FontBuilder font = OutlineFont({SquareGlyph(500, program),
                                  {},
                                  SquareGlyph(100),
                                  CompoundGlyph({{0x0003, 0}, {0x000B, 2}}),
                                  CompoundGlyph({{0x0003, 3}})});
  font.Table("cmap", CmapTable({{1, 0, CmapFormat0({{'A', 1}})},
                                {3, 2, CmapFormat2({{0x81, 1}}, {{0, {1}}, {0x40, {2, 3}}})},
                                {3, 1, CmapFormat4({{'A', 'B', 1 - 'A'}, {'a', 'b', 0, {1, 2}}})},
                                {0, 3, CmapFormat6('A', {1, 2})},
                                {3, 10, CmapGroups(12, {{'A', 'B', 1}, {0x10000, 0x10001, 2}})},
                                {0, 4, CmapGroups(13, {{'A', 'B', 1}})},
                                {3, 10, CmapFormat10('A', {1, 2})},
                                {0, 5, CmapFormat14({{0xFE00, {{'A', 1}}, {{'B', 2}}}})}}));
  font.Table("fpgm", {0x2C, 0xB1, 1, 2, 0x2D}).Table("prep", program).Table("vhea", HheaTable(2));
  TableBuilder vmtx = MetricsTable({{600, 0}, {600, 0}});
  font.Table("vmtx", vmtx.Zeros(6));
  TableBuilder hdmx;
  font.Table("hdmx", hdmx.U16(0).U16(1).U32(8).U8(10).U8(6).Append({6, 6, 6, 6, 6, 0}));
  TableBuilder fdsc;
  AddLayoutTables(font);
  font.Table("fdsc", fdsc.U32(0x00010000).U32(1).Text("slnt").U32(0));
  font.Table("name",
             NameRecordsTable({{1, 0, 0, 1, "Rich"}, MicrosoftName(3, "Rich"), MicrosoftName(6, "Rich")}, {"de"}));
  font.Table("post", StoredNamesTable({0, 258, 36, 259, 1}, {"alpha", "uni0041"})).Table("OS/2", OS2Table(5));
  const Bytes image = {2, 3, 0, 2, 4, 0xE0, 0xE0};
  const Bytes composite = {2, 3, 0, 2, 4, 0, 0, 2, 0, 1, 0, 0, 0, 2, 0, 0};
  font.Table("EBLC", BitmapLocationTable({{8,
                                           {{0, 1, BitmapIndex1(1, {0, 7, 14})},
                                            {2, 2, BitmapIndex3(8, {14, 30})},
                                            {3, 3, BitmapIndex2(5, 1, 2, 3)},
                                            {4, 4, BitmapIndex4(2, {{4, 0}, {0, 6}})}},
                                           0,
                                           4},
                                          {9, {{0, 4, BitmapIndex5(5, 1, 2, 3, {0, 4})}}, 0, 4}}));
  font.Table("EBDT", BitmapDataTable({image, image, composite}));
  TableBuilder scaled;
  return font.Table("EBSC", scaled.U32(0x00020000).U32(1).Zeros(24).U8(9).U8(9).U8(8).U8(8));
}

test::SuitcaseBuilder RichSuitcase() {
  FamilyBuilder family;
  family.fat = {{12, 0, 300}, {0, 0, 128}};
  family.strings = {"Base", "\x03", "Bold"};
  family.indexes = {1, 2};
  family.kerning = {{0, 1}, {1, 1}};
  family.hasWidths = true;
  SuitcaseBuilder suitcase;
  suitcase.Add("sfnt", 128, FontBuilder().Build()).Add("FOND", 128, family.Build(), "Base");
  return suitcase.Add("NFNT", 300, Bytes(26));
}

}  // namespace fuzz
