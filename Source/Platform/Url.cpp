#include "Platform/Url.h"

#include <strings.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

#include "Platform/String.h"
#include "Platform/Utf8.h"

namespace Tova {
namespace {

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Escapes all bytes of a path but the unreserved characters of RFC 3986 and the slash.
std::string Escape(std::string_view path) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (const char c : path) {
    if (IsLetter(c) || IsDigit(c) || std::string_view("-._~/").find(c) != std::string_view::npos) {
      text += c;
    } else {
      text += '%';
      text += kDigits[static_cast<unsigned char>(c) >> 4];
      text += kDigits[static_cast<unsigned char>(c) & 15U];
    }
  }
  return text;
}

int HexValue(char c) {
  if (IsDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

/// None when an escape is malformed or stands for NUL, or a NUL stands there itself.
std::optional<std::string> Unescape(std::string_view text) {
  std::string bytes;
  for (size_t i = 0; i < text.size(); ++i) {
    char byte = text[i];
    if (byte == '%') {
      const int high = i + 2 < text.size() ? HexValue(text[i + 1]) : -1;
      const int low = i + 2 < text.size() ? HexValue(text[i + 2]) : -1;
      if (high < 0 || low < 0) return std::nullopt;
      byte = static_cast<char>(high << 4 | low);
      i += 2;
    }
    if (byte == '\0') return std::nullopt;
    bytes += byte;
  }
  return bytes;
}

/// The length of the scheme at the start of a URL, up to its colon; 0 without one.
size_t SchemeLength(std::string_view text) {
  const size_t colon = text.find(':');
  if (colon == std::string_view::npos || !IsLetter(text[0])) return 0;
  for (const char c : text.substr(0, colon)) {
    if (!IsLetter(c) && !IsDigit(c) && c != '+' && c != '-' && c != '.') return 0;
  }
  return colon;
}

bool EqualsIgnoringCase(std::string_view first, std::string_view second) {
  return first.size() == second.size() && strncasecmp(first.data(), second.data(), first.size()) == 0;
}

TovaURLRef ParseUrl(const std::string& text) {
  const size_t schemeLength = SchemeLength(text);
  if (schemeLength == 0 || !Unescape(text)) return nullptr;
  const std::string_view scheme = std::string_view(text).substr(0, schemeLength);
  std::string_view rest = std::string_view(text).substr(schemeLength + 1);
  rest = rest.substr(0, rest.find_first_of("?#"));
  std::string_view host;
  if (rest.substr(0, 2) == "//") {
    rest.remove_prefix(2);
    host = rest.substr(0, rest.find('/'));
    rest.remove_prefix(host.size());
  }
  const bool isLocal = EqualsIgnoringCase(scheme, "file") && (host.empty() || EqualsIgnoringCase(host, "localhost")) &&
                       rest.substr(0, 1) == "/";
  return new TovaURL(text, *Unescape(rest), isLocal);
}

TovaStringRef NewLossyString(std::string_view bytes) {
  return TovaStringCreateWithLossyUTF8(bytes.data(), bytes.size());
}

}  // namespace
}  // namespace Tova

bool TovaURL::IsEqual(const Object& other, int /*depth*/) const {
  const auto& url = static_cast<const TovaURL&>(other);
  return isLocalFile == url.isLocalFile && (isLocalFile ? path == url.path : text == url.text) &&
         (data.get() == url.data.get() || TovaEqual(data.get(), url.data.get()));
}

size_t TovaURL::Hash(int /*depth*/) const { return std::hash<std::string>()(isLocalFile ? path : text); }

void TovaURL::Describe(std::string& out, int /*depth*/) const { out += text; }

TovaURLRef TovaURLCreateWithFilePath(const char* path) {
  if (!path || !*path) return nullptr;
  return Tova::Guarded([&] {
    const std::string absolute = std::filesystem::absolute(path).string();
    return new TovaURL("file://" + Tova::Escape(absolute), absolute, true);
  });
}

TovaURLRef TovaURLCreateWithString(TovaStringRef text) {
  if (!text) return nullptr;
  return Tova::Guarded([&] { return Tova::ParseUrl(text->text); });
}

TovaURLRef TovaURLCreateWithData(TovaDataRef data, TovaStringRef name) {
  if (!data) return nullptr;
  return Tova::Guarded([&] {
    const std::string path(Tova::Text(name));
    return new TovaURL("memory:" + Tova::Escape(path), path, false, Tova::Share(data));
  });
}

TovaDataRef TovaURLGetData(TovaURLRef url) { return url ? url->data.get() : nullptr; }

TovaStringRef TovaURLCopyString(TovaURLRef url) { return TovaCopyDescription(url); }

TovaStringRef TovaURLCopyPath(TovaURLRef url) { return url ? Tova::NewLossyString(url->path) : nullptr; }

TovaStringRef TovaURLCopyLastPathComponent(TovaURLRef url) {
  if (!url) return nullptr;
  std::string_view path = url->path;
  path = path.substr(0, path.find_last_not_of('/') + 1);
  return Tova::NewLossyString(path.substr(path.rfind('/') + 1));
}

const char* TovaURLGetFileSystemPath(TovaURLRef url) { return url && url->isLocalFile ? url->path.c_str() : nullptr; }
