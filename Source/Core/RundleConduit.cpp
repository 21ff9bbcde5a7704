#include "Core/RundleConduit.h"

#include <VornFontTest/ConduitProtocol.hpp>
#include <chrono>
#include <cstdlib>
#include <string_view>

namespace {

void LogError(const char* iText) { TovaLogError(Tova::MakeString(iText).get()); }

void SetValue(const Tova::MutableDictionary& ioDictionary, std::string_view iKey, TovaTypeRef iValue) {
  TovaDictionarySetValue(ioDictionary.get(), Tova::MakeString(iKey).get(), iValue);
}

TovaTypeRef GetValue(TovaDictionaryRef iDictionary, std::string_view iKey) {
  return TovaDictionaryGetValue(iDictionary, Tova::MakeString(iKey).get());
}

Tova::Data MakeRequest(TovaURLRef iFileURL, TovaStringRef iPostScriptName, bool iWantsDuplicate) {
  const auto tRequest = Tova::Adopt(TovaDictionaryCreateMutable());
  SetValue(tRequest, VornFontTest::kFileURLKey, Tova::Adopt(TovaURLCopyString(iFileURL)).get());
  SetValue(tRequest, VornFontTest::kPostScriptNameKey, iPostScriptName);  // quirk: postscrit-key
  SetValue(tRequest, VornFontTest::kWantsDuplicateKey, Tova::Boolean(iWantsDuplicate));
  return Tova::Adopt(TovaPropertyListCreateXMLData(tRequest.get()));
}

RundleConduit& GetRundleConduit() {
  static const Tova::String gRundleConduitNameRef =
      Tova::MakeString(VornFontTest::ConduitPortName(std::getenv(VornFontTest::kConduitSuffixVariable)));
  static RundleConduit gValidatorConduitMessagePort(gRundleConduitNameRef);
  return gValidatorConduitMessagePort;
}

}  // namespace

void RundleConduit::Launch() {
  const std::lock_guard tLock(_fMutex);
  Connect();
}

void RundleConduit::Connect() {
  const auto tStart = std::chrono::steady_clock::now();
  const std::chrono::duration<double> tLimit(_fLimits.connect);
  do {  // quirk: tireless-connect
    _fPort = Tova::Adopt(TovaMessagePortCreateRemote(_fPortName.get()));
  } while (!_fPort && std::chrono::steady_clock::now() - tStart < tLimit);
  if (!_fPort) LogError("LaunchRundleConduit couldn't connect to RundleConduit.");
}

bool RundleConduit::SendMessage(int32_t iMessageId, TovaDataRef iData, Tova::Data* oReply) {
  if (oReply) *oReply = {};
  const std::lock_guard tLock(_fMutex);
  for (const bool tIsLastAttempt : {false, true}) {
    if (!_fPort) Connect();
    if (!_fPort) {
      LogError("couldn't use RundleConduit.");
      return false;
    }
    TovaDataRef tReply = nullptr;
    const TovaMessagePortStatus tStatus = TovaMessagePortSendRequest(_fPort.get(), iMessageId, iData, _fLimits.send,
                                                                     _fLimits.receive, oReply ? &tReply : nullptr);
    if (tStatus == kTovaMessagePortSuccess) {
      if (oReply) *oReply = Tova::Adopt(tReply);
      return true;
    }
    _fPort = {};
    if (tStatus != kTovaMessagePortIsInvalid || tIsLastAttempt) return false;
  }
  return false;
}

bool RundleConduit::SendIsDuplicateFontMessage(TovaURLRef iFileURL, TovaStringRef iPostScriptName,
                                               Tova::String* oDuplicateURL) {
  if (oDuplicateURL) *oDuplicateURL = {};
  const Tova::Data tRequest = MakeRequest(iFileURL, iPostScriptName, oDuplicateURL != nullptr);
  Tova::Data tData;
  if (!SendMessage(VornFontTest::kIsDuplicateFontMessage, tRequest.get(), &tData) || !tData) return false;
  const auto tReply = Tova::Adopt(TovaPropertyListCreateWithData(tData.get(), nullptr));
  const TovaDictionaryRef tAnswer = Tova::AsDictionary(tReply.get());
  const TovaBooleanRef tResult = Tova::AsBoolean(GetValue(tAnswer, VornFontTest::kResultKey));
  if (!tResult || !TovaBooleanGetValue(tResult)) return false;
  if (oDuplicateURL) *oDuplicateURL = Tova::Share(Tova::AsString(GetValue(tAnswer, VornFontTest::kFileURLKey)));
  return true;
}

void LaunchRundleConduit() { GetRundleConduit().Launch(); }

bool SendRundleConduitMessage(int32_t iMessageId, TovaDataRef iData, Tova::Data* oReply) {
  return GetRundleConduit().SendMessage(iMessageId, iData, oReply);
}

bool SendIsDuplicateFontMessage(TovaURLRef iFileURL, TovaStringRef iPostScriptName, Tova::String* oDuplicateURL) {
  return GetRundleConduit().SendIsDuplicateFontMessage(iFileURL, iPostScriptName, oDuplicateURL);
}
