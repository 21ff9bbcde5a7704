#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "Report/EscapedText.h"

namespace tool {

/// Text put by until its turn has come: in memory while it is short, in a temporary file without a name when it is
/// long. What goes wrong throws OutputError.
class Spool {
 public:
  void Write(std::string_view text);
  /// Hands all of it on, in pieces.
  void CopyTo(const TextSink& sink);
  /// Forgets all of it.
  void Clear();

  /// How many bytes of it are in memory.
  size_t MemorySize() const { return memory_.size(); }
  bool Empty() const { return size_ == 0; }
  /// Whether it has more than one line.
  bool IsBlock() const { return lines_ > 1; }

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  std::string memory_;                      ///< the beginning of the text
  std::unique_ptr<std::FILE, Close> file_;  ///< the rest of it; null for none
  uint64_t size_ = 0;
  uint64_t lines_ = 0;
};

}  // namespace tool
