#pragma once

#include "TableAccess/FontClasses/FTFont.h"

/// A PostScript Type 1 font in segmented binary form. Bytes: segments, each of 0x80, a kind (1 text, 2 binary, 3 end),
/// a little-endian 32-bit length and so many bytes; see "Adobe Type 1 Font Format". The program is not parsed.
class FTFont_Type1 : public FTFont {
 public:
  using FTFont::FTFont;

  /// The place of the first byte, from the first '%' on, that is no text; never null, and throws nothing.
  const void* TestBasicUsability() const override;
  uint32_t GetType() const override { return kType1; }
};
