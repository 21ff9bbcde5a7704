#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tool {

/// The report could not be written; the text names the place and the reason.
class OutputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Buffered writing to standard output or to a file, in a fixed amount of memory. What goes wrong throws OutputError,
/// so nothing is ever lost unnoticed; only what was flushed or closed is written for certain.
class Output {
 public:
  /// A file, emptied first; without a path, standard output.
  explicit Output(const std::optional<std::string>& path);
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;
  ~Output();

  void Write(std::string_view text);
  void Flush();
  /// Flushes and closes. Standard output stays open.
  void Close();
  bool IsTerminal() const;
  /// The columns of a terminal; none for another output, or a terminal that does not tell.
  std::optional<size_t> Columns() const;

 private:
  void WriteThrough(std::string_view text) const;
  [[noreturn]] void Fail() const;

  std::string name_;
  int descriptor_;
  bool owned_;
  std::string buffer_;
};

}  // namespace tool
