#pragma once

#include <cstdint>
#include <vector>

#include "support/FontBuilder.h"

namespace test {

struct GlyphPoint {
  int x;
  int y;
  bool onCurve = true;
};
using Contour = std::vector<GlyphPoint>;

enum class PointEncoding { kPacked, kWords };

/// The record of a simple glyph with the right box. Packed points take the fewest bytes and repeat flags; otherwise
/// each has a flag and two words. Labels: numberOfContours, xMin, yMin, xMax, yMax, end0, end1, ..., instructionLength,
/// instructions, flags, coordinates.
TableBuilder SimpleGlyph(const std::vector<Contour>& contours, const Bytes& instructions = {},
                         PointEncoding encoding = PointEncoding::kPacked);
/// A square with its lower left corner at (0, 0).
TableBuilder SquareGlyph(int side, const Bytes& instructions = {});

struct Component {
  uint16_t flags;
  uint16_t glyph;
};
/// The record of a compound glyph with an empty box. Flag 0x0020 is added to all components but the last.
TableBuilder CompoundGlyph(const std::vector<Component>& components);

/// A font with these glyph records (padded to even lengths on request), 32-bit offsets to them, and metrics of (600,
/// 0).
FontBuilder OutlineFont(const std::vector<Bytes>& glyphs, bool padded = true);

}  // namespace test
