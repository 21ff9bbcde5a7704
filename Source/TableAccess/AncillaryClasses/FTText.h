#pragma once

#include <Tova/Tova.hpp>
#include <string_view>
#include <vector>

/// The text of characters in an encoding; none when they mean nothing in it.
inline Tova::String FTDecodeText(std::string_view iCharacters, TovaTextEncoding iEncoding) {
  const std::vector<uint8_t> tBytes(iCharacters.begin(), iCharacters.end());
  return Tova::Adopt(TovaStringCreateWithBytes(tBytes.data(), tBytes.size(), iEncoding));
}
