#pragma once

#include <cstdint>
#include <string>

#include "TableAccess/FontClasses/FTFont_sfnt.h"

/// An sfnt font held as an 'sfnt' resource; its offsets count from the start of the resource.
class FTFont_sfntResource : public FTFont_sfnt {
 public:
  FTFont_sfntResource(const FTFontOwner* iOwner, Tova::ByteView iBytes, int16_t iID, Tova::ByteView iName);

  /// The first family of the suitcase whose first outline entry with a font of this ID names it. The entry's ID counts
  /// as unsigned and this font's as signed: quirk: negative-sfnt-id.
  const FTFont_FOND* GetFOND() const override;

  int16_t GetResourceID() const { return _fResourceID; }
  uint32_t GetResourceType() const { return FTTag("sfnt"); }
  const char* GetResourceName() const { return _fResourceName.c_str(); }

 private:
  int16_t _fResourceID;
  std::string _fResourceName;
};
