#pragma once

#include "TableAccess/FontClasses/FTFont_resource.h"

/// A bitmap font, an 'NFNT' resource. Bytes: font type, first character, last character, widest width, kern, descent,
/// box width, box height, offset of the width table, ascent, descent, leading, row words (u16 each), then the bitmap
/// and its tables, which are not parsed.
class FTFont_NFNT : public FTFont_resource {
 public:
  using FTFont_resource::FTFont_resource;
  uint32_t GetType() const override { return kNFNT; }
};
