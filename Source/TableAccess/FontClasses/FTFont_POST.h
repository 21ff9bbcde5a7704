#pragma once

#include "TableAccess/FontClasses/FTFont_resource.h"

/// A piece of a PostScript Type 1 font, a 'POST' resource. Bytes: the kind of the piece u8, 0 u8, its data. Kinds: 1
/// text, 2 binary, 3 end of a font, 4 data in the data fork, 5 end of the file.
class FTFont_POST : public FTFont_resource {
 public:
  using FTFont_resource::FTFont_resource;
  uint32_t GetType() const override { return kPOST; }
  uint8_t GetDataType() const { return U8At(0); }
};
