#include "Formats/MessageFolding.h"

namespace tool {

void MessageFolding::Count(std::string_view rule) { ++groups_[std::string(rule)].count; }

MessageFolding::Decision MessageFolding::Decide(std::string_view rule) {
  Group& group = groups_[std::string(rule)];
  const size_t shown = MessagesShown(group.count);
  ++group.seen;
  return {.show = group.seen <= shown, .leftOut = group.seen == shown ? group.count - shown : 0};
}

}  // namespace tool
