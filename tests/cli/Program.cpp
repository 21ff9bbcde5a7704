#include "cli/Program.h"

#include <fcntl.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "support/TemporaryFolder.h"

namespace test {
namespace {

std::string Contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<char*> Pointers(std::vector<std::string>& strings) {
  std::vector<char*> pointers;
  for (std::string& string : strings) pointers.push_back(string.data());
  pointers.push_back(nullptr);
  return pointers;
}

/// What the program wrote to a terminal; reading on fails once nobody holds the other side.
std::string Drain(int terminal) {
  std::string text;
  std::array<char, 4096> bytes;
  for (ssize_t count; (count = read(terminal, bytes.data(), bytes.size())) > 0;) {
    text.append(bytes.data(), static_cast<size_t>(count));
  }
  return text;
}

}  // namespace

Outcome RunProgram(std::vector<std::string> arguments, Destination destination, std::vector<std::string> variables) {
  const TemporaryFolder folder;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  const auto open = [&](int descriptor, const std::string& path) {
    posix_spawn_file_actions_addopen(&actions, descriptor, path.c_str(), O_WRONLY | O_CREAT | O_NOCTTY, 0600);
  };
  std::array<int, 2> ends = {-1, -1};
  if (destination == Destination::kTerminal) {
    ends[0] = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (ends[0] < 0 || grantpt(ends[0]) != 0 || unlockpt(ends[0]) != 0) throw std::runtime_error("no terminal");
    open(STDOUT_FILENO, ptsname(ends[0]));
  } else if (destination == Destination::kClosedPipe) {
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    close(std::exchange(ends[0], -1));
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  } else if (destination == Destination::kClosed) {
    posix_spawn_file_actions_addclose(&actions, STDOUT_FILENO);
  } else {
    open(STDOUT_FILENO, destination == Destination::kFull ? "/dev/full" : folder.File("out"));
  }
  open(STDERR_FILENO, folder.File("err"));

  arguments.insert(arguments.begin(), VORN_PROGRAM);
  for (const char* variable : {"TERM=xterm", "LC_ALL=C", "ASAN_OPTIONS=detect_leaks=1"}) variables.push_back(variable);
  pid_t process = 0;
  if (posix_spawn(&process, VORN_PROGRAM, &actions, nullptr, Pointers(arguments).data(), Pointers(variables).data())) {
    throw std::runtime_error("the program does not start");
  }
  posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  const std::string shown = destination == Destination::kTerminal ? Drain(ends[0]) : "";
  waitpid(process, &status, 0);
  for (int end : ends) {
    if (end >= 0) close(end);
  }
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, shown + Contents(folder.File("out")),
          Contents(folder.File("err"))};
}

}  // namespace test
