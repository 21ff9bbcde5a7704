#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Platform/CodePages.h"
#include "Platform/Johab.h"
#include "Platform/String.h"
#include "Platform/Utf8.h"

namespace Tova {
namespace {

constexpr TovaTextEncoding kLastScript = 32;
/// UTF-8 of UTF-16 units; none for an unpaired surrogate.
template <class UnitAt>
std::optional<std::string> FromUtf16(size_t count, UnitAt unitAt) {
  std::string text;
  text.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    char32_t code = unitAt(i);
    if (code >= 0xD800 && code <= 0xDFFF) {
      const char32_t low = code < 0xDC00 && i + 1 < count ? unitAt(i + 1) : 0;
      if (low < 0xDC00 || low > 0xDFFF) return std::nullopt;
      code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
      ++i;
    }
    AppendUtf8(text, code);
  }
  return text;
}

std::u16string ToUtf16(std::string_view text) {
  std::u16string units;
  units.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    const Utf8Character character = ReadUtf8(text, at);
    at += character.length;
    if (character.code < 0x10000) {
      units += static_cast<char16_t>(character.code);
    } else {
      units += static_cast<char16_t>(0xD7C0 + (character.code >> 10));
      units += static_cast<char16_t>(0xDC00 + (character.code & 0x3FF));
    }
  }
  return units;
}

constexpr bool IsC1Control(char16_t unit) { return unit >= 0x80 && unit < 0xA0; }

/// UTF-8 of a code page's codes; none for bytes that are no code.
std::optional<std::string> FromCodePage(std::string_view bytes, const CodePage& page) {
  std::string text;
  text.reserve(bytes.size());
  for (size_t i = 0; i < bytes.size(); ++i) {
    char16_t character = page.characters[static_cast<uint8_t>(bytes[i])];
    if (const size_t row = CodePage::RowOf(character); row != 0) {
      if (++i == bytes.size()) return std::nullopt;
      character = page.characters[row * CodePage::kRow + static_cast<uint8_t>(bytes[i])];
    }
    if (character == CodePage::kNone) return std::nullopt;
    // No platform-1 script has C1 controls; a code page that has them is only close to the script, and not there.
    if (page.encoding <= kLastScript && IsC1Control(character)) return std::nullopt;
    AppendUtf8(text, character);
  }
  return text;
}

std::optional<std::string> ToCodePage(const std::u16string& units, const CodePage& page) {
  std::string bytes;
  for (const char16_t unit : units) {
    const auto code = page.CodeOf(unit);
    if (!code || (page.encoding <= kLastScript && IsC1Control(unit))) return std::nullopt;
    if (*code > 0xFF) bytes += static_cast<char>(*code >> 8);
    bytes += static_cast<char>(*code & 0xFF);
  }
  return bytes;
}

/// None when the bytes do not decode.
std::optional<std::string> Decode(std::string_view bytes, TovaTextEncoding encoding) {
  const auto byte = [&](size_t at) { return char32_t{static_cast<unsigned char>(bytes[at])}; };
  if (encoding == kTovaTextEncodingUTF16BigEndian) {
    if (bytes.size() % 2 != 0) return std::nullopt;
    return FromUtf16(bytes.size() / 2, [&](size_t i) { return byte(2 * i) << 8 | byte(2 * i + 1); });
  }
  if (encoding == kTovaTextEncodingISOLatin1) return FromUtf16(bytes.size(), byte);
  if (encoding == kTovaTextEncodingWindowsKoreanJohab) return Utf8FromJohab(bytes);
  const CodePage* page = FindCodePage(encoding);
  return page ? FromCodePage(bytes, *page) : std::nullopt;
}

/// None when the text has no form in the encoding.
std::optional<std::string> Encode(std::string_view text, TovaTextEncoding encoding) {
  if (encoding == kTovaTextEncodingWindowsKoreanJohab) return JohabFromUtf8(text);
  const std::u16string units = ToUtf16(text);
  std::string bytes;
  if (encoding == kTovaTextEncodingUTF16BigEndian) {
    for (const char16_t unit : units) {
      bytes += static_cast<char>(unit >> 8);
      bytes += static_cast<char>(unit & 0xFF);
    }
    return bytes;
  }
  if (encoding == kTovaTextEncodingISOLatin1) {
    for (const char16_t unit : units) {
      if (unit > 0xFF) return std::nullopt;
      bytes += static_cast<char>(unit);
    }
    return bytes;
  }
  const CodePage* page = FindCodePage(encoding);
  return page ? ToCodePage(units, *page) : std::nullopt;
}

}  // namespace
}  // namespace Tova

TovaStringRef TovaStringCreateWithBytes(const uint8_t* bytes, size_t length, TovaTextEncoding encoding) {
  if (!bytes && length > 0) return nullptr;
  return Tova::Guarded([&]() -> TovaStringRef {
    auto text = Tova::Decode(std::string_view(reinterpret_cast<const char*>(bytes), length), encoding);
    return text ? Tova::NewString(std::move(*text)) : nullptr;
  });
}

bool TovaStringGetBytes(TovaStringRef string, TovaTextEncoding encoding, uint8_t* buffer, size_t capacity,
                        size_t* length) {
  if (!string) return false;
  return Tova::Guarded([&] {
    const auto bytes = Tova::Encode(string->text, encoding);
    if (!bytes || bytes->size() > capacity || (!buffer && !bytes->empty())) return false;
    std::copy(bytes->begin(), bytes->end(), buffer);
    if (length) *length = bytes->size();
    return true;
  });
}
