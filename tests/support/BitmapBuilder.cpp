#include "support/BitmapBuilder.h"

namespace test {

namespace {

TableBuilder Header(uint16_t index_format, uint16_t image_format, uint32_t data_offset = 4) {
  TableBuilder table;
  return table.U16(index_format, "indexFormat").U16(image_format, "imageFormat").U32(data_offset, "imageDataOffset");
}

/// One size and big metrics for all images.
TableBuilder& OneSize(TableBuilder& table, uint32_t image_size, uint8_t height, uint8_t width) {
  return table.U32(image_size, "imageSize").U8(height).U8(width).Zeros(6);
}

void LineMetrics(TableBuilder& table, const std::string& label) {
  table.S8(8, label + "Ascender").S8(-2, label + "Descender").Zeros(8).U8(0, label + "Pad").U8(0);
}

}  // namespace

TableBuilder BitmapIndex1(uint16_t image_format, const std::vector<uint32_t>& offsets, uint32_t data_offset) {
  TableBuilder table = Header(1, image_format, data_offset);
  for (size_t i = 0; i < offsets.size(); ++i) table.U32(offsets[i], "offset" + std::to_string(i));
  return table;
}

TableBuilder BitmapIndex2(uint16_t image_format, uint32_t image_size, uint8_t height, uint8_t width) {
  TableBuilder table = Header(2, image_format);
  return OneSize(table, image_size, height, width);
}

TableBuilder BitmapIndex3(uint16_t image_format, const std::vector<uint16_t>& offsets) {
  TableBuilder table = Header(3, image_format);
  for (const uint16_t offset : offsets) table.U16(offset);
  return table;
}

TableBuilder BitmapIndex4(uint16_t image_format, const std::vector<std::pair<uint16_t, uint16_t>>& glyphs) {
  TableBuilder table = Header(4, image_format);
  table.U32(glyphs.size() - 1, "numGlyphs");
  for (const auto& [glyph, offset] : glyphs) table.U16(glyph).U16(offset);
  return table;
}

TableBuilder BitmapIndex5(uint16_t image_format, uint32_t image_size, uint8_t height, uint8_t width,
                          const std::vector<uint16_t>& glyphs) {
  TableBuilder table = Header(5, image_format);
  OneSize(table, image_size, height, width).U32(glyphs.size(), "numGlyphs");
  for (const uint16_t glyph : glyphs) table.U16(glyph);
  return table;
}

TableBuilder BitmapLocationTable(const std::vector<BitmapStrike>& strikes) {
  TableBuilder table;
  TableBuilder indexes;
  const size_t first_index = 8 + 48 * strikes.size();
  table.U32(0x00020000, "version").U32(strikes.size(), "numSizes");
  for (size_t i = 0; i < strikes.size(); ++i) {
    const auto& [ppem, subtables, start, end, depth] = strikes[i];
    const std::string index = std::to_string(i);
    TableBuilder array;
    TableBuilder bodies;
    for (const auto& [first, last, body] : subtables) {
      array.U16(first).U16(last).U32(8 * subtables.size() + bodies.Size());
      bodies.Append(body).Zeros((4 - body.Size() % 4) % 4);
    }
    table.U32(first_index + indexes.Size(), "indexSubTableArrayOffset" + index);
    table.U32(array.Size() + bodies.Size(), "indexTablesSize" + index);
    table.U32(subtables.size(), "numberOfIndexSubTables" + index).U32(0, "colorRef" + index);
    LineMetrics(table, "hori" + index);
    LineMetrics(table, "vert" + index);
    table.U16(start, "startGlyphIndex" + index).U16(end, "endGlyphIndex" + index);
    table.U8(ppem, "ppemX" + index).U8(ppem, "ppemY" + index).U8(depth, "bitDepth" + index).U8(1, "flags" + index);
    indexes.Append(array).Append(bodies);
  }
  return table.Append(indexes, "indexes");
}

TableBuilder BitmapDataTable(const std::vector<Bytes>& images) {
  TableBuilder table;
  table.U32(0x00020000, "version");
  for (const Bytes& image : images) table.Append(image);
  return table;
}

}  // namespace test
