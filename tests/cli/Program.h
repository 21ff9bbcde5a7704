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

/// Runs the built program in a clean environment, to which variables such as "NO_COLOR=1" are added.
Outcome RunProgram(std::vector<std::string> arguments, Destination destination = Destination::kFile,
                   std::vector<std::string> variables = {});

}  // namespace test
