#pragma once

#include <Tova/Tova.hpp>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace tool {

/// The 64-bit hash of Fowler, Noll and Vo (FNV-1a) over some texts and numbers, which stays the same from run to run.
class Fingerprint {
 public:
  Fingerprint& Add(std::string_view text) {
    for (const char c : text) Mix(static_cast<uint8_t>(c));
    Mix(0);
    return *this;
  }
  Fingerprint& Add(uint64_t number) {
    for (int shift = 0; shift < 64; shift += 8) Mix(static_cast<uint8_t>(number >> shift));
    return *this;
  }
  Fingerprint& Add(double number) { return Add(std::bit_cast<uint64_t>(number)); }
  /// The arguments of a message.
  Fingerprint& Add(TovaArrayRef arguments) {
    for (TovaIndex i = 0; i < TovaArrayGetCount(arguments); ++i) {
      const TovaTypeRef value = TovaArrayGetValueAtIndex(arguments, i);
      const TovaNumberRef number = Tova::AsNumber(value);
      if (!number) {
        Add(Tova::Text(Tova::AsString(value)));
      } else if (TovaNumberIsReal(number)) {
        Add(TovaNumberGetReal(number));
      } else {
        Add(static_cast<uint64_t>(TovaNumberGetInteger(number)));
      }
    }
    return *this;
  }
  uint64_t Value() const { return hash_; }
  std::string Text() const {
    std::array<char, 24> digits;
    std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(hash_));
    return digits.data();
  }

 private:
  void Mix(uint8_t byte) { hash_ = (hash_ ^ byte) * 0x100000001B3u; }

  uint64_t hash_ = 0xCBF29CE484222325u;
};

}  // namespace tool
