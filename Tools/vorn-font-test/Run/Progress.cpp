#include "Run/Progress.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <new>
#include <string_view>

#include "Report/EscapedText.h"
#include "Run/Signals.h"

namespace tool {
namespace {

constexpr std::chrono::seconds kSilence{1};
constexpr std::chrono::milliseconds kPause{200};
constexpr std::string_view kClearLine = "\r\x1b[K";

bool gIsShown = false;

void WriteError(std::string_view text) {
  [[maybe_unused]] const auto ignored = write(STDERR_FILENO, text.data(), text.size());
}

size_t TerminalWidth() {
  winsize size = {};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

std::string MinutesAndSeconds(uint64_t seconds) {
  std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), "%lu:%02lu", static_cast<unsigned long>(seconds / 60),
                static_cast<unsigned long>(seconds % 60));
  return text.data();
}

/// The end of a text that has no more characters than this. Bytes that go on a character count for none.
std::string_view LastCharacters(std::string_view text, size_t count) {
  size_t at = text.size();
  while (at > 0 && count > 0) {
    --at;
    if ((static_cast<unsigned char>(text[at]) & 0xC0) != 0x80) --count;
  }
  return text.substr(at);
}

}  // namespace

std::string ProgressLine(const ProgressState& state, size_t width) {
  std::string line = std::to_string(state.done);
  if (state.total) line += "/" + std::to_string(*state.total);
  line += " files";
  if (state.done > 0 && state.seconds > 0) {
    const double rate = static_cast<double>(state.done) / state.seconds;
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), rate < 10 ? ", %.1f/s" : ", %.0f/s", rate);
    line += text.data();
    if (state.total && *state.total >= state.done) {
      const double left = static_cast<double>(*state.total - state.done) / rate;
      line += ", " + MinutesAndSeconds(static_cast<uint64_t>(left + 0.5)) + " left";
    }
  }
  line += ", ";
  if (line.size() >= width) return line.substr(0, width);
  return line.append(LastCharacters(EscapeForTerminal(state.path), width - line.size()));
}

Progress::Progress(bool wanted, std::function<uint64_t()> count)
    : wanted_(wanted && isatty(STDERR_FILENO) == 1), count_(std::move(count)), next_(start_ + kSilence) {}

Progress::~Progress() {
  Hide();
  if (counter_ == 0) return;
  kill(counter_, SIGKILL);
  close(channel_);
  while (waitpid(counter_, nullptr, 0) < 0 && errno == EINTR) {
  }
}

void Progress::Show(uint64_t done, std::optional<uint64_t> total, const std::string& path) {
  const auto now = Clock::now();
  if (!wanted_ || now < next_) return;
  next_ = now + kPause;
  if (!total && counter_ == 0 && count_) StartCounting();
  if (!total && counter_ > 0 && !counted_) ReadCount();
  const std::chrono::duration<double> elapsed = now - start_;
  const ProgressState state = {
      .done = done, .total = total ? total : counted_, .seconds = elapsed.count(), .path = path};
  WriteError(std::string(kClearLine) + ProgressLine(state, TerminalWidth() - 1));
  gIsShown = true;
}

void Progress::Hide() {
  if (gIsShown) WriteError(kClearLine);
  gIsShown = false;
}

void Progress::StartCounting() {
  std::array<int, 2> ends = {-1, -1};
  if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
  counter_ = fork();
  if (counter_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    LeaveSignalsToParent();
    std::set_new_handler([] { _exit(0); });  // the files that this process's parent writes are not its to remove
    uint64_t count = 0;
    try {
      count = count_();
    } catch (...) {
      _exit(0);
    }
    // The bytes of a number, for this process's parent.
    [[maybe_unused]] const auto ignored = write(ends[1], reinterpret_cast<const char*>(&count), sizeof(count));
    _exit(0);
  }
  close(ends[1]);
  channel_ = ends[0];
  if (counter_ < 0) close(channel_);
  if (counter_ < 0) counter_ = 0;
}

void Progress::ReadCount() {
  uint64_t count = 0;
  if (read(channel_, &count, sizeof(count)) == sizeof(count)) counted_ = count;
}

}  // namespace tool
