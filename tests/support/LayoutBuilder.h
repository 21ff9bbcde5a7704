#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Tests/StateMachine.h"
#include "support/TableBuilder.h"

namespace test {

/// Lookup tables of the layout tables, right in every field unless what they are given is not: with a search header, in
/// order of their units, with an end marker. Labels: "format", "unitSize", "unitCount", "searchRange", "entrySelector",
/// "rangeShift"; "first", "last" and "value" (or "offset") with the unit's index; "marker".
TableBuilder LookupFormat0(const std::vector<uint16_t>& values);
struct LookupSegment {
  uint16_t first;
  uint16_t last;
  uint16_t value;
};
TableBuilder LookupFormat2(const std::vector<LookupSegment>& segments);
/// First glyphs, and the values from there on.
TableBuilder LookupFormat4(const std::vector<std::pair<uint16_t, std::vector<uint16_t>>>& segments);
/// Glyphs and their values.
TableBuilder LookupFormat6(const std::vector<std::pair<uint16_t, uint16_t>>& units);
TableBuilder LookupFormat8(uint16_t first, const std::vector<uint16_t>& values);
TableBuilder LookupFormat10(uint16_t valueSize, uint16_t first, const std::vector<uint16_t>& values);

/// Builds a state table of either width from classes, states and entries by name, so that a test reads like the machine
/// that it builds:
///
///   MachineBuilder machine(StateMachineKind::kLigature, StateTableWidth::kExtended);
///   machine.Class("f", {5}).Class("i", {6});
///   machine.State("start", {{"f", "push"}}).State("line").State("after f", {{"i", "make"}});
///   machine.Entry("push", {.next = "after f", .flags = 0x8000});
///   machine.Entry("make", {.next = "start", .flags = 0xA000, .words = {0}});
///   machine.Extra(actions).Extra(components).Extra(ligatures);
///
/// Classes "end", "other", "deleted" and "line" are there; the classes that a state leaves out have the entry "stay",
/// which is the first, does nothing and leads to the first state. Extra tables stand in the order of the header.
///
/// Labels: "classCount", "classTable", "stateArray", "entryTable", "extra0"; "STATE/CLASS" for a cell; "ENTRY.next",
/// "ENTRY.flags", "ENTRY.word0"; "classes", "states", "entries" and "extra table 0" for what the offsets lead to.
class MachineBuilder {
 public:
  struct EntryFields {
    std::string next = {};  ///< a state; the first when left out
    uint16_t flags = 0;
    std::vector<uint16_t> words = {};
    /// Classic ligatures and kerning: bytes from the start of the first extra table, added to the flags as the offset
    /// of the entry's list. Classic insertion: of the current glyph's list, behind the last table.
    std::optional<uint16_t> list = std::nullopt;
  };

  MachineBuilder(StateMachineKind kind, StateTableWidth width);
  /// A class of glyphs, which ascend; it gets the next number from 4 on.
  MachineBuilder& Class(const std::string& name, const std::vector<uint16_t>& glyphs);
  MachineBuilder& State(const std::string& name, const std::map<std::string, std::string>& cells = {});
  MachineBuilder& Entry(const std::string& name, const EntryFields& fields);
  MachineBuilder& Extra(const Bytes& table);

  TableBuilder Build() const;

 private:
  bool IsExtended() const { return width_ == StateTableWidth::kExtended; }
  size_t StateNumber(const std::string& name) const;
  size_t EntryNumber(const std::string& name) const;
  TableBuilder ClassTable() const;

  StateMachineKind kind_;
  StateTableWidth width_;
  std::vector<std::string> classes_ = {"end", "other", "deleted", "line"};
  std::map<uint16_t, uint16_t> glyphs_;  // and their classes
  std::vector<std::pair<std::string, std::map<std::string, std::string>>> states_;
  std::vector<std::pair<std::string, EntryFields>> entries_ = {{"stay", {}}};
  std::vector<Bytes> extras_;
};

/// A subtable of a chain.
struct ChainSubtable {
  uint32_t type;  ///< 0, 1, 2, 4 or 5
  Bytes body;
  uint32_t flags = 1;
};
/// A feature entry of a chain.
struct ChainFeature {
  uint16_t type;
  uint16_t setting;
  uint32_t enable;
};
/// 'morx' (version 2) or 'mort' with one chain. Without features, a feature of type 3 switches the flags of all
/// subtables on, and the list ends as it should. Labels: "version", "reserved", "chainCount"; "defaultFlags",
/// "chainLength", "featureCount", "subtableCount"; "type", "setting", "enable" with the entry's index; "length",
/// "coverage", "flags" and "body" with the subtable's.
TableBuilder ChainTable(StateTableWidth width, const std::vector<ChainSubtable>& subtables,
                        std::vector<ChainFeature> features = {}, uint32_t defaultFlags = 1);

}  // namespace test
