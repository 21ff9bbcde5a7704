#pragma once

#include <cstdint>

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// What is known of each glyph: its text, its names, the groups and features that it belongs to. Bytes: version 16.16,
/// offset of the groups and features u32, then for each glyph of the font the offset u32 of its record. As in "The
/// 'Zapf' table" of the TrueType reference. Needs the font's glyph count, for whoever walks the offsets.
class FTFontTable_Zapf : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_Zapf, FTFontTable, "Zapf")

  static constexpr uint64_t kHeaderSize = 8;

  uint32_t Version() const { return Bytes().U32(0); }
  uint32_t ExtraInfoOffset() const { return Bytes().U32(4); }
  /// Bytes from the start of the table; 0 for a glyph whose offset lies outside.
  uint32_t GetGlyphInfoOffset(uint16_t iGlyph) const { return Bytes().U32(kHeaderSize + 4 * uint64_t{iGlyph}); }
};
