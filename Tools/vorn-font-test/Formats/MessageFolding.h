#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace tool {

/// How many messages of one rule are shown before the rest of them is counted.
inline constexpr size_t kMessagesBeforeFolding = 3;

/// Leaves messages out that repeat the rule of earlier ones. A single repetition too many stays: a count would take as
/// much room. All messages are counted first, by their rules, then each is decided on, in the same order.
class MessageFolding {
 public:
  struct Decision {
    bool show = false;
    size_t leftOut = 0;  ///< how many like it are left out after it
  };

  void Count(std::string_view rule);
  Decision Decide(std::string_view rule);

 private:
  struct Group {
    size_t count = 0;
    size_t seen = 0;
  };

  std::unordered_map<std::string, Group> groups_;
};

}  // namespace tool
