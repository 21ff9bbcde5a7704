#pragma once

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// A Type 1 PostScript font as a table. Bytes: a PostScript program ("Adobe Type 1 Font Format"). Its glyphs are not
/// counted: the search for "/CharStrings " asks for a backslash in the place of the slash, so the count is always 0 and
/// fonts take theirs from 'maxp'. Needs no other table.
class FTFontTable_TYP1 : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_TYP1, FTFontTable, "TYP1")

  void ReadDataInternal() const override;
  uint32_t NumGlyphs() const {
    ReadData();
    return _fGlyphCount;
  }

 private:
  mutable uint32_t _fGlyphCount = 0;
};
