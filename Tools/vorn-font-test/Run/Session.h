#pragma once

#include <string>

#include "Options.h"

namespace tool {

/// The exit status of the program.
enum ExitStatus {
  kNothingFound = 0,
  kSomethingFound = 1,
  kUsageOrInput = 2,  ///< wrong usage, or a file that cannot be read
  kProgramFailed = 3
};

/// Does what the options ask for and returns the exit status. Throws UsageError, or another exception when the program
/// itself fails.
int Run(const Options& options);

/// Writes a line about a problem to standard error.
void PrintError(const std::string& text);

}  // namespace tool
