#include "Report/FileKind.h"

#include <algorithm>
#include <fstream>
#include <string_view>

#include "Report/EscapedText.h"

namespace tool {
namespace {

constexpr size_t kBytesRead = 512;

struct Signature {
  std::string_view bytes;
  std::string_view words;
};

constexpr std::string_view kPlainType1 = "is a Type 1 font in plain form (.pfa, .t1); segments (.pfb) can be tested";

/// Files that people take for fonts, by their first bytes.
constexpr Signature kSignatures[] = {{"PK\x03\x04", "is a ZIP archive; unpack it first"},
                                     {"\x1F\x8B", "is compressed (gzip); unpack it first"},
                                     {"BZh", "is compressed (bzip2); unpack it first"},
                                     {"\xFD"
                                      "7zXZ",
                                      "is compressed (xz); unpack it first"},
                                     {"\x89PNG", "is an image (PNG)"},
                                     {"GIF8", "is an image (GIF)"},
                                     {"\xFF\xD8\xFF", "is an image (JPEG)"},
                                     {"%PDF", "is a PDF document"},
                                     {"%!PS-AdobeFont", kPlainType1},
                                     {"%!FontType1", kPlainType1}};

/// Whether the bytes are text; the last character may be cut off.
bool IsText(std::string_view bytes) {
  for (size_t cut = 0; cut < 4 && cut < bytes.size(); ++cut) {
    if (!IsUtf8(bytes.substr(0, bytes.size() - cut))) continue;
    return std::ranges::none_of(bytes, [](char c) { return c >= 0 && c < ' ' && c != '\t' && c != '\n' && c != '\r'; });
  }
  return false;
}

std::string KindInWords(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string bytes(kBytesRead, '\0');
  file.read(bytes.data(), kBytesRead);
  bytes.resize(static_cast<size_t>(file.gcount()));
  if (bytes.empty()) return "is empty";
  for (const Signature& signature : kSignatures) {
    if (bytes.starts_with(signature.bytes)) return std::string(signature.words);
  }
  return IsText(bytes) ? "holds text" : "is not a font file, or its beginning is damaged";
}

}  // namespace

std::string WhyUnopened(const std::string& path) { return "no font can be opened: the file " + KindInWords(path); }

}  // namespace tool
