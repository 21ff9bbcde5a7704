#include "Platform/Utf8.h"

#include <cstdint>
#include <cstring>

namespace Tova {

Utf8Character ReadUtf8(std::string_view text, size_t at) {
  const auto byte = [&](size_t offset) { return static_cast<unsigned char>(text[at + offset]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return {lead, 1, true};
  const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4) return {kReplacementCharacter, 1, false};
  // The second byte's range excludes overlong forms, surrogates and what lies above U+10FFFF.
  unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  char32_t code = lead & (0xFFU >> (length + 1));
  for (size_t i = 1; i < length; ++i) {
    if (i >= text.size() - at || byte(i) < low || byte(i) > high) return {kReplacementCharacter, i, false};
    code = code << 6 | (byte(i) & 0x3FU);
    low = 0x80;
    high = 0xBF;
  }
  return {code, length, true};
}

size_t AsciiPrefix(std::string_view text) {
  size_t at = 0;
  for (uint64_t block; text.size() - at >= sizeof(block); at += sizeof(block)) {
    std::memcpy(&block, text.data() + at, sizeof(block));
    if (block & 0x8080808080808080U) break;
  }
  while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80) ++at;
  return at;
}

bool IsUtf8(std::string_view text) {
  for (size_t at = AsciiPrefix(text); at < text.size();) {
    const Utf8Character character = ReadUtf8(text, at);
    if (!character.valid) return false;
    at += character.length;
  }
  return true;
}

void AppendLossy(std::string& out, std::string_view text) {
  while (!text.empty()) {
    const size_t ascii = AsciiPrefix(text);
    out += text.substr(0, ascii);
    text.remove_prefix(ascii);
    if (text.empty()) return;
    const Utf8Character character = ReadUtf8(text, 0);
    AppendUtf8(out, character.code);
    text.remove_prefix(character.length);
  }
}

void AppendUtf8Sequence(std::string& out, char32_t code) {
  if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) code = kReplacementCharacter;
  const auto put = [&](char32_t byte) { out += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (code < 0x800) {
    put(0xC0 | code >> 6);
  } else {
    if (code < 0x10000) {
      put(0xE0 | code >> 12);
    } else {
      put(0xF0 | code >> 18);
      put(0x80 | (code >> 12 & 0x3F));
    }
    put(0x80 | (code >> 6 & 0x3F));
  }
  put(0x80 | (code & 0x3F));
}

}  // namespace Tova
