#include "Run/Output.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace tool {
namespace {

constexpr size_t kBufferSize = size_t{64} * 1024;

}  // namespace

Output::Output(const std::optional<std::string>& path)
    : name_(path.value_or("standard output")),
      descriptor_(path ? open(path->c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY, 0666)
                       : STDOUT_FILENO),
      owned_(path.has_value()) {
  if (descriptor_ < 0) Fail();
  buffer_.reserve(kBufferSize);
}

Output::~Output() {
  if (owned_ && descriptor_ >= 0) close(descriptor_);
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
}

bool Output::IsTerminal() const { return isatty(descriptor_) == 1; }

std::optional<size_t> Output::Columns() const {
  winsize size = {};
  if (!IsTerminal() || ioctl(descriptor_, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return std::nullopt;
  return size.ws_col;
}

void Output::Fail() const { throw OutputError(name_ + ": " + std::strerror(errno)); }

}  // namespace tool
