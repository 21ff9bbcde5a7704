#pragma once

#include <string>
#include <vector>

namespace test {

/// How a run of vorn-font-test ended.
struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

/// Where its standard output goes.
enum class Destination { kFile, kTerminal, kFull, kClosedPipe, kClosed };

/// Runs the built program in a clean environment, after shell commands such as "ulimit -v 64000;" or
/// "VARIABLE=NO_COLOR=1;", which adds a variable to that environment.
Outcome RunProgram(const std::vector<std::string>& arguments, Destination destination = Destination::kFile,
                   const std::string& before = "");

}  // namespace test
