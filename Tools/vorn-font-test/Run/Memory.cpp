#include "Run/Memory.h"

#include <unistd.h>

#include <cstdlib>
#include <new>
#include <string_view>

#include "Run/Output.h"
#include "Run/Session.h"

namespace tool {

void EndWithoutMemory() {
  std::set_new_handler([] {
    constexpr std::string_view kLine = "vorn-font-test: not enough memory\n";
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kLine.data(), kLine.size());
    Output::RemoveTemporaries();
    std::_Exit(kProgramFailed);
  });
}

}  // namespace tool
