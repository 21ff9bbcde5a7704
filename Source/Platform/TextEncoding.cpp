#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Platform/IcuConverters.h"
#include "Platform/Johab.h"
#include "Platform/String.h"
#include "Platform/Utf8.h"

namespace Tova {
namespace {

struct NamedEncoding {
  TovaTextEncoding encoding;
  const char* converter;  ///< ICU's name
};

/// The encodings that need a converter. For a platform-1 script it is the closest that ICU has.
constexpr std::array kConverters = {
    NamedEncoding{kTovaTextEncodingRoman, "windows-10000"},
    NamedEncoding{1, "ibm-943_P15A-2003"},
    NamedEncoding{2, "windows-950-2000"},
    NamedEncoding{3, "ibm-970_P110_P110-2006_U2"},
    NamedEncoding{4, "ibm-1089_P100-1995"},
    NamedEncoding{5, "ibm-5012_P100-1999"},
    NamedEncoding{6, "windows-10006"},
    NamedEncoding{7, "windows-10007"},
    NamedEncoding{21, "windows-874-2000"},
    NamedEncoding{25, "ibm-1383_P110-1999"},
    NamedEncoding{29, "windows-10029"},
    NamedEncoding{kTovaTextEncodingDOSJapanese, "ibm-943_P15A-2003"},
    NamedEncoding{kTovaTextEncodingDOSSimplifiedChinese, "windows-936-2000"},
    NamedEncoding{kTovaTextEncodingDOSKorean, "windows-949-2000"},
    NamedEncoding{kTovaTextEncodingDOSTraditionalChinese, "windows-950-2000"},
};

constexpr TovaTextEncoding kLastScript = 32;
/// ICU counts in 32 bits, and a byte becomes at most two UTF-16 units, a unit at most eight bytes.
constexpr size_t kMaximumLength = std::numeric_limits<int32_t>::max() / 16;

#include "RomanCharacters.inc"

struct CloseConverter {
  void operator()(UConverter* converter) const { Icu().close(converter); }
};
using Converter = std::unique_ptr<UConverter, CloseConverter>;

Converter OpenConverter(const char* name) {
  UErrorCode error = U_ZERO_ERROR;
  const IcuConverters& icu = Icu();
  Converter converter(icu.open(name, &error));
  icu.setToUCallBack(converter.get(), icu.stopToU, nullptr, nullptr, nullptr, &error);
  icu.setFromUCallBack(converter.get(), icu.stopFromU, nullptr, nullptr, nullptr, &error);
  return U_SUCCESS(error) ? std::move(converter) : nullptr;
}

/// The row of an encoding that needs a converter, null for any other.
const NamedEncoding* FindEncoding(TovaTextEncoding encoding) {
  const auto* row = std::ranges::find(kConverters, encoding, &NamedEncoding::encoding);
  return row == kConverters.end() ? nullptr : row;
}

/// This thread's converter, opened at its first use; null when ICU has none.
UConverter* ConverterOf(const NamedEncoding& encoding) {
  thread_local std::array<Converter, kConverters.size()> converters;
  Converter& converter = converters[static_cast<size_t>(&encoding - kConverters.data())];
  if (!converter) converter = OpenConverter(encoding.converter);
  return converter.get();
}

/// Whether the bytes are printable ASCII, which all of these encodings share.
bool IsPlain(std::string_view bytes) {
  return std::ranges::all_of(bytes, [](char byte) { return byte >= ' ' && byte <= '~'; });
}

char32_t RomanCharacter(unsigned char byte) { return byte < 0x80 ? byte : kRomanCharacters[byte - 0x80]; }

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

bool HasControl(const std::u16string& units) {
  for (const char16_t unit : units) {
    if (unit >= 0x80 && unit < 0xA0) return true;
  }
  return false;
}

std::optional<std::string> Convert(std::string_view bytes, TovaTextEncoding encoding) {
  const NamedEncoding* known = FindEncoding(encoding);
  if (!known || bytes.size() > kMaximumLength) return std::nullopt;
  if (IsPlain(bytes)) return std::string(bytes);
  if (encoding == kTovaTextEncodingRoman) {
    return FromUtf16(bytes.size(), [&](size_t i) { return RomanCharacter(static_cast<unsigned char>(bytes[i])); });
  }
  UConverter* converter = ConverterOf(*known);
  if (!converter) return std::nullopt;
  std::u16string units(bytes.size() * 2, u'\0');
  UErrorCode error = U_ZERO_ERROR;
  const int32_t length = Icu().toUChars(converter, units.data(), static_cast<int32_t>(units.size()), bytes.data(),
                                        static_cast<int32_t>(bytes.size()), &error);
  if (U_FAILURE(error)) return std::nullopt;
  units.resize(static_cast<size_t>(length));
  // No platform-1 script has C1 controls; a converter that yields them is only close to the script, and not there.
  if (encoding <= kLastScript && HasControl(units)) return std::nullopt;
  return FromUtf16(units.size(), [&](size_t i) { return char32_t{units[i]}; });
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
  return Convert(bytes, encoding);
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
  const NamedEncoding* known = FindEncoding(encoding);
  if (!known || units.size() > kMaximumLength) return std::nullopt;
  if (IsPlain(text)) return std::string(text);
  if (encoding <= kLastScript && HasControl(units)) return std::nullopt;
  UConverter* converter = ConverterOf(*known);
  if (!converter) return std::nullopt;
  bytes.resize(units.size() * 8);
  UErrorCode error = U_ZERO_ERROR;
  const int32_t length = Icu().fromUChars(converter, bytes.data(), static_cast<int32_t>(bytes.size()), units.data(),
                                          static_cast<int32_t>(units.size()), &error);
  if (U_FAILURE(error)) return std::nullopt;
  bytes.resize(static_cast<size_t>(length));
  return bytes;
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
