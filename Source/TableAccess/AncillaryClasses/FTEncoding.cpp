#include "TableAccess/AncillaryClasses/FTEncoding.h"

#include "TableAccess/AncillaryClasses/FTException.h"

FTEncoding::FTEncoding(Tova::ByteView iBytes, uint32_t iPlatform, uint32_t iScript)
    : _fBytes(iBytes), _fLongFormat(uint32_t{iBytes.U16(0)} << 16), _fPlatform(iPlatform), _fScript(iScript) {
  const uint32_t tFormat = _fLongFormat >> 16;
  if (tFormat < 8) {
    _fDeclaredLength = iBytes.U16(2);
    _fLanguage = iBytes.U16(4);
  } else if (tFormat < 14) {
    _fDeclaredLength = iBytes.U32(4);
    _fLanguage = iBytes.U32(8);
  } else if (tFormat == 14) {
    _fDeclaredLength = iBytes.U32(2);
  }
}

bool FTEncoding::operator==(const FTEncoding& iOther) const {
  if (_fPlatform != iOther._fPlatform || _fScript != iOther._fScript || _fLanguage != iOther._fLanguage) return false;
  // The same bytes map the same, also where the mapping is too large to be listed, or none.
  if (_fBytes == iOther._fBytes) return true;
  return GetMappingCount() == iOther.GetMappingCount() && GetMapping() == iOther.GetMapping();
}

uint32_t FTEncoding::GlyphToCharacter(int32_t iGlyph) const {
  return GetRanges().GlyphToCharacter(static_cast<uint32_t>(iGlyph)).value_or(kNoCharacter);
}

bool FTEncoding::IsUnicodeEncoding() const { return (_fPlatform == 0 || _fPlatform == 3) && GetShortFormat() != 14; }

bool FTEncoding::IsUnicodableEncoding() const {
  return (_fPlatform == 0 || _fPlatform == 1 || _fPlatform == 3) && GetShortFormat() != 14;
}

const FTEncodingMapping& FTEncoding::GetRanges() const {
  if (!_fMapping) {
    if (!GetUnswappedMappingDataPtr()) FTThrow("GetUnswappedMappingDataPtr() == NULL", "An error occurred");
    _fMapping = std::make_shared<const FTEncodingMapping>(_fBytes, GetShortFormat());
  }
  return *_fMapping;
}
