#include "Report/Problem.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
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

Problem ProblemOfSignal(int signal) {
  if (signal == SIGBUS) {
    return {ProblemKind::kCrash, "the file was cut short, or could not be read, while it was tested"};
  }
  return {ProblemKind::kCrash, std::string("the process that tested it ended: ") + strsignal(signal)};
}

Problem ProblemOfTimeout(uint64_t seconds) {
  return {ProblemKind::kTimeout, "took longer than " + std::to_string(seconds) + " s (see --timeout)"};
}

Problem ProblemOfMemory() { return {ProblemKind::kMemory, "not enough memory (see --memory)"}; }

std::string_view Word(ProblemKind kind) { return kWords[static_cast<size_t>(kind)]; }

ProblemKind ProblemKindFromWord(std::string_view word) {
  const auto found = std::ranges::find(kWords, word);
  return found == kWords.end() ? ProblemKind::kSystem : static_cast<ProblemKind>(found - kWords.begin());
}

}  // namespace tool
