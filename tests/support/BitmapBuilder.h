#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "support/TableBuilder.h"

namespace test {

/// Index subtables of an embedded-bitmap location table, one function a format. Labels: "indexFormat", "imageFormat",
/// "imageDataOffset", "imageSize", "numGlyphs", "offset0".
TableBuilder BitmapIndex1(uint16_t image_format, const std::vector<uint32_t>& offsets, uint32_t data_offset = 4);
TableBuilder BitmapIndex2(uint16_t image_format, uint32_t image_size, uint8_t height, uint8_t width);
TableBuilder BitmapIndex3(uint16_t image_format, const std::vector<uint16_t>& offsets);
/// Pairs of glyph and offset; the last one ends the images.
TableBuilder BitmapIndex4(uint16_t image_format, const std::vector<std::pair<uint16_t, uint16_t>>& glyphs);
TableBuilder BitmapIndex5(uint16_t image_format, uint32_t image_size, uint8_t height, uint8_t width,
                          const std::vector<uint16_t>& glyphs);

struct BitmapSubtable {
  uint16_t first;
  uint16_t last;
  TableBuilder index;
};
struct BitmapStrike {
  uint8_t ppem;
  std::vector<BitmapSubtable> subtables;
  uint16_t start = 0;
  uint16_t end = 2;
  uint8_t depth = 1;
};
/// 'EBLC' or 'bloc' with its strikes. Fields are labelled as the OpenType specification names them, with the index of
/// the strike ("ppemX0"), the line metrics "hori0Ascender", "hori0Descender", "hori0Pad"; the index arrays are
/// "indexes".
TableBuilder BitmapLocationTable(const std::vector<BitmapStrike>& strikes);
/// 'EBDT' or 'bdat': the version, then the images.
TableBuilder BitmapDataTable(const std::vector<Bytes>& images);

}  // namespace test
