#include "support/LayoutBuilder.h"

#include <algorithm>
#include <bit>
#include <stdexcept>

namespace test {

namespace {

constexpr size_t kUnits = 12;

std::string At(const std::string& label, size_t index) { return label + std::to_string(index); }

TableBuilder SearchHeader(uint16_t format, size_t unitSize, size_t count) {
  const size_t power = std::bit_floor(count);
  TableBuilder table;
  table.U16(format, "format").U16(unitSize, "unitSize").U16(count, "unitCount").U16(unitSize * power, "searchRange");
  table.U16(count ? static_cast<size_t>(std::bit_width(count)) - 1 : 0, "entrySelector");
  return table.U16(unitSize * (count - power), "rangeShift");
}

TableBuilder& Unit(TableBuilder& table, size_t index, uint16_t last, uint16_t first) {
  return table.U16(last, At("last", index)).U16(first, At("first", index));
}

}  // namespace

TableBuilder LookupFormat0(const std::vector<uint16_t>& values) {
  TableBuilder table;
  table.U16(0, "format");
  for (const uint16_t value : values) table.U16(value);
  return table;
}

TableBuilder LookupFormat2(const std::vector<LookupSegment>& segments) {
  TableBuilder table = SearchHeader(2, 6, segments.size());
  for (size_t i = 0; i < segments.size(); ++i) {
    Unit(table, i, segments[i].last, segments[i].first).U16(segments[i].value, At("value", i));
  }
  return table.U16(0xFFFF, "marker").U16(0xFFFF).U16(0);
}

TableBuilder LookupFormat4(const std::vector<std::pair<uint16_t, std::vector<uint16_t>>>& segments) {
  TableBuilder table = SearchHeader(4, 6, segments.size());
  size_t array = kUnits + 6 * (segments.size() + 1);
  for (size_t i = 0; i < segments.size(); ++i) {
    const auto& [first, values] = segments[i];
    Unit(table, i, static_cast<uint16_t>(first + values.size() - 1), first).U16(array, At("offset", i));
    array += 2 * values.size();
  }
  table.U16(0xFFFF, "marker").U16(0xFFFF).U16(0);
  for (const auto& [first, values] : segments) {
    for (const uint16_t value : values) table.U16(value);
  }
  return table;
}

TableBuilder LookupFormat6(const std::vector<std::pair<uint16_t, uint16_t>>& units) {
  TableBuilder table = SearchHeader(6, 4, units.size());
  for (size_t i = 0; i < units.size(); ++i)
    table.U16(units[i].first, At("first", i)).U16(units[i].second, At("value", i));
  return table.U16(0xFFFF, "marker").U16(0);
}

TableBuilder LookupFormat8(uint16_t first, const std::vector<uint16_t>& values) {
  TableBuilder table;
  table.U16(8, "format").U16(first, "first").U16(values.size(), "count");
  for (const uint16_t value : values) table.U16(value);
  return table;
}

TableBuilder LookupFormat10(uint16_t valueSize, uint16_t first, const std::vector<uint16_t>& values) {
  TableBuilder table;
  table.U16(10, "format").U16(valueSize, "valueSize").U16(first, "first").U16(values.size(), "count");
  for (const uint16_t value : values) {
    if (valueSize == 1) table.U8(value);
    if (valueSize > 1) table.Zeros(valueSize - 2u).U16(value);
  }
  return table;
}

MachineBuilder::MachineBuilder(StateMachineKind kind, StateTableWidth width) : kind_(kind), width_(width) {}

MachineBuilder& MachineBuilder::Class(const std::string& name, const std::vector<uint16_t>& glyphs) {
  for (const uint16_t glyph : glyphs) glyphs_[glyph] = static_cast<uint16_t>(classes_.size());
  classes_.push_back(name);
  return *this;
}

MachineBuilder& MachineBuilder::State(const std::string& name, const std::map<std::string, std::string>& cells) {
  states_.emplace_back(name, cells);
  return *this;
}

MachineBuilder& MachineBuilder::Entry(const std::string& name, const EntryFields& fields) {
  entries_.emplace_back(name, fields);
  return *this;
}

MachineBuilder& MachineBuilder::Extra(const Bytes& table) {
  extras_.push_back(table);
  return *this;
}

size_t MachineBuilder::StateNumber(const std::string& name) const {
  if (name.empty()) return 0;
  const auto state = std::ranges::find(states_, name, [](const auto& candidate) { return candidate.first; });
  if (state == states_.end()) throw std::invalid_argument("no state " + name);
  return static_cast<size_t>(state - states_.begin());
}

size_t MachineBuilder::EntryNumber(const std::string& name) const {
  const auto entry = std::ranges::find(entries_, name, [](const auto& candidate) { return candidate.first; });
  if (entry == entries_.end()) throw std::invalid_argument("no entry " + name);
  return static_cast<size_t>(entry - entries_.begin());
}

TableBuilder MachineBuilder::ClassTable() const {
  if (IsExtended()) return LookupFormat6({glyphs_.begin(), glyphs_.end()});
  TableBuilder table;
  const uint16_t first = glyphs_.empty() ? 0 : glyphs_.begin()->first;
  const size_t count = glyphs_.empty() ? 0 : glyphs_.rbegin()->first - first + 1u;
  table.U16(first, "firstGlyph").U16(count, "glyphCount");
  for (size_t i = 0; i < count; ++i) {
    const auto glyph = glyphs_.find(static_cast<uint16_t>(first + i));
    table.U8(glyph == glyphs_.end() ? 1 : glyph->second, "class of " + std::to_string(first + i));
  }
  return table;
}

TableBuilder MachineBuilder::Build() const {
  const size_t field = IsExtended() ? 4 : 2;
  const StateMachine layout({}, kind_, width_, 0, 0);
  TableBuilder table;
  const auto put = [&](size_t value, const std::string& label) {
    field == 4 ? table.U32(value, label) : table.U16(value, label);
  };
  put(classes_.size(), "classCount");
  for (const char* label : {"classTable", "stateArray", "entryTable"}) put(0, label);
  for (size_t i = 0; i < layout.ExtraCount(); ++i) put(0, At("extra", i));

  const auto align = [&] { table.Zeros((4 - table.Size() % 4) % 4); };
  table.Patch("classTable", table.Size()).Append(ClassTable(), "classes");
  align();
  table.Patch("stateArray", table.Size());
  const size_t rows = table.Size();
  for (const auto& [state, cells] : states_) {
    for (const std::string& name : classes_) {
      const auto cell = cells.find(name);
      const size_t entry = cell == cells.end() ? 0 : EntryNumber(cell->second);
      const std::string label = state + "/" + name;
      IsExtended() ? table.U16(entry, label) : table.U8(entry, label);
    }
  }
  if (table.Size() % 2 != 0) table.U8(0);
  table.Patch("entryTable", table.Size());
  const size_t behind = table.Size() + entries_.size() * layout.EntrySize();
  const size_t firstExtra = (behind + 3) / 4 * 4;
  for (const auto& [name, fields] : entries_) {
    const size_t next = StateNumber(fields.next);
    const bool listInFlags = kind_ != StateMachineKind::kInsertion;
    const size_t list = fields.list ? (listInFlags ? firstExtra : behind) + *fields.list : 0;
    table.U16(IsExtended() ? next : rows + next * classes_.size(), name + ".next");
    table.U16(fields.flags | (listInFlags ? list : 0), name + ".flags");
    for (size_t i = 0; i < layout.WordCount(); ++i) {
      const uint16_t none = IsExtended() && kind_ != StateMachineKind::kLigature ? 0xFFFF : 0;
      const size_t word = i < fields.words.size() ? fields.words[i] : none;
      table.U16(i == 0 && !listInFlags && fields.list ? list : word, name + At(".word", i));
    }
  }
  for (size_t i = 0; i < extras_.size(); ++i) {
    if (i < layout.ExtraCount()) {
      align();
      table.Patch(At("extra", i), table.Size());
    }
    table.Append(extras_[i], At("extra table ", i));
  }
  return table;
}

TableBuilder ChainTable(StateTableWidth width, const std::vector<ChainSubtable>& subtables,
                        std::vector<ChainFeature> features, uint32_t defaultFlags) {
  const bool extended = width == StateTableWidth::kExtended;
  if (features.empty()) {
    uint32_t flags = 0;
    for (const ChainSubtable& subtable : subtables) flags |= subtable.flags;
    features = {{3, 0, flags}, {0, 1, 0}};
  }
  TableBuilder table;
  if (extended) table.U16(2, "version").U16(0, "reserved");
  if (!extended) table.U32(0x00010000, "version");
  table.U32(1, "chainCount");
  const size_t start = table.Size();
  table.U32(defaultFlags, "defaultFlags").U32(0, "chainLength");
  const auto number = [&](size_t value, const std::string& label) {
    extended ? table.U32(value, label) : table.U16(value, label);
  };
  number(features.size(), "featureCount");
  number(subtables.size(), "subtableCount");
  for (size_t i = 0; i < features.size(); ++i) {
    table.U16(features[i].type, At("type", i)).U16(features[i].setting, At("setting", i));
    table.U32(features[i].enable, At("enable", i)).U32(0xFFFFFFFF);
  }
  for (size_t i = 0; i < subtables.size(); ++i) {
    Bytes body = subtables[i].body;
    body.resize((body.size() + 3) / 4 * 4);
    number(body.size() + (extended ? 12 : 8), At("length", i));
    number(subtables[i].type, At("coverage", i));
    table.U32(subtables[i].flags, At("flags", i)).Append(body, At("body", i));
  }
  return table.Patch("chainLength", table.Size() - start);
}

}  // namespace test
