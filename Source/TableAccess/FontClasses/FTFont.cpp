#include "TableAccess/FontClasses/FTFont.h"

#include <utility>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/AncillaryClasses/FTLookupTable.h"

namespace {

constexpr const char* kFileFailure = "A file IO operation failed";

Tova::Data CopyOf(Tova::ByteView iBytes) { return Tova::Adopt(TovaDataCreate(iBytes.Data(), iBytes.Size())); }

Tova::ByteView ViewOf(const Tova::Data& iData) {
  return Tova::ByteView(TovaDataGetBytes(iData.get()), TovaDataGetLength(iData.get()));
}

/// The bytes of a file's data fork, of which there is at least one.
Tova::ByteView DataForkOf(const Tova::File& iFile) {
  if (iFile.GetState() == Tova::File::State::kNotOpened) {
    throw FTException("tFileDescriptor == -1", iFile.Error(), kFileFailure, "TableAccess/FontClasses/FTFont", __LINE__);
  }
  const Tova::ByteView tBytes = iFile.Open(Tova::Fork::kData).value_or(Tova::ByteView());
  if (tBytes.Empty()) FTThrow("_fUnswappedDataPtr == NULL || _fUnswappedDataPtr == (const uint8_t *) -1", kFileFailure);
  return tBytes;
}

}  // namespace

FTFont::FTFont(const FTFontOwner* iOwner, Tova::ByteView iBytes) : _fOwner(iOwner), _fBytes(iBytes) {
  if (FTFont::IsReadOnly()) return;
  _fData = CopyOf(iBytes);
  _fBytes = ViewOf(_fData);
}

FTFont::FTFont(const FTFontOwner* iOwner, const Tova::Data& iData) : _fOwner(iOwner) {
  _fData = FTFont::IsReadOnly() ? iData : CopyOf(ViewOf(iData));
  _fBytes = ViewOf(_fData);
}

FTFont::FTFont(const FTFontOwner* iOwner, std::shared_ptr<const Tova::File> iFile)
    : _fOwner(iOwner), _fFile(std::move(iFile)), _fBytes(DataForkOf(*_fFile)) {}

FTFont::FTFont(const FTFont& iOther) : _fOwner(iOther._fOwner) { CopyUnswappedData(iOther); }

FTFont& FTFont::operator=(const FTFont& iOther) {
  if (this == &iOther) return *this;
  _fOwner = iOther._fOwner;
  CopyUnswappedData(iOther);
  return *this;
}

void FTFont::CopyUnswappedData(const FTFont& iOther) {
  _fData = {};
  _fFile.reset();
  _fBytes = {};
  if (iOther.IsReadOnly()) {
    if (iOther._fFile && iOther._fFile->IsMapped()) {
      FTThrow("iOther._fDataIsMappedFile && _fUnswappedDataLength > 0", kFileFailure);
    }
    _fData = iOther._fData;
    _fFile = iOther._fFile;
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
