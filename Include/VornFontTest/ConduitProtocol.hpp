// What a conduit and those who ask it agree on; docs/conduit.md describes it. Header-only, C++17.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace VornFontTest {

/// The id of the one message: "is a font with this PostScript name installed?"
inline constexpr int32_t kIsDuplicateFontMessage = 0;

/// Keys of the request, an XML property list of a dictionary: the URL of the file that the asker looks at, as text (a
/// string); the PostScript name asked about (a string); whether the URL of the font found is wanted (a boolean).
inline constexpr std::string_view kFileURLKey = "FileURLKey";
inline constexpr std::string_view kPostScriptNameKey = "PostscritNameKey";  // spelled so
inline constexpr std::string_view kWantsDuplicateKey = "WantsDupKey";
/// Key of the reply, an XML property list of a dictionary: whether such a font is installed (a boolean). Where the URL
/// was wanted and there is one, it stands under kFileURLKey (a string).
inline constexpr std::string_view kResultKey = "Result";

inline constexpr std::string_view kConduitPortBaseName = "veltrin.Vorn.RundleConduit";
/// The environment variable that lets several conduits serve one user, each the programs that have the same value.
inline constexpr const char* kConduitSuffixVariable = "XT_SERVICE_NAME_SUFFIX";

/// The name of the conduit's message port for a value of that variable, null where it is not set. The suffix is the
/// text before the first "VALIDATOR_%V", less one '_' at its end; without that token, the whole value. Empty when the
/// name would not be ASCII: then there is no such port.
inline std::string ConduitPortName(const char* iVariable) {
  constexpr std::string_view kToken = "VALIDATOR_%V";
  std::string tName(kConduitPortBaseName);
  std::string tSuffix = iVariable ? iVariable : "";
  if (const size_t tAt = tSuffix.find(kToken); tAt != std::string::npos) {
    tSuffix.resize(tAt);
    if (!tSuffix.empty() && tSuffix.back() == '_') tSuffix.pop_back();
  }
  if (!tSuffix.empty()) {
    char tBuffer[67];
    std::snprintf(tBuffer, sizeof(tBuffer), "%s_%s", tName.c_str(), tSuffix.c_str());
    tName = tBuffer;
  }
  for (const char tCharacter : tName) {
    if (static_cast<unsigned char>(tCharacter) > 0x7F) return {};
  }
  return tName;
}

}  // namespace VornFontTest
