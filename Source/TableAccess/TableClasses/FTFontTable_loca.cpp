#include "TableAccess/TableClasses/FTFontTable_loca.h"

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/TableClasses/FTFontTable_head.h"
#include "TableAccess/TableClasses/FTTableOwner.h"

static constexpr char kSource[] = "TableAccess/TableClasses/FTFontTable_loca";

void FTFontTable_loca::ReadDataInternal() const {
  const auto* tTable_head = Owner()->FindTable<FTFontTable_head>();
  if (!tTable_head) FTThrowAt("tTable_head == NULL", "The required 'head' table is missing", kSource, 97);
  _fLocations = {Bytes(), tTable_head->FontUsesLongGlyphOffsets(), Owner()->CountFontGlyphs()};
}

uint64_t FTFontTable_loca::GetGlyphOffset(uint16_t iGlyph) const {
  ReadData();
  if (iGlyph >= _fLocations.glyphCount)
    FTThrowAt("iGlyphID < GetFont()->CountFontGlyphs()", "A reference was made to a non-existent glyph", kSource, 137);
  return _fLocations.Offset(iGlyph);
}

uint64_t FTFontTable_loca::GetGlyphLength(uint16_t iGlyph) const {
  ReadData();
  if (iGlyph >= _fLocations.glyphCount)
    FTThrowAt("iGlyphID < GetFont()->CountFontGlyphs()", "A reference was made to a non-existent glyph", kSource, 146);
  return _fLocations.Length(iGlyph);
}
