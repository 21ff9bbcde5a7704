#include "support/FontBuilder.h"

#include <algorithm>
#include <bit>
#include <stdexcept>

#include "support/CmapBuilder.h"
#include "support/GlyphBuilder.h"
#include "support/MetadataBuilder.h"

namespace test {

namespace {

constexpr size_t kHeaderSize = 12;
constexpr size_t kEntrySize = 16;

size_t Padded(size_t size) { return (size + 3) / 4 * 4; }

uint32_t Checksum(const Bytes& bytes) {
  uint32_t sum = 0;
  for (size_t i = 0; i < bytes.size(); ++i) sum += uint32_t{bytes[i]} << (24 - 8 * (i % 4));
  return sum;
}

}  // namespace

FontBuilder::Part* FontBuilder::Find(const std::string& tag) {
  const auto part =
      std::ranges::find_if(parts_, [&](const Part& candidate) { return candidate.tag == tag && !candidate.entryOnly; });
  return part == parts_.end() ? nullptr : &*part;
}

FontBuilder& FontBuilder::Table(const std::string& tag, Bytes bytes) {
  if (Part* part = Find(tag)) {
    part->bytes = std::move(bytes);
  } else {
    parts_.push_back({tag, std::move(bytes)});
  }
  return *this;
}

FontBuilder& FontBuilder::Remove(const std::string& tag) {
  std::erase_if(parts_, [&](const Part& part) { return part.tag == tag; });
  return *this;
}

FontBuilder& FontBuilder::Truncate(const std::string& tag, size_t size) {
  (*this)[tag].resize(size);
  return *this;
}

Bytes& FontBuilder::operator[](const std::string& tag) {
  Part* part = Find(tag);
  if (!part) throw std::invalid_argument("no table " + tag);
  return part->bytes;
}

FontBuilder& FontBuilder::Entry(const std::string& tag, uint32_t offset, uint32_t length) {
  parts_.push_back({tag, {}, true, offset, length});
  return *this;
}

Bytes FontBuilder::Build(size_t base) const {
  const auto count = static_cast<uint16_t>(parts_.size());
  const uint32_t power = std::bit_floor(uint32_t{count});
  TableBuilder font;
  font.U32(scaler_).U16(statedCount_ < 0 ? count : static_cast<uint64_t>(statedCount_));
  font.U16(power * 16).U16(power ? static_cast<uint64_t>(std::bit_width(power) - 1) : 0).U16((count - power) * 16);
  size_t at = base + kHeaderSize + kEntrySize * parts_.size();
  for (const Part& part : parts_) {
    font.Text(part.tag).U32(Checksum(part.bytes));
    font.U32(part.entryOnly ? part.offset : at).U32(part.entryOnly ? part.length : part.bytes.size());
    at += Padded(part.bytes.size());
  }
  for (const Part& part : parts_) font.Append(part.bytes).Zeros(Padded(part.bytes.size()) - part.bytes.size());
  return font;
}

Bytes BuildCollection(const std::vector<FontBuilder>& fonts) {
  TableBuilder collection;
  collection.Text("ttcf").U32(0x00010000).U32(fonts.size());
  size_t at = collection.Size() + 4 * fonts.size();
  Bytes bodies;
  for (const FontBuilder& font : fonts) {
    collection.U32(at + bodies.size());
    const Bytes body = font.Build(at + bodies.size());
    bodies.insert(bodies.end(), body.begin(), body.end());
  }
  return collection.Append(bodies);
}

TableBuilder HeadTable() {
  TableBuilder head;
  head.U32(0x00010000, "version").U32(0x00010000, "fontRevision").U32(0x1234ABCD, "checkSumAdjustment");
  head.U32(0x5F0F3CF5, "magicNumber").U16(0x000B, "flags").U16(1000, "unitsPerEm");
  head.U64(3800000000, "created").U64(3800000000, "modified");
  head.S16(0, "xMin").S16(0, "yMin").S16(500, "xMax").S16(700, "yMax");
  head.U16(0, "style").U16(8, "lowestRecPPEM").S16(2, "fontDirectionHint");
  return head.S16(1, "indexToLocFormat").S16(0, "glyphDataFormat");
}

TableBuilder HheaTable(uint16_t longMetrics) {
  TableBuilder hhea;
  hhea.U32(0x00010000, "version").S16(800, "ascender").S16(-200, "descender").S16(0, "lineGap");
  hhea.U16(600, "advanceWidthMax").S16(0, "minLeftSideBearing").S16(0, "minRightSideBearing").S16(500, "xMaxExtent");
  hhea.S16(1, "caretSlopeRise").S16(0, "caretSlopeRun").S16(0, "caretOffset");
  for (const char* label : {"reserved0", "reserved1", "reserved2", "reserved3"}) hhea.S16(0, label);
  return hhea.S16(0, "metricDataFormat").U16(longMetrics, "numberOfHMetrics");
}

TableBuilder MaxpTable(uint16_t glyphs) {
  TableBuilder maxp;
  maxp.U32(0x00010000, "version").U16(glyphs, "numGlyphs").U16(4, "maxPoints").U16(1, "maxContours");
  maxp.U16(0, "maxCompositePoints").U16(0, "maxCompositeContours").U16(2, "maxZones").U16(0, "maxTwilightPoints");
  maxp.U16(0, "maxStorage").U16(0, "maxFunctionDefs").U16(0, "maxInstructionDefs").U16(0, "maxStackElements");
  return maxp.U16(0, "maxSizeOfInstructions").U16(0, "maxComponentElements").U16(0, "maxComponentDepth");
}

TableBuilder PostTable() {
  TableBuilder post;
  post.U32(0x00030000, "version").S32(0, "italicAngle").S16(-100, "underlinePosition").S16(50, "underlineThickness");
  post.U32(0, "isFixedPitch").U32(0, "minMemType42").U32(0, "maxMemType42").U32(0, "minMemType1");
  return post.U32(0, "maxMemType1");
}

TableBuilder NameTable(const std::vector<std::pair<uint16_t, std::string>>& names) {
  TableBuilder records;
  TableBuilder storage;
  for (const auto& [code, text] : names) {
    records.U16(3).U16(1).U16(0x409).U16(code).U16(2 * text.size()).U16(storage.Size());
    for (const char character : text) storage.U16(static_cast<uint8_t>(character));
  }
  TableBuilder table;
  table.U16(0, "format").U16(names.size(), "count").U16(6 + records.Size(), "stringOffset");
  return table.Append(records, "records").Append(storage, "storage");
}

TableBuilder MetricsTable(const std::vector<std::pair<uint16_t, int16_t>>& metrics) {
  TableBuilder table;
  for (const auto& [advance, sideBearing] : metrics) table.U16(advance).S16(sideBearing);
  return table;
}

FontBuilder GoodFont() {
  const auto outline = [](const Contour& points) {
    TableBuilder glyph = SimpleGlyph({points}, {}, PointEncoding::kWords);
    return glyph.Zeros(Padded(glyph.Size()) - glyph.Size());
  };
  const TableBuilder square = outline({{0, 0}, {0, 500}, {500, 500}, {500, 0}});
  const TableBuilder triangle = outline({{0, 0}, {250, 700}, {500, 0}});
  const TableBuilder glyf = TableBuilder(square).Append(triangle);
  const TableBuilder loca = TableBuilder().U32(0).U32(square.Size()).U32(square.Size()).U32(glyf.Size());
  const TableBuilder cmap = CmapTable({{3, 1, CmapFormat4({{' ', ' ', 1 - ' '}, {'A', 'A', 2 - 'A'}})}});

  FontBuilder font;
  font.Table("cmap", cmap)
      .Table("glyf", glyf)
      .Table("head", HeadTable())
      .Table("hhea", HheaTable(3).Patch("minRightSideBearing", 100));
  font.Table("hmtx", MetricsTable({{600, 0}, {600, 0}, {600, 0}})).Table("loca", loca).Table("maxp", MaxpTable(3));
  font.Table("name", NameTable({{1, "Good"},
                                {2, "Regular"},
                                {3, "Good 1.0"},
                                {4, "Good Regular"},
                                {5, "Version 1.0"},
                                {6, "Good-Regular"}}));
  font.Table("OS/2", OS2Table(4));
  return font.Table("post", PostTable());
}

}  // namespace test
