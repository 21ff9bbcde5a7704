#include "Platform/Base64.h"

#include <cstdint>

namespace Tova {
namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string EncodeBase64(std::string_view bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (size_t at = 0; at < bytes.size(); at += 3) {
    const std::string_view group = bytes.substr(at, 3);
    uint32_t bits = 0;
    for (size_t i = 0; i < 3; ++i) bits = bits << 8 | (i < group.size() ? static_cast<unsigned char>(group[i]) : 0U);
    for (size_t i = 0; i < 4; ++i) text += i <= group.size() ? kAlphabet[bits >> (18 - 6 * i) & 63U] : '=';
  }
  return text;
}

std::optional<std::string> DecodeBase64(std::string_view text) {
  std::string bytes;
  uint32_t bits = 0;
  size_t digits = 0;   // of the current group of four
  size_t padding = 0;  // '=' seen; nothing may follow the group they are in
  for (const char c : text) {
    if (c == ' ' || c == '\t' || c == '\n' || c == '\r') continue;
    const size_t value = c == '=' ? 0 : kAlphabet.find(c);
    if (value == std::string_view::npos || (c != '=' && padding > 0)) return std::nullopt;
    if (c == '=' && (digits < 2 || ++padding > 2)) return std::nullopt;
    bits = bits << 6 | static_cast<uint32_t>(value);
    if (++digits < 4) continue;
    for (size_t i = 0; i < 3 - padding; ++i) bytes += static_cast<char>(bits >> (16 - 8 * i) & 0xFFU);
    bits = 0;
    digits = 0;
  }
  if (digits != 0) return std::nullopt;
  return bytes;
}

}  // namespace Tova
