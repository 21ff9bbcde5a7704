#pragma once

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// The italic angle of the PostScript information. Bytes: italicAngle, 16.16 degrees, at 4, as in "post — PostScript
/// Table" of the OpenType specification. Needs no other table.
class FTFontTable_post : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_post, FTFontTable, "post")

  /// Counter-clockwise from the vertical, so that a font leaning to the right has a negative one.
  virtual int32_t GetItalicAngle() const { return Bytes().S32(4); }
};
