#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace Tova {

/// The characters that a language is written with.
struct LanguageAlphabet {
  /// 256 characters: a bit for each, those of word i from 256 * number + 32 * i on, the lowest one first.
  struct Page {
    uint32_t number = 0;
    std::array<uint32_t, 8> words = {};
  };

  std::string_view tag;         ///< as of RFC 5646, in lower case: "de", "zh-cn"
  std::span<const Page> pages;  ///< ascending, in static memory
  uint32_t count = 0;           ///< of characters
};

/// The languages by the bytes of their tags, as the build writes them.
std::span<const LanguageAlphabet> LanguageAlphabets();

}  // namespace Tova
