#include "TableAccess/FontClasses/FTFont_sfntResource.h"

#include "TableAccess/ContainerClasses/FTFontContainer.h"
#include "TableAccess/FontClasses/FTFont_resource.h"

FTFont_sfntResource::FTFont_sfntResource(const FTFontContainer* iContainer, Tova::ByteView iBytes, int16_t iID,
                                         Tova::ByteView iName)
    : FTFont_sfnt(iContainer, iBytes), _fResourceID(iID), _fResourceName(FTResourceNameText(iName)) {}

const FTFont_FOND* FTFont_sfntResource::GetFOND() const {
  return GetContainer() ? GetContainer()->FindFamilyOf(GetResourceID()) : nullptr;
}
