#include "Formats/MessageFolding.h"

namespace tool {

void MessageFolding::Count(std::string_view rule) { ++groups_[std::string(rule)].count; }

MessageFolding::Decision MessageFolding::Decide(std::string_view rule) {
  Group& group = groups_[std::string(rule)];
  if (group.count <= kMessagesBeforeFolding + 1) return {.show = true};
  ++group.seen;
  const bool last = group.seen == kMessagesBeforeFolding;
  return {.show = group.seen <= kMessagesBeforeFolding, .leftOut = last ? group.count - kMessagesBeforeFolding : 0};
}

}  // namespace tool
