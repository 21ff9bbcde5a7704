#include "support/SuitcaseBuilder.h"

#include <algorithm>
#include <map>

namespace test {
namespace {

constexpr size_t kHeaderSize = 128;

void Pad(TableBuilder& table, size_t to) { table.Zeros((to - table.Size() % to) % to); }

TableBuilder EntryTable(uint32_t magic, const std::vector<std::pair<uint32_t, Bytes>>& entries) {
  TableBuilder table;
  table.U32(magic, "magic").U32(0x00020000, "version").Zeros(16).U16(entries.size(), "entryCount");
  size_t offset = table.Size() + 12 * entries.size();
  for (const auto& [id, bytes] : entries) {
    const std::string label = "entry." + std::to_string(id);
    table.U32(id, label).U32(offset, label + ".offset").U32(bytes.size(), label + ".length");
    offset += bytes.size();
  }
  for (const auto& [id, bytes] : entries) table.Append(bytes);
  return table;
}

Bytes FinderInfo(const std::string& type) { return TableBuilder().Text(type).Text("ttxt").Zeros(24); }

uint16_t Crc(const Bytes& bytes) {
  unsigned crc = 0;
  for (const uint8_t byte : bytes) {
    for (int bit = 7; bit >= 0; --bit) {
      const bool carry = (crc >> 15 & 1) != (byte >> bit & 1U);
      crc = (crc << 1 ^ (carry ? 0x1021U : 0)) & 0xFFFFU;
    }
  }
  return static_cast<uint16_t>(crc);
}

}  // namespace

SuitcaseBuilder& SuitcaseBuilder::Add(const std::string& type, int id, Bytes data, const std::string& name) {
  entries_.push_back({type, id, std::move(data), name});
  return *this;
}

TableBuilder SuitcaseBuilder::Build() const {
  std::vector<std::string> types;
  size_t dataLength = 0, nameLength = 0;
  for (const Entry& entry : entries_) {
    if (std::ranges::find(types, entry.type) == types.end()) types.push_back(entry.type);
    dataLength += 4 + entry.data.size();
    nameLength += entry.name.empty() ? 0 : 1 + entry.name.size();
  }
  const size_t typeListLength = 2 + 8 * types.size();
  const size_t namesAt = 28 + typeListLength + 12 * entries_.size();

  TableBuilder fork, references, names;
  fork.U32(16, "dataOffset").U32(16 + dataLength, "mapOffset");
  fork.U32(dataLength, "dataLength").U32(namesAt + nameLength, "mapLength");
  std::map<const Entry*, size_t> places;
  for (const Entry& entry : entries_) {
    places[&entry] = fork.Size() - 16;
    fork.U32(entry.data.size(), entry.type + "." + std::to_string(entry.id) + ".length").Append(entry.data);
  }
  fork.Zeros(24, "map").U16(28, "typeList").U16(namesAt, "nameList").U16(types.size() - 1, "typeCount");
  size_t before = 0;
  for (const std::string& type : types) {
    const auto count = static_cast<size_t>(std::ranges::count(entries_, type, &Entry::type));
    fork.Text(type).U16(count - 1, type + ".count");
    fork.U16(typeListLength + 12 * before, type + ".references");
    before += count;
  }
  for (const std::string& type : types) {
    for (const Entry& entry : entries_) {
      if (entry.type != type) continue;
      const std::string label = type + "." + std::to_string(entry.id);
      fork.S16(entry.id, label + ".id").U16(entry.name.empty() ? 0xFFFF : names.Size(), label + ".name");
      fork.U8(0).U24(places[&entry], label + ".data").U32(0);
      if (!entry.name.empty()) names.U8(entry.name.size()).Text(entry.name);
    }
  }
  return fork.Append(names, "names");
}

TableBuilder Sidecar(const Bytes& resourceFork, const std::string& type) {
  if (type.empty()) return EntryTable(0x00051607, {{2, resourceFork}});
  return EntryTable(0x00051607, {{9, FinderInfo(type)}, {2, resourceFork}});
}

TableBuilder OneFile(const Bytes& dataFork, const Bytes& resourceFork, const std::string& type) {
  if (type.empty()) return EntryTable(0x00051600, {{1, dataFork}, {2, resourceFork}});
  return EntryTable(0x00051600, {{9, FinderInfo(type)}, {1, dataFork}, {2, resourceFork}});
}

TableBuilder HeaderForm(const Bytes& dataFork, const Bytes& resourceFork, const std::string& type) {
  TableBuilder file;
  file.U8(0, "zero").U8(8, "nameLength").Text("Suitcase").Zeros(55).Text(type).Text("ttxt").Zeros(1).U8(0, "zero74");
  file.Zeros(8).U32(dataFork.size(), "dataLength").U32(resourceFork.size(), "resourceLength").Zeros(33);
  file.U16(Crc(file), "crc").Zeros(2);
  file.Append(dataFork);
  Pad(file, kHeaderSize);
  file.Append(resourceFork);
  Pad(file, kHeaderSize);
  return file;
}

TableBuilder FamilyBuilder::Build() const {
  TableBuilder table;
  table.Zeros(16).U32(0, "widthOffset").U32(0, "kernOffset").U32(0, "styleOffset").Zeros(24);
  table.U16(fat.size() - 1, "fatCount");
  for (size_t i = 0; i < fat.size(); ++i) {
    const std::string label = "fat." + std::to_string(i);
    table.U16(static_cast<uint64_t>(fat[i].size), label + ".size").U16(static_cast<uint64_t>(fat[i].style));
    table.S16(fat[i].id, label + ".id");
  }
  table.Zeros(0, "fatEnd");
  if (hasOffsets) table.U16(0, "offsetCount").U32(54, "offset.0");
  if (hasOffsets && boxes > 0) {
    table.U16(static_cast<uint64_t>(boxes - 1), "boxCount");
    for (int i = 0; i < boxes; ++i) table.Zeros(10, "box." + std::to_string(i));
  }
  if (!strings.empty()) {
    table.Patch("styleOffset", table.Size());
    table.U16(0, "styles").U32(0, "glyphEncoding").U32(0);
    for (size_t i = 0; i < 48; ++i) table.S8(i < indexes.size() ? indexes[i] : 1, "index." + std::to_string(i));
    table.U16(strings.size(), "stringCount");
    for (const std::string& string : strings) table.U8(string.size()).Text(string);
  }
  if (!kerning.empty()) {
    table.Patch("kernOffset", table.Size()).U16(kerning.size() - 1, "kernCount");
    for (size_t i = 0; i < kerning.size(); ++i) {
      const std::string label = "kern." + std::to_string(i);
      table.U16(static_cast<uint64_t>(kerning[i].style)).S16(kerning[i].pairs, label + ".pairs");
      table.Zeros(4 * static_cast<size_t>(kerning[i].pairs));
    }
  }
  if (hasWidths) table.Patch("widthOffset", table.Size()).Zeros(8, "widths");
  return table.Zeros(2, "end");
}

std::vector<Bytes> OutlinePieces() {
  return {TableBuilder().U8(1).U8(0).Text("%!FontType1-1.0: Outline\n/FontName\t/Outline def\r"),
          TableBuilder().U8(2).U8(0).U32(0x12345678), TableBuilder().U8(5).U8(0)};
}

SuitcaseBuilder OutlineFile(const std::vector<Bytes>& pieces) {
  SuitcaseBuilder file;
  for (size_t i = 0; i < pieces.size(); ++i) file.Add("POST", 501 + static_cast<int>(i), pieces[i]);
  return file;
}

}  // namespace test
