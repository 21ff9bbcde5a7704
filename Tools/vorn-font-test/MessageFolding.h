#pragma once

#include <string>
#include <vector>

#include "Report.h"

namespace tool {

/// A message to show, and how many like it are left out after it.
struct ShownMessage {
  Message message;
  size_t leftOut = 0;
};

/// How many messages that differ only in their numbers are shown before the rest of them is counted.
inline constexpr size_t kMessagesBeforeFolding = 3;

/// The messages in their order, without those that repeat earlier ones with other numbers. A single repetition too many
/// stays: a count would take as much room.
std::vector<ShownMessage> FoldMessages(const std::vector<Message>& messages);

/// The text with every decimal and hexadecimal number in it replaced by '#'.
std::string WithoutNumbers(std::string_view text);

}  // namespace tool
