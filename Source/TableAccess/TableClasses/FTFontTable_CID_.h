#pragma once

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// A CID-keyed PostScript font as a table. Bytes: a PostScript program ("CID-Keyed Font Technology Overview"), of which
/// only the number after the first "/CIDCount " is read. Needs no other table.
class FTFontTable_CID_ : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_CID_, FTFontTable, "CID ")

  void ReadDataInternal() const override;
  uint32_t NumGlyphs() const {
    ReadData();
    return _fGlyphCount;
  }

 private:
  mutable uint32_t _fGlyphCount = 0;
};
