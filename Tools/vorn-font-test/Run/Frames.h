#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// What a message between this process and a worker is.
enum class FrameType : uint32_t {
  kTest,    ///< to the worker: the path of a file to test
  kPart,    ///< text of the part of a report
  kLine,    ///< a line for standard error
  kTotals,  ///< the file is done: its Totals
  kProblem  ///< the file could not be tested: text
};

/// A message: a header of three words in this machine's byte order (type, number, length of the text) and the text.
struct Frame {
  FrameType type;
  uint32_t number;  ///< kPart: of the report; kProblem: its kind
  std::string_view text;
};

/// The longest text of a frame, in bytes.
inline constexpr size_t kMaximumFrame = size_t{1} << 20;

void AppendFrame(std::string& bytes, const Frame& frame);
/// Writes all bytes to a blocking descriptor; false, with errno set, when that fails.
bool WriteAll(int descriptor, std::string_view bytes);

/// Cuts bytes that arrive in pieces into frames.
class FrameReader {
 public:
  enum class State { kMore, kEnd, kBroken };

  /// Reads what there is, once; kEnd when the other side has closed, kBroken when reading fails.
  State Read(int descriptor);
  /// The next whole frame, valid until the next call of either; none when more bytes are needed.
  std::optional<Frame> Next();
  /// Whether the bytes are no frames.
  bool IsBroken() const { return broken_; }
  void Clear();

 private:
  std::string bytes_;
  size_t begin_ = 0;  ///< of what was not handed out yet
  bool broken_ = false;
};

}  // namespace tool
