#pragma once

#include <sys/types.h>

#include <exception>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace tool {

/// The report could not be written; the text names the place and the reason.
class OutputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Nobody reads the report any more, so that there is no use in going on.
class ReaderGone : public std::exception {};

/// Buffered writing to standard output or to a file, in a fixed amount of memory. What goes wrong throws OutputError or
/// ReaderGone, so nothing is ever lost unnoticed; only what was flushed or closed is written for certain.
///
/// A file takes the place of the one before when it is closed, and not sooner: the text goes to a file beside it, which
/// is removed when this object ends before. Pipes and devices are written directly.
class Output {
 public:
  /// Without a path, standard output.
  explicit Output(const std::optional<std::string>& path);
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;
  ~Output();

  void Write(std::string_view text);
  void Flush();
  /// Flushes and closes. Standard output stays open.
  void Close();
  bool IsTerminal() const;
  /// For a program that ends where it stands: removes what all reports have written beside their files.
  static void RemoveTemporaries();
  /// The columns of a terminal; none for another output, or a terminal that does not tell.
  std::optional<size_t> Columns() const;
  /// Whether closing replaces that file.
  bool Replaces(const std::string& path) const;

 private:
  void Open(const std::string& path);
  void OpenBeside(const std::string& target);
  void WriteThrough(std::string_view text) const;
  [[noreturn]] void Fail() const;

  std::string name_;
  int descriptor_ = -1;
  bool owned_ = false;
  std::string target_;     ///< the file to replace; empty for what is written directly
  std::string temporary_;  ///< beside it; empty when there is none (any more)
  std::optional<std::pair<dev_t, ino_t>> replaced_;
  std::string buffer_;
};

}  // namespace tool
