#include "TableAccess/AncillaryClasses/FTNameTableEntry.h"

#include <algorithm>
#include <iterator>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/AncillaryClasses/FTWorkBudget.h"

FTNameTableEntry::FTNameTableEntry(Tova::ByteView iBytes, uint32_t iNameCode, uint32_t iPlatform, uint32_t iScript,
                                   uint32_t iLanguage, FTWorkBudget* ioBudget)
    : _fBytes(iBytes),
      _fHasBytes(true),
      _fNameCode(iNameCode),
      _fPlatform(iPlatform),
      _fScript(iScript),
      _fLanguage(iLanguage),
      _fBudget(ioBudget) {}

bool FTNameTableEntry::operator==(const FTNameTableEntry& iOther) const {
  return _fNameCode == iOther._fNameCode && _fPlatform == iOther._fPlatform && _fScript == iOther._fScript &&
         _fLanguage == iOther._fLanguage && _fBytes == iOther._fBytes;
}

TovaTextEncoding FTNameTableEntry::GetEncoding() const {
  switch (_fPlatform) {
    case 0:  // Unicode
      return kTovaTextEncodingUTF16BigEndian;
    case 1:  // the script codes are the numbers of the encodings
      return _fScript;
    case 2:  // ISO
      if (_fScript == 1) return kTovaTextEncodingUTF16BigEndian;
      return _fScript == 0 || _fScript == 2 ? kTovaTextEncodingISOLatin1 : kTovaTextEncodingInvalid;
    case 3:  // Microsoft
      switch (_fScript) {
        case 0:
        case 1:
        case 10:
          return kTovaTextEncodingUTF16BigEndian;
        case 2:
          return kTovaTextEncodingDOSJapanese;
        case 3:
          return kTovaTextEncodingDOSSimplifiedChinese;
        case 4:
          return kTovaTextEncodingDOSTraditionalChinese;
        case 5:
          return kTovaTextEncodingDOSKorean;
        case 6:
          return kTovaTextEncodingWindowsKoreanJohab;
        default:
          return kTovaTextEncodingInvalid;
      }
    default:
      return kTovaTextEncodingInvalid;
  }
}

TovaStringRef FTNameTableEntry::GetNameString() const {
  if (!_fDecoded && _fHasBytes) ReplaceNameStringFromUnswappedNameData();
  return _fNameString.get();
}

void FTNameTableEntry::SetNameString(const Tova::String& iName) {
  _fNameString = iName;
  _fDecoded = true;
}

void FTNameTableEntry::ReplaceNameStringFromUnswappedNameData() const {
  if (!_fHasBytes) FTThrow("_fUnswappedNameData == NULL", "A memory allocation operation failed");
  if (_fBudget) _fBudget->Charge(_fBytes.Size());
  const TovaTextEncoding tEncoding = GetEncoding();
  _fNameString = tEncoding == kTovaTextEncodingInvalid
                     ? Tova::MakeString("\uFFFD")
                     : Tova::Adopt(TovaStringCreateWithBytes(_fBytes.Data(), _fBytes.Size(), tEncoding));
  _fDecoded = true;
}
