#include "TableAccess/TableClasses/FTFontTable_loca.h"

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/TableClasses/FTFontTable_head.h"
#include "TableAccess/TableClasses/FTTableOwner.h"

void FTFontTable_loca::ReadDataInternal() const {
  const auto* tTable_head = Owner()->FindTable<FTFontTable_head>();
  if (!tTable_head) FTThrow(FTFaults::kHeadMissing);
  _fLocations = {Bytes(), tTable_head->FontUsesLongGlyphOffsets(), Owner()->CountFontGlyphs()};
}

uint64_t FTFontTable_loca::GetGlyphOffset(uint16_t iGlyph) const {
  ReadData();
  if (iGlyph >= _fLocations.glyphCount) FTThrow(FTFaults::kOffsetOfNoGlyph);
  return _fLocations.Offset(iGlyph);
}

uint64_t FTFontTable_loca::GetGlyphLength(uint16_t iGlyph) const {
  ReadData();
  if (iGlyph >= _fLocations.glyphCount) FTThrow(FTFaults::kLengthOfNoGlyph);
  return _fLocations.Length(iGlyph);
}
