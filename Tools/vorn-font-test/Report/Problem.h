#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// Why a file could not be tested; none of it is the font's doing, as far as can be told.
enum class ProblemKind : uint8_t {
  kNone,
  kUnreadable,   ///< the path names nothing that can be read
  kUnsupported,  ///< a kind of font file that is known and cannot be tested
  kCrash,        ///< the process that tested the file ended
  kTimeout,      ///< it took longer than it may
  kMemory,       ///< it took more memory than it may
  kSystem        ///< the system refused something, or the program itself failed
};

struct Problem {
  ProblemKind kind = ProblemKind::kNone;
  std::string text;  ///< for people

  explicit operator bool() const { return kind != ProblemKind::kNone; }
  /// Whether it lies with the path that was given, and not with the run.
  bool IsOfInput() const { return kind == ProblemKind::kUnreadable || kind == ProblemKind::kUnsupported; }
};

/// The problem of a path that the system refuses with an errno: its own when it is short of something.
Problem ProblemOfError(int error);

/// The problem of a file over which the process that tested it ended by a signal.
Problem ProblemOfSignal(int signal);
/// That of a file that took longer than so many seconds.
Problem ProblemOfTimeout(uint64_t seconds);
/// That of a file that took more memory than it may.
Problem ProblemOfMemory();

/// The word for a kind in reports.
std::string_view Word(ProblemKind kind);
/// The kind of a word; a word that is not known counts as a failure of the run.
ProblemKind ProblemKindFromWord(std::string_view word);

}  // namespace tool
