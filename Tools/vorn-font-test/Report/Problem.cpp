#include "Report/Problem.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace tool {
namespace {

/// In the order of the enumeration.
constexpr std::array<std::string_view, 7> kWords = {"none",    "unreadable", "unsupported", "crash",
                                                    "timeout", "memory",     "system"};

}  // namespace

Problem ProblemOfError(int error) {
  const bool isShort = error == EMFILE || error == ENFILE || error == ENOMEM || error == EAGAIN;
  return {isShort ? ProblemKind::kSystem : ProblemKind::kUnreadable, std::strerror(error)};
}

std::string_view Word(ProblemKind kind) { return kWords[static_cast<size_t>(kind)]; }

ProblemKind ProblemKindFromWord(std::string_view word) {
  const auto found = std::ranges::find(kWords, word);
  return found == kWords.end() ? ProblemKind::kSystem : static_cast<ProblemKind>(found - kWords.begin());
}

}  // namespace tool
