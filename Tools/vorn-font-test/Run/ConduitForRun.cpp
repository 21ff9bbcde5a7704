#include "Run/ConduitForRun.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <Tova/Tova.hpp>
#include <VornFontTest/ConduitProtocol.hpp>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <stdexcept>

namespace tool {
namespace {

bool IsServed(const std::string& port) {
  return static_cast<bool>(Tova::Adopt(TovaMessagePortCreateRemote(Tova::MakeString(port).get())));
}

/// A value for the environment variable that names the ports of conduits, which no other run has.
std::string SuffixOfThisRun() {
  std::random_device random;
  return "run_" + std::to_string(getpid()) + "_" + std::to_string(random()) + std::to_string(random());
}

/// The conduit that was installed with this program.
std::string ConduitProgram() {
  return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "rundle-conduit").string();
}

}  // namespace

ConduitForRun::~ConduitForRun() {
  for (const int end : {input_, output_}) {
    if (end >= 0) close(end);
  }
  while (process_ > 0 && waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
  }
}

void ConduitForRun::Ensure() {
  if (IsServed(VornFontTest::ConduitPortName(std::getenv(VornFontTest::kConduitSuffixVariable)))) return;
  const std::string suffix = SuffixOfThisRun();
  setenv(VornFontTest::kConduitSuffixVariable, suffix.c_str(), 1);
  Start(VornFontTest::ConduitPortName(suffix.c_str()));
  if (!IsReady()) throw std::runtime_error("--duplicates: the conduit does not start");
}

void ConduitForRun::Start(const std::string& port) {
  std::array<int, 2> toConduit;
  std::array<int, 2> fromConduit;
  if (pipe2(toConduit.data(), O_CLOEXEC) != 0) throw std::runtime_error("--duplicates: there is no pipe");
  input_ = toConduit[1];
  if (pipe2(fromConduit.data(), O_CLOEXEC) != 0) throw std::runtime_error("--duplicates: there is no pipe");
  output_ = fromConduit[0];

  const std::string program = ConduitProgram();
  std::array<std::string, 4> arguments = {program, "--attached", "--port", port};
  std::array<char*, 5> pointers = {};
  for (size_t i = 0; i < arguments.size(); ++i) pointers[i] = arguments[i].data();
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, toConduit[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, fromConduit[1], STDOUT_FILENO);
  const int error = posix_spawn(&process_, program.c_str(), &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(toConduit[0]);
  close(fromConduit[1]);
  if (error != 0) {
    process_ = 0;
    throw std::runtime_error("--duplicates: " + program + " does not start");
  }
}

bool ConduitForRun::IsReady() const {
  while (true) {
    char character = 0;
    const ssize_t count = read(output_, &character, 1);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    if (character == '\n') return true;
  }
}

void ConduitForRun::RequireAlive() {
  if (process_ == 0 || waitpid(process_, nullptr, WNOHANG) == 0) return;
  process_ = 0;
  throw std::runtime_error("--duplicates: the conduit ended before its time; duplicates may have been missed");
}

}  // namespace tool
