#include "TableAccess/FontClasses/FTFont_sfntResource.h"

#include "TableAccess/FontClasses/FTFont_resource.h"

FTFont_sfntResource::FTFont_sfntResource(const FTFontOwner* iOwner, Tova::ByteView iBytes, int16_t iID,
                                         Tova::ByteView iName)
    : FTFont_sfnt(iOwner, iBytes), _fResourceID(iID), _fResourceName(FTResourceNameText(iName)) {}

const FTFont_FOND* FTFont_sfntResource::GetFOND() const {
  return Owner() ? Owner()->FindFamilyOf(GetResourceID()) : nullptr;
}
