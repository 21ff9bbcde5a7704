#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Tova {

/// The characters that a language is written with.
struct LanguageAlphabet {
  /// 256 characters: a bit for each, those of word i from 256 * number + 32 * i on, the lowest one first.
  struct Page {
    uint32_t number = 0;
    std::array<uint32_t, 8> words = {};
    bool operator==(const Page&) const = default;
  };

  std::string tag;          ///< as of RFC 5646, in lower case: "de", "zh-cn"
  std::vector<Page> pages;  ///< ascending
  uint32_t count = 0;       ///< of characters
  bool operator==(const LanguageAlphabet&) const = default;
};

/// The languages by the bytes of their tags, from the resource LanguageAlphabets.txt of the library's bundle, which is
/// read at the first call. Empty without the resource.
const std::vector<LanguageAlphabet>& LanguageAlphabets();

/// The alphabets of a text with a line for each: the tag, then for each run of characters a space and "41-5A" or "E4",
/// ascending. A line that does not parse is skipped.
std::vector<LanguageAlphabet> ParseLanguageAlphabets(std::string_view text);

}  // namespace Tova
