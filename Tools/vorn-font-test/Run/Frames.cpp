#include "Run/Frames.h"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace tool {
namespace {

using Header = std::array<uint32_t, 3>;

constexpr size_t kReadSize = size_t{64} * 1024;

}  // namespace

void AppendFrame(std::string& bytes, const Frame& frame) {
  const Header header = {static_cast<uint32_t>(frame.type), frame.number, static_cast<uint32_t>(frame.text.size())};
  std::array<char, sizeof(Header)> raw;
  std::memcpy(raw.data(), header.data(), raw.size());
  bytes.append(raw.data(), raw.size()).append(frame.text);
}

bool WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (written < 0 && errno != EINTR) return false;
    if (written > 0) bytes.remove_prefix(static_cast<size_t>(written));
  }
  return true;
}

FrameReader::State FrameReader::Read(int descriptor) {
  bytes_.erase(0, begin_);
  begin_ = 0;
  const size_t before = bytes_.size();
  bytes_.resize(before + kReadSize);
  const ssize_t count = recv(descriptor, bytes_.data() + before, kReadSize, 0);
  bytes_.resize(before + (count > 0 ? static_cast<size_t>(count) : 0));
  if (count > 0 || (count < 0 && (errno == EINTR || errno == EAGAIN))) return State::kMore;
  return count == 0 ? State::kEnd : State::kBroken;
}

std::optional<Frame> FrameReader::Next() {
  Header header;
  const std::string_view rest = std::string_view(bytes_).substr(begin_);
  if (broken_ || rest.size() < sizeof(header)) return std::nullopt;
  std::memcpy(header.data(), rest.data(), sizeof(header));
  broken_ = header[0] > static_cast<uint32_t>(FrameType::kProblem) || header[2] > kMaximumFrame;
  if (broken_ || rest.size() - sizeof(header) < header[2]) return std::nullopt;
  begin_ += sizeof(header) + header[2];
  return Frame{static_cast<FrameType>(header[0]), header[1], rest.substr(sizeof(header), header[2])};
}

void FrameReader::Clear() {
  bytes_.clear();
  begin_ = 0;
  broken_ = false;
}

}  // namespace tool
