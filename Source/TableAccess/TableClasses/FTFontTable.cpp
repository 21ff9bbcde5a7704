#include "TableAccess/TableClasses/FTFontTable.h"

#include "TableAccess/AncillaryClasses/FTWorkBudget.h"
#include "TableAccess/TableClasses/FTTableOwner.h"

FTFontTable::FTFontTable(const FTTableOwner* iOwner, uint32_t iTag, uint64_t iOffset, uint64_t iLength,
                         uint32_t iChecksum)
    : _fOwner(iOwner), _fTag(iTag), _fOffset(iOffset), _fChecksum(iChecksum) {
  if (iOwner) _fBytes = iOwner->FontBytes().Slice(iOffset, iLength);
}

FTFontTable::FTFontTable(const FTFontTable& iOther)
    : _fOwner(iOther._fOwner),
      _fTag(iOther._fTag),
      _fOffset(iOther._fOffset),
      _fChecksum(iOther._fChecksum),
      _fOwnedBytes(Tova::Adopt(TovaDataCreate(iOther._fBytes.Data(), iOther._fBytes.Size()))),
      _fBytes(TovaDataGetBytes(_fOwnedBytes.get()), TovaDataGetLength(_fOwnedBytes.get())) {}

FTFontTable& FTFontTable::operator=(const FTFontTable& iOther) {
  if (this == &iOther) return *this;
  _fOwner = iOther._fOwner;
  _fTag = iOther._fTag;
  _fOffset = iOther._fOffset;
  _fChecksum = iOther._fChecksum;
  _fOwnedBytes = Tova::Adopt(TovaDataCreate(iOther._fBytes.Data(), iOther._fBytes.Size()));
  _fBytes = Tova::ByteView(TovaDataGetBytes(_fOwnedBytes.get()), TovaDataGetLength(_fOwnedBytes.get()));
  _fDataRead = false;
  return *this;
}

const FTFont_sfnt* FTFontTable::GetFont() const { return _fOwner ? _fOwner->AsFont() : nullptr; }

Tova::ByteView FTFontTable::DoGenericLookup(Tova::ByteView iTable, uint32_t iGlyph) const {
  return _fOwner ? _fOwner->DoGenericLookup(iTable, iGlyph) : Tova::ByteView();
}

void FTFontTable::ChargeWork(uint64_t iSteps) const {
  if (_fOwner) _fOwner->GetWorkBudget().Charge(iSteps);
}
