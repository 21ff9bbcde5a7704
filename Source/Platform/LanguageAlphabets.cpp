#include "Platform/LanguageAlphabets.h"

#include <Tova/Tova.hpp>
#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
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

std::optional<uint32_t> ParseCharacter(std::string_view text) {
  uint32_t character = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), character, 16);
  if (error != std::errc() || end != text.data() + text.size() || character > kLastCharacter) return std::nullopt;
  return character;
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
    std::string_view run = TakeUntil(line, ' ');
    const bool isRange = run.find('-') != std::string_view::npos;
    const auto first = ParseCharacter(TakeUntil(run, '-'));
    const auto last = isRange ? ParseCharacter(run) : first;
    if (!first || !last || *first < next || *last < *first) return std::nullopt;
    for (uint32_t character = *first; character <= *last; ++character) Add(alphabet, character);
    next = *last + 1;
  }
  return alphabet.tag.empty() || alphabet.count == 0 ? std::nullopt : std::optional(alphabet);
}

std::vector<LanguageAlphabet> ReadResource() {
  const TovaBundleRef bundle = TovaBundleGetWithIdentifier(MakeString("veltrin.VornFontTest").get());
  const Url url =
      Adopt(TovaBundleCopyResourceURL(bundle, MakeString("LanguageAlphabets").get(), MakeString("txt").get()));
  const String path = Adopt(TovaURLCopyPath(url.get()));
  if (!path) return {};
  std::ifstream file(std::string(Text(path)), std::ios::binary);
  return ParseLanguageAlphabets(std::string(std::istreambuf_iterator<char>(file), {}));
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
