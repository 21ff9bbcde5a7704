// Runs a fuzz target over files and folders of inputs: TARGET [--cost] PATH... An input may take as much memory as it
// is long and 64 MB more, which is not looked at under sanitizers; says which one took more, or ended the program. With
// --cost, prints for each the processor time in milliseconds, the kilobytes that it took at most beyond what the
// program had before, its size in bytes, and its name.
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/Target.h"

// What both ask for, by these names.
#ifdef VORN_SANITIZED
extern "C" const char* __asan_default_options() { return "abort_on_error=1"; }   // NOLINT
extern "C" const char* __ubsan_default_options() { return "abort_on_error=1"; }  // NOLINT
#endif

namespace {

using fuzz::Bytes;

std::vector<std::string> FilesAt(const std::string& path) {
  if (!std::filesystem::is_directory(path)) return {path};
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
    if (entry.is_regular_file()) files.push_back(entry.path().string());
  }
  std::ranges::sort(files);
  return files;
}

double ProcessorMilliseconds() {
  rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  const auto milliseconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
  };
  return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

/// A line of /proc/self/status, in kilobytes.
long Memory(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name + ":")) return std::strtol(line.c_str() + name.size() + 1, nullptr, 10);
  }
  return 0;
}

[[maybe_unused]] constexpr size_t kMemoryAllowed = size_t{64} << 20;

std::string gInput;  // the one at hand

[[noreturn]] void NameInputAndEnd(int signal) {
  std::fprintf(stderr, "It was input %s\n", gInput.c_str());
  std::signal(signal, SIG_DFL);
  std::raise(signal);
  std::_Exit(1);
}

/// Has the input at hand named when it ends the program.
void NameInputAtDeath() {
  std::signal(SIGABRT, NameInputAndEnd);
#ifndef VORN_SANITIZED  // sanitizers take these themselves, and then abort
  for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL}) std::signal(signal, NameInputAndEnd);
#endif
}

/// The most memory that the program has had since this was last called, in kilobytes.
long TakePeak() {
  const long peak = Memory("VmHWM");
  std::ofstream("/proc/self/clear_refs") << 5;
  return peak;
}

bool Run(const Bytes& input, [[maybe_unused]] long before) {
  LLVMFuzzerTestOneInput(input.data(), input.size());
#ifndef VORN_SANITIZED
  const long taken = TakePeak() - before;
  if (taken > static_cast<long>((input.size() + kMemoryAllowed) >> 10)) {
    std::fprintf(stderr, "%s takes %ld kilobytes\n", gInput.c_str(), taken);
    return false;
  }
#endif
  return true;
}

void RunAndPrintCost(const Bytes& input) {
  TakePeak();
  const long before = Memory("VmRSS");
  const double start = ProcessorMilliseconds();
  LLVMFuzzerTestOneInput(input.data(), input.size());
  std::printf("%8.1f %8ld %8zu %s\n", ProcessorMilliseconds() - start, TakePeak() - before, input.size(),
              gInput.c_str());
}

}  // namespace

int main(int count, char** arguments) {
  const bool cost = count > 1 && std::strcmp(arguments[1], "--cost") == 0;
  const long before = Memory("VmRSS");
  size_t inputs = 0;
  bool good = true;
  NameInputAtDeath();
  for (int i = cost ? 2 : 1; i < count; ++i) {
    for (const std::string& path : FilesAt(arguments[i])) {
      gInput = path;
      std::ifstream file(path, std::ios::binary);
      if (!file) {
        std::fprintf(stderr, "%s cannot be read\n", path.c_str());
        return 2;
      }
      const Bytes input{std::istreambuf_iterator<char>(file), {}};
      if (cost) RunAndPrintCost(input);
      if (!cost) good = Run(input, before) && good;
      ++inputs;
    }
  }
  if (inputs == 0) std::fputs("No input was given.\n", stderr);
  return inputs == 0 ? 2 : good ? 0 : 1;
}
