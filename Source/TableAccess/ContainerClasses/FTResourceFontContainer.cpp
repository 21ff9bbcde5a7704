#include "TableAccess/ContainerClasses/FTResourceFontContainer.h"

#include <utility>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/FTLimits.h"
#include "TableAccess/FontClasses/FTFont_FOND.h"
#include "TableAccess/FontClasses/FTFont_sfntResource.h"

namespace {

constexpr const char* kFileFailure = "A file IO operation failed";
constexpr const char* kCorrupt = "A file's resource fork is corrupt";

/// What a font is found by.
constexpr uint64_t KeyOf(uint32_t iType, int16_t iID) { return uint64_t{iType} << 16 | static_cast<uint16_t>(iID); }

}  // namespace

FTResourceFontContainer::FTResourceFontContainer(const FTResourceFontContainer& iOther)
    : FTDiskBasedFontContainer(iOther), _fIsDataforkSuitcase(iOther._fIsDataforkSuitcase) {}

FTResourceFontContainer& FTResourceFontContainer::operator=(const FTResourceFontContainer& iOther) {
  if (this == &iOther) return *this;
  FTDiskBasedFontContainer::operator=(iOther);
  _fIsDataforkSuitcase = iOther._fIsDataforkSuitcase;
  _fDataRead = false;
  _fFileRef.reset();
  _fMaximumResourceSize = 0;
  _fFontsByTypeAndID.clear();
  return *this;
}

void FTResourceFontContainer::ReadData() const {
  if (_fDataRead) return;
  _fDataRead = true;  // before reading, which asks for the resource file
  ReadDataInternal();
}

const Tova::ResourceFile& FTResourceFontContainer::GetFileRef() const {
  ReadData();
  if (!_fFileRef) FTThrow("_fFileRef == 0", kFileFailure);
  return *_fFileRef;
}

const FTFont* FTResourceFontContainer::GetFont(uint32_t iType, int16_t iID) const {
  Fonts();
  const auto tFont = _fFontsByTypeAndID.find(KeyOf(iType, iID));
  return tFont == _fFontsByTypeAndID.end() ? nullptr : tFont->second;
}

const FTFont_FOND* FTResourceFontContainer::FindFamilyOf(int32_t iOutlineFontID) const {
  for (const auto& tFont : Fonts()) {
    const auto* tFamily = dynamic_cast<const FTFont_FOND*>(tFont.get());
    if (tFamily && tFamily->ListsOutlineFont(iOutlineFontID)) return tFamily;
  }
  return nullptr;
}

Tova::ByteView FTResourceFontContainer::ValidateResourceData() const {
  const auto tFork = GetFile().Open(_fIsDataforkSuitcase ? Tova::Fork::kData : Tova::Fork::kResource);
  if (!tFork || !Tova::ResourceFile::Open(*tFork)) FTThrow("Tova::ResourceFile::Open( *tFork )", kFileFailure);
  return *tFork;
}

void FTResourceFontContainer::ReadDataInternal() const {
  const Tova::ByteView tFork = ValidateResourceData();
  _fMaximumResourceSize = static_cast<int64_t>(tFork.Size());
  _fFileRef = Tova::ResourceFile::Open(tFork);

  FontArray tFonts;
  AddFontsFromResources(tFonts);
  for (const auto& tFont : tFonts) {
    if (const auto* tResource = dynamic_cast<const FTFont_resource*>(tFont.get())) {
      _fFontsByTypeAndID.emplace(KeyOf(tResource->GetResourceType(), tResource->GetResourceID()), tFont.get());
    } else if (const auto* tSfnt = dynamic_cast<const FTFont_sfntResource*>(tFont.get())) {
      _fFontsByTypeAndID.emplace(KeyOf(tSfnt->GetResourceType(), tSfnt->GetResourceID()), tFont.get());
    }
  }
  SetFonts(std::move(tFonts));
}

void FTResourceFontContainer::AddFontsFromResources(FontArray& ioFonts) const {
  for (const uint32_t tType : {FTTag("sfnt"), FTTag("FOND"), FTTag("NFNT")}) AddFontsFromResourceType(tType, ioFonts);
}

void FTResourceFontContainer::AddFontsFromResourceType(uint32_t iType, FontArray& ioFonts) const {
  const Tova::ResourceList tResources = GetFileRef().List(iType);
  for (uint32_t i = 0; i < tResources.Count(); ++i) {
    const std::optional<Tova::Resource> tResource = tResources[i];
    if (!tResource || static_cast<int64_t>(tResource->data.Size()) > MaximumResourceSize()) {
      FTThrow("tResource == NULL || tSize > (Size) MaximumResourceSize()", kCorrupt);
    }
    if (ioFonts.size() >= FTLimits::Get().maxSuitcaseFonts) FTThrow("ioFonts.size() >= maxSuitcaseFonts", kCorrupt);
    ioFonts.push_back(FTFont::FTFontFromResource(this, iType, tResource->data, tResource->id, tResource->name));
  }
}
