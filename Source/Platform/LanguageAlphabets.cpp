#include "Platform/LanguageAlphabets.h"

#include <Tova/Tova.hpp>
#include <algorithm>
#include <fstream>
#include <optional>

namespace Tova {
namespace {

constexpr uint32_t kLastCharacter = 0x10FFFF;

/// Cuts off and returns what stands before the next separator.
std::string_view TakeUntil(std::string_view& rest, char separator) {
  const std::string_view part = rest.substr(0, rest.find(separator));
  rest.remove_prefix(std::min(part.size() + 1, rest.size()));
  return part;
}

/// Cuts off and returns a character in hexadecimal; none when there is no digit or no such character.
std::optional<uint32_t> TakeCharacter(std::string_view& rest) {
  uint32_t character = 0;
  size_t digits = 0;
  for (; digits < rest.size(); ++digits) {
    const char c = rest[digits];
    if (c >= '0' && c <= '9') {
      character = 16 * character + static_cast<uint32_t>(c - '0');
    } else if (c >= 'A' && c <= 'F') {
      character = 16 * character + static_cast<uint32_t>(c - 'A' + 10);
    } else {
      break;
    }
    if (character > kLastCharacter) return std::nullopt;
  }
  if (digits == 0) return std::nullopt;
  rest.remove_prefix(digits);
  return character;
}

bool Take(std::string_view& rest, char wanted) {
  if (rest.empty() || rest[0] != wanted) return false;
  rest.remove_prefix(1);
  return true;
}

void Add(LanguageAlphabet& alphabet, uint32_t character) {
  if (alphabet.pages.empty() || alphabet.pages.back().number != character / 256) {
    alphabet.pages.push_back({character / 256, {}});
  }
  alphabet.pages.back().words[character % 256 / 32] |= uint32_t{1} << character % 32;
  ++alphabet.count;
}

std::optional<LanguageAlphabet> ParseLine(std::string_view line) {
  LanguageAlphabet alphabet;
  alphabet.tag = TakeUntil(line, ' ');
  uint32_t next = 0;  // runs ascend
  while (!line.empty()) {
    const auto first = TakeCharacter(line);
    const auto last = Take(line, '-') ? TakeCharacter(line) : first;
    if (!first || !last || *first < next || *last < *first) return std::nullopt;
    if (!Take(line, ' ') && !line.empty()) return std::nullopt;
    for (uint32_t character = *first; character <= *last; ++character) Add(alphabet, character);
    next = *last + 1;
  }
  if (alphabet.tag.empty() || alphabet.count == 0) return std::nullopt;
  return alphabet;
}

std::vector<LanguageAlphabet> ReadResource() {
  const TovaBundleRef bundle = TovaBundleGetWithIdentifier(MakeString("veltrin.VornFontTest").get());
  const Url url =
      Adopt(TovaBundleCopyResourceURL(bundle, MakeString("LanguageAlphabets").get(), MakeString("txt").get()));
  const String path = Adopt(TovaURLCopyPath(url.get()));
  if (!path) return {};
  std::ifstream file(std::string(Text(path)), std::ios::binary | std::ios::ate);
  std::string text(file ? static_cast<size_t>(file.tellg()) : 0, '\0');
  file.seekg(0).read(text.data(), static_cast<std::streamsize>(text.size()));
  return ParseLanguageAlphabets(text);
}

}  // namespace

const std::vector<LanguageAlphabet>& LanguageAlphabets() {
  static const auto* alphabets = new std::vector<LanguageAlphabet>(ReadResource());
  return *alphabets;
}

std::vector<LanguageAlphabet> ParseLanguageAlphabets(std::string_view text) {
  std::vector<LanguageAlphabet> alphabets;
  while (!text.empty()) {
    if (auto alphabet = ParseLine(TakeUntil(text, '\n'))) alphabets.push_back(std::move(*alphabet));
  }
  std::ranges::sort(alphabets, {}, &LanguageAlphabet::tag);
  return alphabets;
}

}  // namespace Tova
