#include "TableAccess/TableClasses/FTFontTable_glyf.h"

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/TableClasses/FTFontTable_loca.h"
#include "TableAccess/TableClasses/FTTableOwner.h"

FTFontTable_glyf& FTFontTable_glyf::operator=(const FTFontTable_glyf& iOther) {
  if (this == &iOther) return *this;
  ClearGlyphData();
  FTFontTable::operator=(iOther);
  return *this;
}

void FTFontTable_glyf::ReadDataInternal() const {
  const auto* tTable_loca = Owner()->FindTable<FTFontTable_loca>();
  if (!tTable_loca || !Owner()->HasTaggedTable(FTFontTable_loca::kTag)) FTThrow(FTFaults::kLocaMissing);
  if (Owner()->CountFontGlyphs() == 0) {
    ClearGlyphData();
    return;
  }
  tTable_loca->GetGlyphOffset(0);  // throws where there are no locations
  const FTGlyphLocations& tLocations = tTable_loca->GetLocations();
  _fGlyphs = OwnsBytes() ? std::make_shared<FTGlyphSet>(Bytes(), tLocations, Owner()->GetWorkBudget())
                         : Owner()->GetGlyphSet(Bytes(), tLocations);
}
