#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <exception>

#include "Options.h"
#include "Run/Memory.h"
#include "Run/Session.h"

namespace {

/// Makes sure that the standard descriptors are taken. A font opened later would otherwise get the number of one that
/// the caller closed, and be read or written as that. What goes there then fails, as it should.
void OccupyStandardDescriptors() {
  while (true) {
    const int descriptor = open("/dev/null", O_RDONLY);
    if (descriptor > STDERR_FILENO) close(descriptor);
    if (descriptor < 0 || descriptor > STDERR_FILENO) return;
  }
}

/// Does what the command line asks for and returns the exit status.
int Run(int argc, const char* const* argv) {
  try {
    return tool::Run(tool::ParseCommandLine(argc, argv));
  } catch (const tool::UsageError& error) {
    tool::PrintError(error.what());
    tool::PrintError("try 'vorn-font-test --help'");
    return tool::kUsageOrInput;
  } catch (const std::exception& error) {
    tool::PrintError(error.what());
  } catch (...) {
    tool::PrintError("an unknown error");
  }
  return tool::kProgramFailed;
}

}  // namespace

int main(int argc, char** argv) {
  OccupyStandardDescriptors();
  std::signal(SIGPIPE, SIG_IGN);  // a reader that went away is a write error, to be reported as one
  tool::EndWithoutMemory();
  return Run(argc, argv);
}
