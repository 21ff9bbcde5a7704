#pragma once

#include <functional>
#include <string>

#include "Options.h"
#include "Report/Totals.h"

namespace tool {

/// The exit status of the program.
enum ExitStatus {
  kNothingFound = 0,
  kSomethingFound = 1,
  kUsageOrInput = 2,     ///< wrong usage, or a file that cannot be read
  kProgramFailed = 3,    ///< a file that could not be tested by no fault of its own, or the whole run failed
  kEndedBySignal = 128,  ///< and the number of the signal, as shells have it
  kReaderGone = 141      ///< nobody reads the report any more: 128 and the number of SIGPIPE
};

/// Called before a file is tested, in the process that does so; for tests of what may go wrong there.
using TestHook = std::function<void(const std::string& path)>;

/// Does what the options ask for and returns the exit status. Throws UsageError, or another exception when the program
/// itself fails.
int Run(const Options& options, TestHook hook);

/// The program: sets the process up, runs what the command line asks for and returns the exit status.
int RunProgram(int argc, const char* const* argv, TestHook hook = nullptr);

/// The exit status of a run that came to this.
int StatusOf(const Totals& totals);

/// Writes a line about a problem to standard error.
void PrintError(const std::string& text);
/// That line.
std::string ErrorLine(const std::string& text);

}  // namespace tool
