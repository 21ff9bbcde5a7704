#include "Run/FileWalk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <Tova/Tova.hpp>
#include <VornFontTest/FontFiles.hpp>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace tool {
namespace {

/// The first four bytes of a file as a big-endian number, 0 when there are fewer; none, with errno set, when they
/// cannot be read. The caller has seen that the path is a regular file; should that change meanwhile, O_NONBLOCK keeps
/// a FIFO from holding up the run.
std::optional<uint32_t> ReadStart(const std::string& path) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
  if (descriptor < 0) return std::nullopt;
  std::array<uint8_t, VornFontTest::kScalerSize> bytes;
  const ssize_t count = read(descriptor, bytes.data(), bytes.size());
  const int error = errno;
  close(descriptor);
  errno = error;
  if (count < 0) return std::nullopt;
  if (static_cast<size_t>(count) < bytes.size()) return 0;
  return uint32_t{bytes[0]} << 24 | uint32_t{bytes[1]} << 16 | uint32_t{bytes[2]} << 8 | bytes[3];
}

/// What a font file is that the library does not test, by how it begins; null for any other file.
const char* NameOfUnsupported(uint32_t start) {
  if (start == VornFontTest::kScalerWoff) return "a compressed web font (WOFF)";
  if (start == VornFontTest::kScalerWoff2) return "a compressed web font (WOFF2)";
  return nullptr;
}

/// Whether a file holds fonts as resources. A sidecar does not: it is part of the file that it stands beside.
bool HoldsFontResources(const std::string& path) {
  const auto url = Tova::Adopt(TovaURLCreateWithFilePath(path.c_str()));
  return TovaURLHoldsResources(url.get(), std::data(VornFontTest::kFontResources),
                               std::size(VornFontTest::kFontResources));
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
  if (S_ISDIR(status.st_mode)) return WalkRoot(path, {status.st_dev, status.st_ino});
  if (!S_ISREG(status.st_mode)) return Fail(path, {ProblemKind::kUnreadable, "Not a regular file"});
  const auto start = ReadStart(path);
  if (!start) return Fail(path, errno);
  if (const char* name = NameOfUnsupported(*start)) return FailUnsupported(path, name);
  Found(path);
}

void FileWalk::WalkRoot(const std::string& path, const std::pair<dev_t, ino_t>& identity) {
  if (entered_.contains(identity)) return;
  const uint64_t before = finds_;
  WalkDirectory(path);
  if (finds_ == before) Fail(path, {ProblemKind::kUnreadable, "no font files in this folder"});
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
  events_.looked();
  const auto start = ReadStart(path);
  if (!start) return Fail(path, errno);
  if (const char* name = NameOfUnsupported(*start)) return FailUnsupported(path, name);
  if (VornFontTest::IsFontScaler(*start) || VornFontTest::IsSplicedFontName(path) || HoldsFontResources(path))
    Found(path);
}

void FileWalk::Found(const std::string& path) {
  ++finds_;
  events_.found(path);
}

void FileWalk::FailUnsupported(const std::string& path, const std::string& name) {
  Fail(path, {ProblemKind::kUnsupported, "not supported: " + name});
}

void FileWalk::Fail(const std::string& path, int error) { Fail(path, ProblemOfError(error)); }

void FileWalk::Fail(const std::string& path, const Problem& problem) {
  ++finds_;
  events_.failed(path, problem);
}

}  // namespace tool
