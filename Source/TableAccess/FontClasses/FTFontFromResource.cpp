#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/FontClasses/FTFont_FOND.h"
#include "TableAccess/FontClasses/FTFont_NFNT.h"
#include "TableAccess/FontClasses/FTFont_POST.h"
#include "TableAccess/FontClasses/FTFont_sfntResource.h"

std::unique_ptr<FTFont> FTFont::FTFontFromResource(const FTFontOwner* iOwner, uint32_t iType, Tova::ByteView iBytes,
                                                   int16_t iID, Tova::ByteView iName) {
  if (!iBytes.Data()) return nullptr;
  switch (iType) {
    case FTTag("FOND"):
      return std::make_unique<FTFont_FOND>(iOwner, iBytes, iType, iID, iName);
    case FTTag("NFNT"):
      return std::make_unique<FTFont_NFNT>(iOwner, iBytes, iType, iID, iName);
    case FTTag("POST"):
      return std::make_unique<FTFont_POST>(iOwner, iBytes, iType, iID, iName);
    case FTTag("sfnt"):
      return std::make_unique<FTFont_sfntResource>(iOwner, iBytes, iID, iName);
    default:
      FTThrow("iResourceType", "An attempt was made to create a font of an unknown type");
  }
}
