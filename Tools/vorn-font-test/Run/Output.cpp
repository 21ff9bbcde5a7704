#include "Run/Output.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>
#include <vector>

#include "Run/Signals.h"

namespace tool {
namespace {

constexpr size_t kBufferSize = size_t{64} * 1024;

/// All that are open.
std::vector<const Output*> gOutputs;

/// The path of a file that a path leads to through links; the file itself need not be there.
std::filesystem::path FollowLinks(std::filesystem::path path) {
  constexpr int kMaximumLinks = 40;  // as the system itself
  std::error_code error;
  for (int i = 0; i < kMaximumLinks && std::filesystem::is_symlink(path, error); ++i) {
    path = path.parent_path() / std::filesystem::read_symlink(path, error);
  }
  return path;
}

/// Whether a path leads to what this or another process has open already.
bool IsOpenAlready(const std::string& path) { return path.starts_with("/dev/") || path.starts_with("/proc/"); }

}  // namespace

Output::Output(const std::optional<std::string>& path) : name_(path.value_or("standard output")) {
  path ? Open(*path) : static_cast<void>(descriptor_ = STDOUT_FILENO);
  buffer_.reserve(kBufferSize);
  gOutputs.push_back(this);
}

Output::~Output() {
  if (owned_ && descriptor_ >= 0) close(descriptor_);
  if (!temporary_.empty()) unlink(temporary_.c_str());
  std::erase(gOutputs, this);
}

void Output::RemoveTemporaries() {
  for (const Output* output : gOutputs) {
    if (!output->temporary_.empty()) unlink(output->temporary_.c_str());
  }
}

void Output::Open(const std::string& path) {
  owned_ = true;
  struct stat status;
  const bool exists = stat(path.c_str(), &status) == 0;
  if (IsOpenAlready(path) || (exists && !S_ISREG(status.st_mode))) {
    descriptor_ = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY, 0666);
    if (descriptor_ < 0) Fail();
    return;
  }
  if (exists && access(path.c_str(), W_OK) != 0) Fail();
  if (exists) replaced_.emplace(status.st_dev, status.st_ino);
  OpenBeside(FollowLinks(path));
}

void Output::OpenBeside(const std::string& target) {
  const std::filesystem::path folder = std::filesystem::path(target).parent_path();
  std::random_device random;
  do {
    temporary_ = (folder / (".vorn-font-test-" + std::to_string(random()))).string();
    descriptor_ = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  } while (descriptor_ < 0 && errno == EEXIST);
  if (descriptor_ < 0) temporary_.clear();
  if (descriptor_ < 0) Fail();
  target_ = target;
}

void Output::Write(std::string_view text) {
  if (text.size() > kBufferSize - buffer_.size()) Flush();
  if (text.size() > kBufferSize) return WriteThrough(text);
  buffer_.append(text);
}

void Output::Flush() {
  WriteThrough(buffer_);
  buffer_.clear();
}

void Output::WriteThrough(std::string_view text) const {
  while (!text.empty()) {
    const ssize_t written = write(descriptor_, text.data(), text.size());
    if (written < 0 && errno == EINTR) ThrowIfInterrupted();
    if (written < 0 && errno != EINTR) Fail();
    if (written > 0) text.remove_prefix(static_cast<size_t>(written));
  }
}

void Output::Close() {
  Flush();
  if (!owned_) return;
  const int result = close(descriptor_);
  descriptor_ = -1;
  if (result != 0) Fail();
  if (temporary_.empty()) return;
  if (rename(temporary_.c_str(), target_.c_str()) != 0) Fail();
  temporary_.clear();
}

bool Output::IsTerminal() const { return isatty(descriptor_) == 1; }

std::optional<size_t> Output::Columns() const {
  winsize size = {};
  if (!IsTerminal() || ioctl(descriptor_, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return std::nullopt;
  return size.ws_col;
}

bool Output::Replaces(const std::string& path) const {
  struct stat status;
  return replaced_ && stat(path.c_str(), &status) == 0 && *replaced_ == std::pair(status.st_dev, status.st_ino);
}

void Output::Fail() const {
  if (errno == EINTR) ThrowIfInterrupted();  // when it was to be opened
  if (errno == EPIPE) throw ReaderGone();
  throw OutputError(name_ + ": " + std::strerror(errno));
}

}  // namespace tool
