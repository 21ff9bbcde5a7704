#include "Memory.h"

#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <exception>
#include <new>
#include <string_view>

#include "Session.h"

namespace tool {
namespace {

std::atomic<bool> allocationFailed = false;

}  // namespace

void WatchMemory() {
  std::set_new_handler([] {
    allocationFailed = true;
    throw std::bad_alloc();
  });
  // Where not even the exception finds room, or one may not pass, the run-time ends the program.
  static const std::terminate_handler otherwise = std::get_terminate();
  std::set_terminate([] {
    if (!allocationFailed) otherwise();
    PrintOutOfMemory();
    std::_Exit(kProgramFailed);
  });
}

void RequireMemory() {
  if (allocationFailed) throw std::bad_alloc();
}

void PrintOutOfMemory() noexcept {
  constexpr std::string_view kLine = "vorn-font-test: not enough memory\n";
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kLine.data(), kLine.size());
}

}  // namespace tool
