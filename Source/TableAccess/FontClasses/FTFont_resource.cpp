#include "TableAccess/FontClasses/FTFont_resource.h"

#include "TableAccess/AncillaryClasses/FTText.h"

namespace {

/// IDs below this one are of script 0; from it on, each script has so many.
constexpr uint32_t kFirstScriptedID = 16384;
constexpr uint32_t kIDsOfScript = 512;

}  // namespace

std::string FTResourceNameText(Tova::ByteView iName) {
  std::string tText;
  for (uint64_t i = 0; i < iName.Find(0); ++i) tText += static_cast<char>(iName.U8(i));
  return tText;
}

FTFont_resource::FTFont_resource(const FTFontOwner* iOwner, Tova::ByteView iBytes, uint32_t iType, int16_t iID,
                                 Tova::ByteView iName)
    : FTFont(iOwner, iBytes), _fResourceID(iID), _fResourceType(iType), _fResourceName(FTResourceNameText(iName)) {}

FTFont_resource::FTFont_resource(const FTFont_resource& iOther)
    : FTFont(iOther),
      _fResourceID(iOther._fResourceID),
      _fResourceType(iOther._fResourceType),
      _fResourceName(iOther._fResourceName) {}

FTFont_resource& FTFont_resource::operator=(const FTFont_resource& iOther) {
  if (this == &iOther) return *this;
  FTFont::operator=(iOther);
  _fDataRead = false;
  _fResourceID = iOther._fResourceID;
  _fResourceType = iOther._fResourceType;
  _fResourceName = iOther._fResourceName;
  _fIdentifier = {};
  _fName = {};
  return *this;
}

void FTFont_resource::ReadData() const {
  if (_fDataRead) return;
  CheckIntegrity();
  _fDataRead = true;
  ReadDataInternal();
}

uint32_t FTFont_resource::GetScript() const {
  return UnsignedID() < kFirstScriptedID ? 0 : (UnsignedID() - kFirstScriptedID) / kIDsOfScript + 1;
}

TovaStringRef FTFont_resource::GetName() const {
  if (_fName) return _fName.get();
  _fName = NameInScript();
  if (_fName) return _fName.get();
  const Tova::String tType = TypeAsText();
  _fName = tType ? Tova::Format("'%@' %d", {tType, UnsignedID()}) : Tova::Format("%d", {UnsignedID()});
  return _fName.get();
}

TovaStringRef FTFont_resource::GetIdentifier() const {
  if (_fIdentifier) return _fIdentifier.get();
  const Tova::String tType = TypeAsText();
  const Tova::String tName = NameInScript();
  if (tType && tName) {
    _fIdentifier = Tova::Format("%@|%d|%@", {tType, UnsignedID(), tName});
  } else if (tType) {
    _fIdentifier = Tova::Format("%@|%d|", {tType, UnsignedID()});
  } else if (tName) {
    _fIdentifier = Tova::Format("|%d|%@", {UnsignedID(), tName});
  } else {
    _fIdentifier = Tova::Format("|%d|", {UnsignedID()});
  }
  return _fIdentifier.get();
}

/// None without a name, and for one that its script's encoding cannot decode.
Tova::String FTFont_resource::NameInScript() const {
  return _fResourceName.empty() ? Tova::String() : FTDecodeText(_fResourceName, GetScript());
}

Tova::String FTFont_resource::TypeAsText() const {
  std::string tCharacters;
  for (int tShift = 24; tShift >= 0; tShift -= 8) tCharacters += static_cast<char>(_fResourceType >> tShift);
  return FTDecodeText(tCharacters, kTovaTextEncodingRoman);
}
