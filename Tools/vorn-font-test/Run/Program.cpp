#include <fcntl.h>
#include <unistd.h>

#include <exception>
#include <utility>

#include "Options.h"
#include "Run/Memory.h"
#include "Run/Output.h"
#include "Run/Session.h"
#include "Run/Signals.h"

namespace tool {
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

}  // namespace

int RunProgram(int argc, const char* const* argv, TestHook hook) {
  OccupyStandardDescriptors();
  CatchSignals();
  EndWithoutMemory();
  try {
    return Run(ParseCommandLine(argc, argv), std::move(hook));
  } catch (const UsageError& error) {
    PrintError(error.what());
    PrintError("try 'vorn-font-test --help'");
    return kUsageOrInput;
  } catch (const ReaderGone&) {
    return kReaderGone;
  } catch (const Interrupted& interrupted) {
    return kEndedBySignal + interrupted.signal;
  } catch (const std::exception& error) {
    PrintError(error.what());
  } catch (...) {
    PrintError("an unknown error");
  }
  return kProgramFailed;
}

}  // namespace tool
