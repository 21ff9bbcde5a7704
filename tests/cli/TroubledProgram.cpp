// vorn-font-test with workers that go wrong over files of certain names, before they test them.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <stdexcept>
#include <vector>

#include "Run/Session.h"

namespace {

void TakeAllMemory() {
  constexpr size_t kPiece = size_t{8} << 20;
  static std::vector<std::vector<char>> pieces;
  for (int i = 0; i < 256; ++i) pieces.emplace_back(kPiece, 'x');
}

void LimitFiles() {
  const rlimit none = {0, 0};
  setrlimit(RLIMIT_NOFILE, &none);
}

/// Looks at a page of the file that is no more.
void ReadBehindTheEnd(const std::string& path) {
  const int descriptor = open(path.c_str(), O_RDONLY);
  const auto* bytes = static_cast<const volatile char*>(mmap(nullptr, 1 << 20, PROT_READ, MAP_PRIVATE, descriptor, 0));
  [[maybe_unused]] const char byte = bytes[(1 << 20) - 1];
}

/// Fails with what comes of attempts at what a worker must not do.
void TryEverything(const std::string& path) {
  const std::string folder = std::filesystem::path(path).parent_path();
  std::string text;
  const auto tell = [&text](const char* what, long result) {
    text += std::string(what) + ": " + (result < 0 ? std::strerror(errno) : "done") + "; ";
  };
  tell("this file", open(path.c_str(), O_RDONLY));
  tell("another", open("/etc/passwd", O_RDONLY));
  tell("beside", open((folder + "/../outside").c_str(), O_RDONLY));
  tell("write", open(path.c_str(), O_WRONLY));
  tell("create", open((folder + "/new").c_str(), O_CREAT | O_WRONLY, 0600));
  tell("remove", unlink(path.c_str()));
  tell("mode", chmod(path.c_str(), 0666));
  tell("socket", socket(AF_INET, SOCK_STREAM, 0));
  tell("local socket", socket(AF_UNIX, SOCK_STREAM, 0));
  char shell[] = "/bin/true";
  char* const arguments[] = {shell, nullptr};
  tell("program", execv(shell, arguments));
  tell("parent", kill(getppid(), 0));
  throw std::runtime_error(text);
}

const std::map<std::string, std::function<void(const std::string&)>> kTroubles = {
    {"killed.ttf", [](const std::string&) { std::raise(SIGKILL); }},
    {"crash.ttf", [](const std::string&) { std::raise(SIGSEGV); }},
    {"abort.ttf", [](const std::string&) { std::abort(); }},
    {"exit.ttf", [](const std::string&) { _exit(0); }},
    {"closed.ttf", [](const std::string&) { close(3), pause(); }},
    {"hang.ttf",
     [](const std::string&) {
       while (true) pause();
     }},
    {"interrupt.ttf", [](const std::string&) { std::raise(SIGINT); }},
    {"slow.ttf", [](const std::string&) { usleep(200'000); }},
    {"hungry.ttf", [](const std::string&) { TakeAllMemory(); }},
    {"throws.ttf", [](const std::string&) { throw std::runtime_error("thrown"); }},
    {"garbage.ttf", [](const std::string&) { [[maybe_unused]] const auto sent = write(3, "no frame at all!", 16); }},
    {"nofiles.ttf", [](const std::string&) { LimitFiles(); }},
    {"cut.ttf", ReadBehindTheEnd},
    {"probe.ttf", TryEverything}};

}  // namespace

int main(int argc, char** argv) {
  return tool::RunProgram(argc, argv, [](const std::string& path) {
    const auto trouble = kTroubles.find(std::filesystem::path(path).filename());
    if (trouble != kTroubles.end()) trouble->second(path);
  });
}
