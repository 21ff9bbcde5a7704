#include "TableAccess/FontClasses/FTFont.h"

#include <utility>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/ContainerClasses/FTFontContainer.h"
#include "TableAccess/FontClasses/FTLookupTable.h"

namespace {

constexpr const char* kFileFailure = "A file IO operation failed";

/// The longest path, in bytes with its closing NUL, that is mapped.
constexpr size_t kPathBufferSize = 1024;

Tova::Data CopyOf(Tova::ByteView iBytes) { return Tova::Adopt(TovaDataCreate(iBytes.Data(), iBytes.Size())); }

Tova::ByteView ViewOf(const Tova::Data& iData) {
  return Tova::ByteView(TovaDataGetBytes(iData.get()), TovaDataGetLength(iData.get()));
}

}  // namespace

std::shared_ptr<const Tova::FileMapping> FTFont::MapFile(const Tova::FileReference& iFile) {
  using Step = Tova::FileMapping::Step;
  if (iFile.Path().size() >= kPathBufferSize) FTThrow("iFile.Path().size() >= kPathBufferSize", kFileFailure);
  Tova::FileMapping::Result tResult = Tova::FileMapping::Map(iFile.Path());
  if (tResult.reached == Step::kStatus) FTThrow("stat( tFilePath, &tFilestat ) != 0", kFileFailure);
  if (tResult.reached == Step::kOpen) {
    throw FTException("tFileDescriptor == -1", tResult.error, kFileFailure, "TableAccess/FontClasses/FTFont", __LINE__);
  }
  if (!tResult.mapping) {
    FTThrow("_fUnswappedDataPtr == NULL || _fUnswappedDataPtr == (const uint8_t *) -1", kFileFailure);
  }
  return std::move(tResult.mapping);
}

FTFont::FTFont(const FTFontContainer* iContainer, Tova::ByteView iBytes) : _fContainer(iContainer), _fBytes(iBytes) {
  if (FTFont::IsReadOnly()) return;
  _fData = CopyOf(iBytes);
  _fBytes = ViewOf(_fData);
}

FTFont::FTFont(const FTFontContainer* iContainer, const Tova::Data& iData) : _fContainer(iContainer) {
  _fData = FTFont::IsReadOnly() ? iData : CopyOf(ViewOf(iData));
  _fBytes = ViewOf(_fData);
}

FTFont::FTFont(const FTFontContainer* iContainer, const Tova::FileReference& iFile)
    : FTFont(iContainer, MapFile(iFile)) {}

FTFont::FTFont(const FTFontContainer* iContainer, std::shared_ptr<const Tova::FileMapping> iMapping)
    : _fContainer(iContainer), _fMapping(std::move(iMapping)), _fBytes(_fMapping->Bytes()) {}

FTFont::FTFont(const FTFont& iOther) : _fContainer(iOther._fContainer) { CopyUnswappedData(iOther); }

FTFont& FTFont::operator=(const FTFont& iOther) {
  if (this == &iOther) return *this;
  _fContainer = iOther._fContainer;
  CopyUnswappedData(iOther);
  return *this;
}

void FTFont::CopyUnswappedData(const FTFont& iOther) {
  _fData = {};
  _fMapping.reset();
  _fBytes = {};
  if (iOther.IsReadOnly()) {
    if (iOther._fMapping && !iOther._fBytes.Empty()) {
      FTThrow("iOther._fDataIsMappedFile && _fUnswappedDataLength > 0", kFileFailure);
    }
    _fData = iOther._fData;
    _fBytes = iOther._fBytes;
  } else {
    _fData = CopyOf(iOther._fBytes);
    _fBytes = ViewOf(_fData);
  }
}

const void* FTFont::TestBasicUsability() const {
  const TovaStringRef tIdentifier = GetIdentifier();
  if (!tIdentifier) FTThrow("tIdentifier == NULL", "The font was unusable");
  return tIdentifier;
}

TovaStringRef FTFont::GetName() const { return _fContainer ? _fContainer->GetName() : nullptr; }

bool FTFont::IsReadOnly() const { return _fContainer && _fContainer->IsReadOnly(); }

bool FTFont::SpendWork(uint64_t iItems) const { return !_fContainer || _fContainer->SpendWork(iItems); }

Tova::ByteView FTFont::DoGenericLookup(Tova::ByteView iTable, uint32_t iGlyph) const {
  return FTLookUp(iTable, iGlyph);
}
