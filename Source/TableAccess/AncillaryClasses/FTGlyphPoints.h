#pragma once

#include <cstdint>
#include <vector>

class FTSimpleTrueTypeGlyph;

/// The decoded points of the glyph that was asked last. A 'glyf' table has one and all its glyphs decode into it:
/// points of all glyphs at once would take several times the table's size, and a table whose records overlap could ask
/// for any amount.
struct FTGlyphPoints {
  /// The glyph whose flags these are; null for none.
  const FTSimpleTrueTypeGlyph* glyph = nullptr;
  /// Whether the coordinates are that glyph's, too.
  bool haveCoordinates = false;
  /// Where the coordinates begin, in bytes from the start of the glyph's record.
  uint64_t coordinatesAt = 0;
  // At least as long as the glyph has points; they only grow.
  std::vector<uint8_t> flags;
  std::vector<int16_t> x;
  std::vector<int16_t> y;
};
