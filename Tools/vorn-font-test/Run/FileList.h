#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace tool {

/// A list of paths in a file or on standard input, one a line or each ended by a NUL, read as it comes.
class FileList {
 public:
  /// "-" is standard input. Throws UsageError when the file cannot be opened.
  FileList(const std::string& path, char separator);
  FileList(const FileList&) = delete;
  FileList& operator=(const FileList&) = delete;
  ~FileList();

  /// The next path that is not empty; none at the end. Before it reads, it has wait called with the descriptor. Throws
  /// UsageError when the list cannot be read, or holds what cannot be a path.
  std::optional<std::string> Next(const std::function<void(int descriptor)>& wait);

 private:
  bool ReadMore(const std::function<void(int descriptor)>& wait);

  std::string name_;
  int descriptor_;
  char separator_;
  std::string bytes_;
  size_t begin_ = 0;  ///< of what was not handed out yet
  bool atEnd_ = false;
};

}  // namespace tool
