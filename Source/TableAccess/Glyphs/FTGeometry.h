#pragma once

#include <cstdint>

/// A box in font units, as glyph headers and 'head' state it: top is yMax, left xMin, bottom yMin, right xMax.
struct FTRect {
  int16_t top = 0;
  int16_t left = 0;
  int16_t bottom = 0;
  int16_t right = 0;
  bool operator==(const FTRect&) const = default;
};

/// A point in font units: v is its y coordinate, h its x coordinate.
struct FTPoint {
  int16_t v = 0;
  int16_t h = 0;
  bool operator==(const FTPoint&) const = default;
};
