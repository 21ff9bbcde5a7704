#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Tova {

/// What stands before the data of a message: id i32, length u32, both big-endian.
struct MessageHeader {
  static constexpr size_t kLength = 8;

  /// From at least kLength bytes.
  static MessageHeader Read(std::string_view bytes);
  /// Whether a frame of this length is taken at all.
  bool IsAcceptable() const;

  int32_t id = 0;
  uint32_t length = 0;
};

/// A whole message. The data is at most kTovaMessagePortMaximumLength long.
std::string MakeMessageFrame(int32_t id, std::string_view data);

}  // namespace Tova
