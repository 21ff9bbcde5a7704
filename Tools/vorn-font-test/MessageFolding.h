#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace tool {

/// How many messages that differ only in their numbers are shown before the rest of them is counted.
inline constexpr size_t kMessagesBeforeFolding = 3;

/// Leaves messages out that repeat earlier ones with other numbers. A single repetition too many stays: a count would
/// take as much room. All messages are counted first, then each is decided on, in the same order. What is kept does not
/// grow with the messages.
class MessageFolding {
 public:
  struct Decision {
    bool show = false;
    size_t leftOut = 0;  ///< how many like it are left out after it
  };

  void Count(std::string_view text);
  Decision Decide(std::string_view text);

 private:
  struct Group {
    size_t count = 0;
    size_t seen = 0;
  };
  /// Messages of further kinds are all shown.
  static constexpr size_t kMostKinds = 20'000;

  /// The hash of the text without numbers. Two kinds that share one, a chance of 1 in 10^11 even among the most, would
  /// be folded together.
  static size_t KindOf(std::string_view text);

  std::unordered_map<size_t, Group> groups_;
};

/// The text with every decimal and hexadecimal number in it replaced by '#'.
std::string WithoutNumbers(std::string_view text);

}  // namespace tool
