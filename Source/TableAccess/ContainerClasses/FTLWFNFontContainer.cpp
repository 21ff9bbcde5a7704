#include "TableAccess/ContainerClasses/FTLWFNFontContainer.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <vector>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/FontClasses/FTFont_POST.h"
#include "TableAccess/TableClasses/FTFontTable.h"

FTLWFNFontContainer& FTLWFNFontContainer::operator=(const FTLWFNFontContainer& iOther) {
  if (this == &iOther) return *this;
  FTResourceFontContainer::operator=(iOther);
  _fType1Font.reset();
  return *this;
}

const FTFontContainer::FontArray& FTLWFNFontContainer::Fonts() const {
  const std::lock_guard tLock(_fReadingFonts);
  return FTResourceFontContainer::Fonts();
}

void FTLWFNFontContainer::AddFontsFromResources(FontArray& ioFonts) const {
  AddFontsFromResourceType(FTTag("POST"), ioFonts);
}

const FTFont_POST* FTLWFNFontContainer::GetPOST(int16_t iID) const {
  return dynamic_cast<const FTFont_POST*>(GetFont(FTTag("POST"), iID));
}

const FTFont_Type1* FTLWFNFontContainer::GetType1Font() const {
  Fonts();
  const std::lock_guard tLock(_fAssembling);
  if (_fType1Font) return _fType1Font.get();
  std::vector<uint8_t> tOutline;
  for (int tID = kFirstPOST; tID <= std::numeric_limits<int16_t>::max(); ++tID) {
    const FTFont_POST* tPOST = GetPOST(static_cast<int16_t>(tID));
    if (!tPOST) break;
    const Tova::ByteView tBytes = tPOST->Bytes();
    // Resources that share their bytes without end would fill the memory.
    if (tOutline.size() + tBytes.Size() > static_cast<uint64_t>(MaximumResourceSize())) {
      FTThrow("tOutline.size() + tBytes.Size() > MaximumResourceSize()", "A file's resource fork is corrupt");
    }
    std::copy_n(tBytes.Data(), tBytes.Size(), std::back_inserter(tOutline));
  }
  const Tova::Data tData = Tova::Adopt(TovaDataCreate(tOutline.data(), tOutline.size()));
  _fType1Font = std::make_unique<FTFont_Type1>(this, tData);
  return _fType1Font.get();
}
