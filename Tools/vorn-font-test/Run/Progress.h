#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace tool {

/// How far a run is.
struct ProgressState {
  uint64_t done = 0;
  std::optional<uint64_t> total;  ///< files; none while nobody knows
  double seconds = 0;             ///< since the run began
  std::string path;               ///< of the file at hand
};

/// A line of at most so many characters: "12/40 files, 5.0/s, 0:06 left, fonts/a.ttf".
std::string ProgressLine(const ProgressState& state, size_t width);

/// Shows on standard error how far a run is, once it has taken a second; nothing where that is no terminal.
class Progress {
 public:
  /// How many files there are is found out in a process of its own, by calling count there.
  Progress(bool wanted, std::function<uint64_t()> count);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  bool IsWanted() const { return wanted_; }
  /// Shows the state, unless it is too early for that; to be called often. The total is known at the end of the search.
  void Show(uint64_t done, std::optional<uint64_t> total, const std::string& path);
  /// Clears the line; to be called before anything else is written to the terminal.
  static void Hide();

 private:
  using Clock = std::chrono::steady_clock;

  void StartCounting();
  void ReadCount();

  bool wanted_;
  std::function<uint64_t()> count_;
  Clock::time_point start_ = Clock::now();
  Clock::time_point next_;
  pid_t counter_ = 0;  ///< the process that counts; 0: none
  int channel_ = -1;   ///< from it
  std::optional<uint64_t> counted_;
};

}  // namespace tool
