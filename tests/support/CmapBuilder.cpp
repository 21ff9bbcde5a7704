#include "support/CmapBuilder.h"

#include <bit>
#include <string>

namespace test {

namespace {

std::string At(const std::string& label, size_t index) { return label + std::to_string(index); }

TableBuilder Header16(uint16_t format) {
  return TableBuilder().U16(format, "format").U16(0, "length").U16(0, "language");
}

TableBuilder Header32(uint16_t format) {
  return TableBuilder().U16(format, "format").U16(0).U32(0, "length").U32(0, "language");
}

TableBuilder& Close(TableBuilder& table) { return table.Patch("length", table.Size()); }

}  // namespace

TableBuilder CmapFormat0(const std::map<uint8_t, uint8_t>& glyphs) {
  TableBuilder table = Header16(0);
  for (size_t code = 0; code < 256; ++code) {
    const auto glyph = glyphs.find(static_cast<uint8_t>(code));
    table.U8(glyph == glyphs.end() ? 0 : glyph->second, At("glyph", code));
  }
  return Close(table);
}

TableBuilder CmapFormat2(const std::map<uint8_t, uint16_t>& keys, const std::vector<CmapSubheader>& subheaders) {
  TableBuilder table = Header16(2);
  for (size_t high = 0; high < 256; ++high) {
    const auto key = keys.find(static_cast<uint8_t>(high));
    table.U16(key == keys.end() ? 0 : key->second * 8u, At("subHeaderKey", high));
  }
  size_t array = 518 + 8 * subheaders.size();
  for (size_t k = 0; k < subheaders.size(); ++k) {
    const CmapSubheader& subheader = subheaders[k];
    table.U16(subheader.firstCode).U16(subheader.glyphs.size(), At("entryCount", k)).U16(subheader.idDelta);
    table.U16(array - table.Size(), At("idRangeOffset", k));
    array += 2 * subheader.glyphs.size();
  }
  for (const CmapSubheader& subheader : subheaders) {
    for (const uint16_t glyph : subheader.glyphs) table.U16(glyph);
  }
  return Close(table);
}

TableBuilder CmapFormat4(std::vector<CmapSegment> segments) {
  segments.push_back({0xFFFF, 0xFFFF, 1});
  const size_t count = segments.size();
  const size_t power = std::bit_floor(count);
  TableBuilder table = Header16(4);
  table.U16(2 * count, "segCountX2").U16(2 * power, "searchRange");
  table.U16(static_cast<size_t>(std::bit_width(count)) - 1, "entrySelector").U16(2 * (count - power), "rangeShift");
  for (size_t k = 0; k < count; ++k) table.U16(segments[k].endCode, At("endCode", k));
  table.U16(0);
  for (size_t k = 0; k < count; ++k) table.U16(segments[k].startCode, At("startCode", k));
  for (size_t k = 0; k < count; ++k) table.S16(segments[k].idDelta, At("idDelta", k));
  size_t array = 16 + 8 * count;
  for (size_t k = 0; k < count; ++k) {
    const std::vector<uint16_t>& glyphs = segments[k].glyphs;
    table.U16(glyphs.empty() ? 0 : array - table.Size(), At("idRangeOffset", k));
    array += 2 * glyphs.size();
  }
  for (const CmapSegment& segment : segments) {
    for (const uint16_t glyph : segment.glyphs) table.U16(glyph);
  }
  return Close(table);
}

TableBuilder CmapFormat6(uint16_t firstCode, const std::vector<uint16_t>& glyphs) {
  TableBuilder table = Header16(6);
  table.U16(firstCode, "firstCode").U16(glyphs.size(), "entryCount");
  for (const uint16_t glyph : glyphs) table.U16(glyph);
  return Close(table);
}

TableBuilder CmapGroups(uint16_t format, const std::vector<CmapGroup>& groups) {
  TableBuilder table = Header32(format);
  if (format == 8) table.Zeros(8192, "is32");
  table.U32(groups.size(), "nGroups");
  for (const CmapGroup& group : groups) table.U32(group.startCharCode).U32(group.endCharCode).U32(group.glyph);
  return Close(table);
}

TableBuilder CmapFormat10(uint32_t startCharCode, const std::vector<uint16_t>& glyphs) {
  TableBuilder table = Header32(10);
  table.U32(startCharCode).U32(glyphs.size(), "numChars");
  for (const uint16_t glyph : glyphs) table.U16(glyph);
  return Close(table);
}

TableBuilder CmapFormat14(const std::vector<CmapSelector>& selectors) {
  TableBuilder table;
  table.U16(14, "format").U32(0, "length").U32(selectors.size(), "numVarSelectorRecords");
  for (size_t r = 0; r < selectors.size(); ++r) {
    table.U24(selectors[r].varSelector).U32(0, At("defaultUVSOffset", r)).U32(0, At("nonDefaultUVSOffset", r));
  }
  for (size_t r = 0; r < selectors.size(); ++r) {
    const CmapSelector& selector = selectors[r];
    if (!selector.defaultRanges.empty()) {
      table.Patch(At("defaultUVSOffset", r), table.Size()).U32(selector.defaultRanges.size(), At("ranges", r));
      for (const auto& [start, further] : selector.defaultRanges) table.U24(start).U8(further);
    }
    if (!selector.nonDefaultMappings.empty()) {
      table.Patch(At("nonDefaultUVSOffset", r), table.Size());
      table.U32(selector.nonDefaultMappings.size(), At("mappings", r));
      for (const auto& [character, glyph] : selector.nonDefaultMappings) table.U24(character).U16(glyph);
    }
  }
  return Close(table);
}

TableBuilder CmapTable(const std::vector<CmapRecord>& records) {
  TableBuilder table;
  table.U16(0, "version").U16(records.size(), "numTables");
  for (size_t i = 0; i < records.size(); ++i) {
    table.U16(records[i].platform).U16(records[i].script).U32(0, At("subtableOffset", i));
  }
  for (size_t i = 0; i < records.size(); ++i) {
    table.Patch(At("subtableOffset", i), table.Size()).Append(records[i].subtable);
  }
  return table;
}

}  // namespace test
