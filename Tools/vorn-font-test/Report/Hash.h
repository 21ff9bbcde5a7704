#pragma once

#include <Tova/Tova.hpp>
#include <bit>
#include <cstdint>
#include <string_view>

namespace tool {

/// A hash of values one after the other that is the same in every run: that of Fowler, Noll and Vo (FNV-1a of 64 bits).
class Hash {
 public:
  void Add(std::string_view text) {
    for (const char character : text) AddByte(static_cast<uint8_t>(character));
    Add(uint64_t{text.size()});
  }
  void Add(uint64_t number) {
    for (int shift = 0; shift < 64; shift += 8) AddByte(static_cast<uint8_t>(number >> shift));
  }
  void Add(double number) { Add(std::bit_cast<uint64_t>(number)); }
  /// The arguments of a message.
  void Add(TovaArrayRef arguments) {
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
  }
  uint64_t Value() const { return value_; }

 private:
  void AddByte(uint8_t byte) { value_ = (value_ ^ byte) * 0x100000001B3; }

  uint64_t value_ = 0xCBF29CE484222325;
};

}  // namespace tool
