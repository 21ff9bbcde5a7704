#include "Run/Signals.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace tool {
namespace {

constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t gCaught = 0;
std::array<int, 2> gPipe = {-1, -1};
EndsOnSignal::End volatile gEnd = nullptr;

extern "C" void Remember(int signal) {
  const int error = errno;
  gCaught = signal;
  if (gEnd != nullptr) gEnd(signal);
  [[maybe_unused]] const ssize_t written = write(gPipe[1], "", 1);
  errno = error;
}

}  // namespace

void CatchSignals() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  if (gPipe[0] < 0 && pipe2(gPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
  for (const int signal : kSignals) {
    struct sigaction action = {};
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = Remember;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(signal, &action, nullptr);
  }
}

void ThrowIfInterrupted() {
  if (gCaught != 0) throw Interrupted{gCaught};
}

EndsOnSignal::EndsOnSignal(End end) {
  gEnd = end;
  if (gCaught != 0) end(gCaught);
}

EndsOnSignal::~EndsOnSignal() { gEnd = nullptr; }

void WaitToRead(int descriptor) {
  std::array<pollfd, 2> polled = {{{gPipe[0], POLLIN, 0}, {descriptor, POLLIN, 0}}};
  do {
    ThrowIfInterrupted();
  } while (poll(polled.data(), polled.size(), -1) < 0 && errno == EINTR);
  ThrowIfInterrupted();
}

int InterruptionDescriptor() { return gPipe[0]; }

void LeaveSignalsToParent() {
  for (const int signal : kSignals) std::signal(signal, SIG_IGN);
}

}  // namespace tool
