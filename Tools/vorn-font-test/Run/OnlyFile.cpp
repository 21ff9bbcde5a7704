#include "Run/OnlyFile.h"

#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <new>

#include "Report/Problem.h"
#include "Run/Session.h"

namespace tool {
namespace {

constexpr std::array kEnds = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGALRM};

/// The lines for these ends and, last, for the lack of memory: made while all is well.
std::array<std::string, kEnds.size() + 1> gLines;

[[noreturn]] void EndWith(const std::string& line) {
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
  std::_Exit(kProgramFailed);
}

extern "C" void EndBySignal(int signal) {
  for (size_t i = 0; i < kEnds.size(); ++i) {
    if (kEnds[i] == signal) EndWith(gLines[i]);
  }
}

/// A stack for the handler: the program's own may be what has run out.
void CatchOnOwnStack() {
  static std::array<char, size_t{16} * 1024> stack;
  stack_t own = {};
  own.ss_sp = stack.data();
  own.ss_size = stack.size();
  sigaltstack(&own, nullptr);
  for (const int signal : kEnds) {
    struct sigaction action = {};
    action.sa_handler = EndBySignal;
    action.sa_flags = SA_ONSTACK;
    sigaction(signal, &action, nullptr);
  }
}

}  // namespace

void BecomeWorker(const std::string& path, const Permissions& permissions, uint64_t timeout) {
  for (size_t i = 0; i < kEnds.size(); ++i) {
    const Problem problem = kEnds[i] == SIGALRM ? ProblemOfTimeout(timeout) : ProblemOfSignal(kEnds[i]);
    gLines[i] = ErrorLine(path + ": " + problem.text);
  }
  gLines.back() = ErrorLine(path + ": " + ProblemOfMemory().text);
  CatchOnOwnStack();
  std::set_new_handler([] { EndWith(gLines.back()); });
  const itimerval once = {.it_interval = {}, .it_value = {.tv_sec = static_cast<time_t>(timeout), .tv_usec = 0}};
  setitimer(ITIMER_REAL, &once, nullptr);
  Confine(permissions);
}

}  // namespace tool
