#include "Run/FileList.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "Options.h"
#include "Run/Signals.h"

namespace tool {
namespace {

constexpr size_t kReadSize = size_t{64} * 1024;
/// Far longer than any path that a system takes, in bytes.
constexpr size_t kMaximumPath = size_t{1} << 20;

}  // namespace

FileList::FileList(const std::string& path, char separator)
    : name_(path == "-" ? "standard input" : path),
      descriptor_(path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY)),
      separator_(separator) {
  if (descriptor_ < 0) ThrowIfInterrupted();
  if (descriptor_ < 0) throw UsageError("--files-from: " + name_ + ": " + std::strerror(errno));
}

FileList::~FileList() {
  if (descriptor_ > STDERR_FILENO) close(descriptor_);
}

std::optional<std::string> FileList::Next(const std::function<void(int descriptor)>& wait) {
  while (true) {
    const size_t end = bytes_.find(separator_, begin_);
    if (end == std::string::npos && !atEnd_) {
      atEnd_ = !ReadMore(wait);
      continue;
    }
    if (begin_ == bytes_.size()) return std::nullopt;
    std::string path = bytes_.substr(begin_, end == std::string::npos ? end : end - begin_);
    begin_ = end == std::string::npos ? bytes_.size() : end + 1;
    if (path.find('\0') != std::string::npos) throw UsageError("--files-from: " + name_ + ": NULs in a path; try -0");
    if (!path.empty()) return path;
  }
}

/// False at the end.
bool FileList::ReadMore(const std::function<void(int descriptor)>& wait) {
  bytes_.erase(0, begin_);
  begin_ = 0;
  const size_t before = bytes_.size();
  if (before > kMaximumPath) throw UsageError("--files-from: " + name_ + ": a path is too long; is it a list?");
  wait(descriptor_);
  bytes_.resize(before + kReadSize);
  ssize_t count = 0;
  while ((count = read(descriptor_, bytes_.data() + before, kReadSize)) < 0 && errno == EINTR) ThrowIfInterrupted();
  const int error = errno;
  bytes_.resize(before + (count > 0 ? static_cast<size_t>(count) : 0));
  if (count < 0) throw UsageError("--files-from: " + name_ + ": " + std::strerror(error));
  return count > 0;
}

}  // namespace tool
