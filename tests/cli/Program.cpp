#include "cli/Program.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>

#include "cli/Reports.h"
#include "support/TemporaryFolder.h"

namespace test {
namespace {

/// A word of a shell's command, whatever bytes it holds.
std::string Quoted(const std::string& text) {
  std::string quoted = " '";
  for (const char character : text) quoted += character == '\'' ? "'\\''" : std::string(1, character);
  return quoted + "'";
}

}  // namespace

Outcome RunProgram(const std::vector<std::string>& arguments, Destination destination,
                   const std::vector<std::string>& variables, const std::string& before, const std::string& program) {
  const TemporaryFolder folder;
  std::string command = before + " exec env -i TERM=xterm LC_ALL=C ASAN_OPTIONS=detect_leaks=1:exitcode=99";
  for (const std::string& variable : variables) command += Quoted(variable);
  command += Quoted(program);
  for (const std::string& argument : arguments) command += Quoted(argument);
  if (destination != Destination::kTerminals) command += " 2>" + Quoted(folder.File("err"));
  if (destination == Destination::kTerminal || destination == Destination::kTerminals)
    command = "exec script -qec" + Quoted(command) + " /dev/null";
  std::array<int, 2> ends = {};
  constexpr int kPipe = 9;
  if (destination == Destination::kClosedPipe) {
    if (pipe(ends.data()) != 0 || dup2(ends[1], kPipe) != kPipe) throw std::runtime_error("no pipe");
    for (const int end : ends) close(end);
  }
  command += destination == Destination::kFull         ? " >/dev/full"
             : destination == Destination::kClosed     ? " >&-"
             : destination == Destination::kClosedPipe ? " >&9"
                                                       : " >" + Quoted(folder.File("out"));
  const int status = std::system(command.c_str());
  if (destination == Destination::kClosedPipe) close(kPipe);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Contents(folder.File("out")), Contents(folder.File("err"))};
}

}  // namespace test
