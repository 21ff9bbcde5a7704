#pragma once

#include <cstdint>

#include "Platform/ByteView.h"

/// The offsets of 'loca': where each glyph lies in 'glyf', in bytes from that table's start. Offsets that the table
/// lacks are 0.
struct FTGlyphLocations {
  Tova::ByteView bytes;
  bool areLong = false;  ///< u32 in bytes; otherwise u16 in units of 2 bytes
  uint16_t glyphCount = 0;

  uint64_t Offset(uint32_t iGlyph) const {
    if (areLong) return bytes.U32(uint64_t{4} * iGlyph);
    return uint64_t{2} * bytes.U16(uint64_t{2} * iGlyph);
  }
  /// The distance to the next offset; where that is lower, the difference as an unsigned 64-bit number.
  uint64_t Length(uint32_t iGlyph) const { return Offset(iGlyph + 1) - Offset(iGlyph); }
};
