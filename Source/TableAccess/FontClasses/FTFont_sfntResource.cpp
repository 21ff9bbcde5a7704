#include "TableAccess/FontClasses/FTFont_sfntResource.h"

#include "TableAccess/ContainerClasses/FTResourceFontContainer.h"
#include "TableAccess/FontClasses/FTFont_FOND.h"

FTFont_sfntResource::FTFont_sfntResource(const FTFontContainer* iContainer, Tova::ByteView iBytes, int16_t iID,
                                         Tova::ByteView iName)
    : FTFont_sfnt(iContainer, iBytes), _fResourceID(iID), _fResourceName(FTResourceNameText(iName)) {}

const FTFont_FOND* FTFont_sfntResource::GetFOND() const {
  const auto* tContainer = dynamic_cast<const FTResourceFontContainer*>(GetContainer());
  if (!tContainer) return nullptr;
  for (const auto& tFont : tContainer->Fonts()) {
    const auto* tFamily = dynamic_cast<const FTFont_FOND*>(tFont.get());
    if (tFamily && tFamily->ListsOutlineFont(GetResourceID())) return tFamily;
  }
  return nullptr;
}
