#include "TableAccess/TableClasses/FTFontTable_loca.h"

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TableAccess/TableClasses/FTFontTable_head.h"

static constexpr char kSource[] = "TableAccess/TableClasses/FTFontTable_loca";

void FTFontTable_loca::ReadDataInternal() const {
  if (_fWidth != Width::kUnknown) return;
  const auto* tTable_head = GetFont()->FindTable<FTFontTable_head>();
  if (!tTable_head) FTThrowAt("tTable_head == NULL", "The required 'head' table is missing", kSource, 97);
  _fGlyphCount = GetFont()->CountFontGlyphs();
  _fWidth = tTable_head->FontUsesLongGlyphOffsets() ? Width::kLong : Width::kShort;
}

uint64_t FTFontTable_loca::GetGlyphOffset(uint16_t iGlyph) const {
  ReadData();
  if (iGlyph >= _fGlyphCount)
    FTThrowAt("iGlyphID < GetFont()->CountFontGlyphs()", "A reference was made to a non-existent glyph", kSource, 137);
  return Offset(iGlyph);
}

uint64_t FTFontTable_loca::GetGlyphLength(uint16_t iGlyph) const {
  ReadData();
  if (iGlyph >= _fGlyphCount)
    FTThrowAt("iGlyphID < GetFont()->CountFontGlyphs()", "A reference was made to a non-existent glyph", kSource, 146);
  return Offset(uint32_t{iGlyph} + 1) - Offset(iGlyph);
}

uint64_t FTFontTable_loca::Offset(uint32_t iIndex) const {
  if (_fWidth == Width::kLong) return Bytes().U32(uint64_t{4} * iIndex);
  return uint64_t{2} * Bytes().U16(uint64_t{2} * iIndex);
}
