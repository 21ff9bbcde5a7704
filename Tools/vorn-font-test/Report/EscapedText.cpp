#include "Report/EscapedText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

namespace tool {
namespace {

/// Whether the character acts on the terminal or on the direction of the line instead of being shown, or is none.
bool IsControl(uint32_t code) {
  return code < 0x20 || (code >= 0x7F && code <= 0x9F) || code == 0x61C || code == 0x200E || code == 0x200F ||
         (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069) || code == 0xFFFE || code == 0xFFFF;
}

void AppendEscape(std::string& text, const char* format, uint32_t code) {
  std::array<char, 16> escape;
  text.append(escape.data(), static_cast<size_t>(std::snprintf(escape.data(), escape.size(), format, code)));
}

bool IsPlainInJson(char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; }

/// What stands for a character in a JSON string; empty for the character itself.
std::string JsonEscape(Utf8Character character) {
  constexpr std::string_view kNamed = "\"\\\b\f\n\r\t";
  constexpr std::string_view kNames = "\"\\bfnrt";
  if (character.bytes == 0) return "\xEF\xBF\xBD";
  if (character.bytes == 1) {
    const size_t named = kNamed.find(static_cast<char>(character.code));
    if (named != std::string_view::npos) return {'\\', kNames[named]};
  }
  std::string escape;
  if (IsControl(character.code)) AppendEscape(escape, "\\u%04x", character.code);
  return escape;
}

}  // namespace

Utf8Character DecodeUtf8(std::string_view text) {
  const auto byte = [&](size_t at) { return static_cast<uint8_t>(text[at]); };
  const uint8_t lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  const size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < bytes) return {lead, 0};
  uint32_t code = lead & (0x7Fu >> bytes);
  for (size_t i = 1; i < bytes; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return {lead, 0};
    code = code << 6 | (byte(i) & 0x3Fu);
  }
  static constexpr std::array<uint32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
  const bool valid = code >= kSmallest[bytes] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
  return {valid ? code : lead, valid ? bytes : 0};
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const size_t bytes = DecodeUtf8(text).bytes;
    if (bytes == 0) return false;
    text.remove_prefix(bytes);
  }
  return true;
}

std::string EscapeForTerminal(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const Utf8Character character = DecodeUtf8(text);
    const size_t bytes = character.bytes == 0 ? 1 : character.bytes;
    if (character.bytes == 0 || (character.bytes == 1 && IsControl(character.code))) {
      AppendEscape(result, "\\x%02x", character.code);
    } else if (IsControl(character.code)) {
      AppendEscape(result, "\\u%04x", character.code);
    } else {
      result.append(text.substr(0, bytes));
    }
    text.remove_prefix(bytes);
  }
  return result;
}

std::string EscapeForMarkup(std::string_view text, std::string_view special) {
  constexpr std::string_view kMarkup = "&<>\"'";
  std::string result;
  for (const char c : EscapeForTerminal(text)) {
    if (kMarkup.find(c) == std::string_view::npos && special.find(c) == std::string_view::npos) {
      result += c;
    } else {
      result.append("&#").append(std::to_string(c)).append(";");
    }
  }
  return result;
}

std::string PercentEncoded(std::string_view bytes) {
  constexpr std::string_view kUnreserved = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
  std::string text;
  for (const char c : bytes) {
    if (kUnreserved.find(c) != std::string_view::npos) {
      text += c;
    } else {
      AppendEscape(text, "%%%02X", static_cast<uint8_t>(c));
    }
  }
  return text;
}

std::string PercentDecoded(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    uint8_t byte = 0;
    const bool isCode = text.size() >= 3 && text[0] == '%' &&
                        std::from_chars(text.data() + 1, text.data() + 3, byte, 16).ptr == text.data() + 3;
    bytes += isCode ? static_cast<char>(byte) : text[0];
    text.remove_prefix(isCode ? 3 : 1);
  }
  return bytes;
}

void WriteJsonString(std::string_view text, const TextSink& sink) {
  sink("\"");
  size_t begin = 0;  // of what is not written yet
  for (size_t at = 0; at < text.size();) {
    if (IsPlainInJson(text[at])) {
      ++at;
      continue;
    }
    const Utf8Character character = DecodeUtf8(text.substr(at));
    const std::string escape = JsonEscape(character);
    const size_t end = at + std::max<size_t>(character.bytes, 1);
    if (!escape.empty()) {
      sink(text.substr(begin, at - begin));
      sink(escape);
      begin = end;
    }
    at = end;
  }
  sink(text.substr(begin));
  sink("\"");
}

}  // namespace tool
