// Runs a fuzz target over files and folders of inputs: TARGET [--cost] PATH... With --cost, prints for each the
// processor time in milliseconds, the memory in kilobytes that it took at most beyond what the program had before, its
// size in bytes, and its name.
#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/Target.h"

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

void Run(const Bytes& input) { LLVMFuzzerTestOneInput(input.data(), input.size()); }

void RunAndPrintCost(const Bytes& input, const std::string& name) {
  std::ofstream("/proc/self/clear_refs") << 5;  // the peak counts from here on
  const long memory = Memory("VmRSS");
  const double start = ProcessorMilliseconds();
  Run(input);
  const double end = ProcessorMilliseconds();
  std::printf("%8.1f %8ld %8zu %s\n", end - start, Memory("VmHWM") - memory, input.size(), name.c_str());
}

}  // namespace

int main(int count, char** arguments) {
  const bool cost = count > 1 && std::strcmp(arguments[1], "--cost") == 0;
  size_t inputs = 0;
  for (int i = cost ? 2 : 1; i < count; ++i) {
    for (const std::string& path : FilesAt(arguments[i])) {
      std::ifstream file(path, std::ios::binary);
      if (!file) {
        std::fprintf(stderr, "%s cannot be read\n", path.c_str());
        return 2;
      }
      const Bytes input{std::istreambuf_iterator<char>(file), {}};
      if (!cost) std::fprintf(stderr, "%s\n", path.c_str());  // the last one is the one that failed
      cost ? RunAndPrintCost(input, path) : Run(input);
      ++inputs;
    }
  }
  if (inputs == 0) std::fputs("No input was given.\n", stderr);
  return inputs == 0 ? 2 : 0;
}
