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
/// kTerminals: standard error goes to the terminal, too.
enum class Destination { kFile, kTerminal, kTerminals, kFull, kClosedPipe, kClosed };

/// Runs the built program in a clean environment, to which variables such as "NO_COLOR=1" are added, after shell
/// commands such as "ulimit -v 64000;". Another program may take its place.
Outcome RunProgram(const std::vector<std::string>& arguments, Destination destination = Destination::kFile,
                   const std::vector<std::string>& variables = {}, const std::string& before = "",
                   const std::string& program = VORN_PROGRAM);

}  // namespace test
