#include "TableAccess/AncillaryClasses/FTException.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <string>
#include <string_view>

namespace {

constexpr std::array<const char*, kVornFTErrorCodeCount> kErrorKeys = {
#define FT_ERROR_KEY(name) #name,
    FT_ERROR_CODES(FT_ERROR_KEY)
#undef FT_ERROR_KEY
};

template <size_t N>
void Store(std::array<char, N>& oBuffer, std::string_view iText) {
  const size_t tLength = std::min(iText.size(), N - 1);
  std::copy_n(iText.begin(), tLength, oBuffer.begin());
  oBuffer[tLength] = '\0';
}

std::string_view OrEmpty(const char* iText) { return iText ? iText : std::string_view(); }

/// A source file as messages name it: without the folders above Source/ and without its ending.
std::string SourceName(std::string_view iPath) {
  constexpr std::string_view kRoot = "Source/";
  if (const size_t tRoot = iPath.rfind(kRoot); tRoot != iPath.npos) iPath.remove_prefix(tRoot + kRoot.size());
  return std::string(iPath.substr(0, iPath.rfind('.')));
}

}  // namespace

FTException::FTException(const char* iAssertion, int32_t iCode, const char* iFile, uint32_t iLine)
    : _fCode(iCode), _fLine(iLine) {
  Store(_fAssertion, OrEmpty(iAssertion));
  Store(_fFile, OrEmpty(iFile));
  std::snprintf(_fDetailedMessage.data(), _fDetailedMessage.size(), "Error %" PRId32 " (%s) in file %s, line %" PRIu32,
                _fCode, _fAssertion.data(), _fFile.data(), _fLine);
}

FTException::FTException(const char* iAssertion, int32_t iCode, const char* iDetail, const char* iFile, uint32_t iLine)
    : FTException(iAssertion, iCode, iFile, iLine) {
  const std::string_view tMessage = GetDetailedMessage();
  std::snprintf(_fDetailedMessage.data() + tMessage.size(), _fDetailedMessage.size() - tMessage.size(), " (%s)",
                iDetail ? iDetail : "");
}

FTException::FTException(const FTException& iOther)
    : _fAssertion(iOther._fAssertion),
      _fCode(iOther._fCode),
      _fFile(iOther._fFile),
      _fLine(iOther._fLine),
      _fDetailedMessage(iOther._fDetailedMessage) {}

FTException& FTException::operator=(const FTException& iOther) {
  if (this == &iOther) return *this;
  _fAssertion = iOther._fAssertion;
  _fCode = iOther._fCode;
  _fFile = iOther._fFile;
  _fLine = iOther._fLine;
  _fDetailedMessage = iOther._fDetailedMessage;
  _fUIMessage = {};
  return *this;
}

TovaStringRef FTException::GetUIMessageString() const {
  if (!_fUIMessage) {
    PrintReport();
    const std::string_view tMessage = GetDetailedMessage();
    _fUIMessage = Tova::Adopt(TovaStringCreateWithLossyUTF8(tMessage.data(), tMessage.size()));
  }
  return _fUIMessage.get();
}

void FTException::PrintReport() const {
  const std::string tLine = std::string("FTException: ") + GetDetailedMessage();
  TovaLogLine(Tova::Adopt(TovaStringCreateWithLossyUTF8(tLine.data(), tLine.size())).get());
}

void FTThrow(const char* iAssertion, const char* iDetail, FTSourcePlace iPlace) {
  throw FTException(iAssertion, -1, iDetail, SourceName(iPlace.file).c_str(), iPlace.line);
}

void FTThrow(const FTFault& iFault) {
  throw FTException(iFault.assertion, -1, iFault.detail, iFault.file, iFault.line);
}

Tova::String GetUIMessageString(int32_t iCode) {
  if (iCode < 0 || iCode >= kVornFTErrorCodeCount) return Tova::MakeString("");
  const Tova::String tKey = Tova::MakeString(kErrorKeys[static_cast<size_t>(iCode)]);
  const Tova::String tTable = Tova::MakeString("VornFTMessages");
  return Tova::Adopt(TovaBundleCopyLocalizedString(GetBundle(), tKey.get(), tKey.get(), tTable.get()));
}

TovaBundleRef GetBundle() { return TovaBundleGetWithIdentifier(Tova::MakeString("veltrin.VornFontTest").get()); }
