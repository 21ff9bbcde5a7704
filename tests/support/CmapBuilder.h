#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "support/FontBuilder.h"

namespace test {

/// Subtables of the 'cmap' table, one function a format, right in every field unless what they are given is not. Fields
/// are labelled as the OpenType specification names them; those of records carry the record's index ("endCode0").

TableBuilder CmapFormat0(const std::map<uint8_t, uint8_t>& glyphs);

struct CmapSubheader {
  uint16_t firstCode;
  std::vector<uint16_t> glyphs;
  uint16_t idDelta = 0;
};
/// keys: the subheader of a high byte; a byte without one is a single byte, mapped by subheader 0.
TableBuilder CmapFormat2(const std::map<uint8_t, uint16_t>& keys, const std::vector<CmapSubheader>& subheaders);

struct CmapSegment {
  uint16_t startCode;
  uint16_t endCode;
  int16_t idDelta = 0;
  std::vector<uint16_t> glyphs = {};  ///< none: idRangeOffset is 0
};
/// The segments, and the last one from 0xFFFF to 0xFFFF behind them.
TableBuilder CmapFormat4(std::vector<CmapSegment> segments);

TableBuilder CmapFormat6(uint16_t firstCode, const std::vector<uint16_t>& glyphs);

struct CmapGroup {
  uint32_t startCharCode;
  uint32_t endCharCode;
  uint32_t glyph;
};
/// Formats 8, 12 and 13.
TableBuilder CmapGroups(uint16_t format, const std::vector<CmapGroup>& groups);

TableBuilder CmapFormat10(uint32_t startCharCode, const std::vector<uint16_t>& glyphs);

struct CmapSelector {
  uint32_t varSelector;
  std::vector<std::pair<uint32_t, uint8_t>> defaultRanges = {};        ///< none: no default table
  std::vector<std::pair<uint32_t, uint16_t>> nonDefaultMappings = {};  ///< none: no non-default table
};
TableBuilder CmapFormat14(const std::vector<CmapSelector>& selectors);

struct CmapRecord {
  uint16_t platform;
  uint16_t script;
  TableBuilder subtable;
};
/// The whole table, a record for each subtable. Labels: "version", "numTables" and "subtableOffset" with an index.
TableBuilder CmapTable(const std::vector<CmapRecord>& records);

}  // namespace test
