#include "TableAccess/TableClasses/FTFontTable.h"

#include "TableAccess/FontClasses/FTFont_sfnt.h"

FTFontTable::FTFontTable(const FTFont_sfnt* iFont, uint32_t iTag, uint64_t iOffset, uint64_t iLength,
                         uint32_t iChecksum)
    : _fFont(iFont), _fTag(iTag), _fOffset(iOffset), _fChecksum(iChecksum) {
  if (iFont) _fBytes = iFont->Bytes().Slice(iOffset, iLength);
}

FTFontTable::FTFontTable(const FTFontTable& iOther)
    : _fFont(iOther._fFont),
      _fTag(iOther._fTag),
      _fOffset(iOther._fOffset),
      _fChecksum(iOther._fChecksum),
      _fOwnedBytes(Tova::Adopt(TovaDataCreate(iOther._fBytes.Data(), iOther._fBytes.Size()))),
      _fBytes(TovaDataGetBytes(_fOwnedBytes.get()), TovaDataGetLength(_fOwnedBytes.get())) {}

FTFontTable& FTFontTable::operator=(const FTFontTable& iOther) {
  if (this == &iOther) return *this;
  _fFont = iOther._fFont;
  _fTag = iOther._fTag;
  _fOffset = iOther._fOffset;
  _fChecksum = iOther._fChecksum;
  _fOwnedBytes = Tova::Adopt(TovaDataCreate(iOther._fBytes.Data(), iOther._fBytes.Size()));
  _fBytes = Tova::ByteView(TovaDataGetBytes(_fOwnedBytes.get()), TovaDataGetLength(_fOwnedBytes.get()));
  _fDataRead = false;
  return *this;
}

void FTFontTable::ReadData() const {
  if (_fDataRead) return;
  _fDataRead = true;
  ReadDataInternal();
}

Tova::ByteView FTFontTable::DoGenericLookup(Tova::ByteView iTable, uint32_t iGlyph) const {
  return _fFont ? _fFont->DoGenericLookup(iTable, iGlyph) : Tova::ByteView();
}
