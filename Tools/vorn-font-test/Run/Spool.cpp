#include "Run/Spool.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "Run/Output.h"

namespace tool {
namespace {

constexpr size_t kMemorySize = size_t{1} << 20;

[[noreturn]] void Fail() { throw OutputError(std::string("a temporary file: ") + std::strerror(errno)); }

}  // namespace

void Spool::Write(std::string_view text) {
  if (text.empty()) return;
  size_ += text.size();
  lines_ += static_cast<uint64_t>(std::ranges::count(text, '\n'));
  if (!file_ && memory_.size() + text.size() <= kMemorySize) {
    memory_.append(text);
    return;
  }
  if (!file_) file_.reset(std::tmpfile());
  if (!file_ || std::fwrite(text.data(), 1, text.size(), file_.get()) != text.size()) Fail();
}

void Spool::CopyTo(const TextSink& sink) {
  sink(memory_);
  if (!file_) return;
  if (std::fflush(file_.get()) != 0 || std::fseek(file_.get(), 0, SEEK_SET) != 0) Fail();
  std::array<char, size_t{64} * 1024> bytes;
  while (const size_t count = std::fread(bytes.data(), 1, bytes.size(), file_.get())) sink({bytes.data(), count});
  if (std::ferror(file_.get()) != 0 || std::fseek(file_.get(), 0, SEEK_END) != 0) Fail();
}

void Spool::Clear() {
  memory_.clear();
  file_.reset();
  size_ = 0;
  lines_ = 0;
}

}  // namespace tool
