#pragma once

#include <cstdint>

#include "TableAccess/Glyphs/FTGeometry.h"

/// What decoding established of one glyph. Kept for all glyphs of a font, so it is small; points and components are
/// unpacked again when they are asked for.
struct FTGlyphRecord {
  enum class Kind : uint8_t { kEmpty, kSimple, kCompound };
  /// A glyph whose decoding threw goes on being read.
  enum class State : uint8_t { kUnread, kBeingRead, kRead };

  Kind kind = Kind::kEmpty;
  State state = State::kUnread;
  /// Of a simple glyph: whether FTOutline::HasMixedEnds holds for a contour.
  bool hasMixedEnds = false;
  FTRect storedBox = {};    ///< the header's
  FTRect measuredBox = {};  ///< that of a simple glyph's points; all 0 without any
  // A simple glyph's own, or all those beneath a compound one, in 16 bits.
  uint16_t contours = 0;
  uint16_t points = 0;
  uint16_t instructionBytes = 0;  ///< of a simple glyph
  uint16_t components = 0;        ///< of a compound glyph
  uint16_t depth = 0;             ///< levels of compound glyphs, 1 over simple ones
};
static_assert(sizeof(FTGlyphRecord) <= 32, "a font has up to 65,535 of them");
