#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Tova {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;

/// A character read from UTF-8 and the bytes it took.
struct Utf8Character {
  char32_t code = 0;
  size_t length = 0;
  bool valid = false;
};

/// The character at the position, which lies in the text. Of bytes that are not UTF-8 (overlong, surrogates, cut short)
/// it takes the longest start of a valid sequence, at least one byte.
Utf8Character ReadUtf8(std::string_view text, size_t at);

/// How many of the first bytes are ASCII.
size_t AsciiPrefix(std::string_view text);
bool IsUtf8(std::string_view text);
/// Appends the text with U+FFFD in place of what is not UTF-8.
void AppendLossy(std::string& out, std::string_view text);
/// Appends a character beyond ASCII; U+FFFD for what is no Unicode scalar value.
void AppendUtf8Sequence(std::string& out, char32_t code);
/// The same for any character.
inline void AppendUtf8(std::string& out, char32_t code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else {
    AppendUtf8Sequence(out, code);
  }
}

}  // namespace Tova
