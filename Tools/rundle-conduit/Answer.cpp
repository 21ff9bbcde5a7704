#include "Answer.h"

#include <VornFontTest/ConduitProtocol.hpp>
#include <optional>
#include <string>

namespace conduit {
namespace {

/// What is asked.
struct Request {
  std::string path;  ///< of the asker's file; empty when that is no file of this machine
  Tova::String postScriptName;
  bool wantsDuplicate = false;
};

TovaTypeRef Get(TovaDictionaryRef dictionary, std::string_view key) {
  return TovaDictionaryGetValue(dictionary, Tova::MakeString(key).get());
}

/// None, with what is wrong, when the message is no request.
std::optional<Request> ReadRequest(TovaDataRef message, Tova::String& problem) {
  TovaStringRef reason = nullptr;
  const auto list = Tova::Adopt(TovaPropertyListCreateWithData(message, &reason));
  problem = Tova::Adopt(reason);
  if (!list) return std::nullopt;
  const TovaDictionaryRef request = Tova::AsDictionary(list.get());
  const TovaStringRef fileUrl = Tova::AsString(Get(request, VornFontTest::kFileURLKey));
  const TovaStringRef name = Tova::AsString(Get(request, VornFontTest::kPostScriptNameKey));
  const TovaBooleanRef wantsDuplicate = Tova::AsBoolean(Get(request, VornFontTest::kWantsDuplicateKey));
  const auto url = Tova::Adopt(TovaURLCreateWithString(fileUrl));
  if (!url || !name || !wantsDuplicate) {
    problem = Tova::MakeString("not a dictionary of a file's URL, a PostScript name and a boolean");
    return std::nullopt;
  }
  const char* path = TovaURLGetFileSystemPath(url.get());
  return Request{path ? path : "", Tova::Share(name), TovaBooleanGetValue(wantsDuplicate)};
}

void Set(const Tova::MutableDictionary& dictionary, std::string_view key, TovaTypeRef value) {
  TovaDictionarySetValue(dictionary.get(), Tova::MakeString(key).get(), value);
}

}  // namespace

Tova::Data Answer(InstalledFonts& fonts, int32_t messageId, TovaDataRef message) {
  if (messageId != VornFontTest::kIsDuplicateFontMessage) {
    TovaLogError(Tova::Format("Refused a message of the unknown id %d.", {messageId}).get());
    return {};
  }
  Tova::String problem;
  const auto request = ReadRequest(message, problem);
  if (!request) {
    TovaLogError(Tova::Format("Refused a malformed request: %@.", {problem}).get());
    return {};
  }
  const std::string duplicate = fonts.Find(Tova::Text(request->postScriptName), request->path);
  const auto reply = Tova::Adopt(TovaDictionaryCreateMutable());
  Set(reply, VornFontTest::kResultKey, Tova::Boolean(!duplicate.empty()));
  if (!duplicate.empty() && request->wantsDuplicate) {
    const auto url = Tova::Adopt(TovaURLCreateWithFilePath(duplicate.c_str()));
    Set(reply, VornFontTest::kFileURLKey, Tova::Adopt(TovaURLCopyString(url.get())).get());
  }
  return Tova::Adopt(TovaPropertyListCreateXMLData(reply.get()));
}

}  // namespace conduit
