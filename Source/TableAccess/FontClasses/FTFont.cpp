#include "TableAccess/FontClasses/FTFont.h"

#include <utility>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/AncillaryClasses/FTLookupTable.h"

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

FTFont::FTFont(const FTFontOwner* iOwner, Tova::ByteView iBytes) : _fOwner(iOwner), _fBytes(iBytes) {
  if (FTFont::IsReadOnly()) return;
  _fData = CopyOf(iBytes);
  _fBytes = ViewOf(_fData);
}

FTFont::FTFont(const FTFontOwner* iOwner, const Tova::Data& iData) : _fOwner(iOwner) {
  _fData = FTFont::IsReadOnly() ? iData : CopyOf(ViewOf(iData));
  _fBytes = ViewOf(_fData);
}

FTFont::FTFont(const FTFontOwner* iOwner, const Tova::FileReference& iFile) : FTFont(iOwner, MapFile(iFile)) {}

FTFont::FTFont(const FTFontOwner* iOwner, std::shared_ptr<const Tova::FileMapping> iMapping)
    : _fOwner(iOwner), _fMapping(std::move(iMapping)), _fBytes(_fMapping->Bytes()) {}

FTFont::FTFont(const FTFont& iOther) : _fOwner(iOther._fOwner) { CopyUnswappedData(iOther); }

FTFont& FTFont::operator=(const FTFont& iOther) {
  if (this == &iOther) return *this;
  _fOwner = iOther._fOwner;
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

TovaStringRef FTFont::GetName() const { return _fOwner ? _fOwner->GetName() : nullptr; }

bool FTFont::IsReadOnly() const { return _fOwner && _fOwner->IsReadOnly(); }

Tova::ByteView FTFont::DoGenericLookup(Tova::ByteView iTable, uint32_t iGlyph) const {
  return FTLookUp(iTable, iGlyph);
}
