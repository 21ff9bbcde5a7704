#include "FileWalk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace tool {
namespace {

/// The first bytes of a file, as many as there are; none, with errno set, when they cannot be read. The caller has seen
/// that the path is a regular file; should that change meanwhile, O_NONBLOCK keeps a FIFO from holding up the run.
std::optional<std::string> ReadStart(const std::string& path) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
  if (descriptor < 0) return std::nullopt;
  std::array<char, 4> bytes;
  const ssize_t count = read(descriptor, bytes.data(), bytes.size());
  const int error = errno;
  close(descriptor);
  errno = error;
  if (count < 0) return std::nullopt;
  return std::string(bytes.data(), static_cast<size_t>(count));
}

/// Whether a file begins like a font: an sfnt font, a font collection or a segmented Type 1 font, or is by its name a
/// spliced font.
bool LooksLikeFont(const std::string& path, std::string_view start) {
  using namespace std::string_view_literals;
  static constexpr std::array kSignatures = {"\0\1\0\0"sv, "true"sv,    "OTTO"sv,   "ttcf"sv,
                                             "typ1"sv,     "\xA5kbd"sv, "\xA5lst"sv};
  return std::ranges::find(kSignatures, start) != kSignatures.end() || start.starts_with("\x80\x01"sv) ||
         path.ends_with(".sfont");
}

/// The names in a directory in ascending order; none, with errno set, when they cannot be read.
std::optional<std::vector<std::string>> ReadDirectory(const std::string& path) {
  const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(path.c_str()), closedir);
  if (!directory) return std::nullopt;
  std::vector<std::string> names;
  errno = 0;
  while (const dirent* entry = readdir(directory.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  if (errno != 0) return std::nullopt;
  std::ranges::sort(names);
  return names;
}

}  // namespace

void FileWalk::Walk(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return Fail(path, errno);
  if (S_ISDIR(status.st_mode)) return WalkDirectory(path);
  if (!S_ISREG(status.st_mode)) return events_.failed(path, "Not a regular file");
  if (!ReadStart(path)) return Fail(path, errno);
  events_.found(path);
}

void FileWalk::WalkDirectory(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return Fail(path, errno);
  if (!entered_.emplace(status.st_dev, status.st_ino).second) return;
  const auto names = ReadDirectory(path);
  if (!names) return Fail(path, errno);
  const std::string prefix = path.ends_with('/') ? path : path + '/';
  for (const std::string& name : *names) WalkEntry(prefix + name);
}

void FileWalk::WalkEntry(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return Fail(path, errno);
  if (S_ISDIR(status.st_mode)) return WalkDirectory(path);
  if (!S_ISREG(status.st_mode)) return;
  const auto start = ReadStart(path);
  if (!start) return Fail(path, errno);
  if (LooksLikeFont(path, *start)) events_.found(path);
}

void FileWalk::Fail(const std::string& path, int error) const { events_.failed(path, std::strerror(error)); }

}  // namespace tool
