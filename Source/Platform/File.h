#pragma once

#include <Tova/Tova.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "Platform/ByteView.h"

namespace Tova {

/// Names a file that existed when the reference was made. A value; holds the path, nothing open.
class FileReference {
 public:
  /// None when the URL is no file URL or nothing exists at its path.
  static std::optional<FileReference> FromUrl(TovaURLRef url);

  /// The absolute path, in the file system's bytes.
  const std::string& Path() const { return path_; }
  Url CreateUrl() const;

 private:
  explicit FileReference(std::string path) : path_(std::move(path)) {}
  std::string path_;
};

/// Which of a file's two byte streams. Only data forks exist on this platform's file systems.
enum class Fork { kData, kResource };

/// An open fork of a regular file, read from its start on. Closes itself. Anything but a regular file (a folder, a
/// pipe, a device) does not open, and opening never blocks.
class ForkReader {
 public:
  static std::optional<ForkReader> Open(const FileReference& file, Fork fork);

  ForkReader(ForkReader&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  ForkReader& operator=(ForkReader&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~ForkReader() { Close(); }

  /// Reads up to count bytes from the current position; how many there were, fewer only at the end of the fork.
  /// None on a read error.
  std::optional<size_t> Read(uint8_t* buffer, size_t count);
  /// False when the system reports an error; the fork is closed either way.
  bool Close();

 private:
  explicit ForkReader(int descriptor) : descriptor_(descriptor) {}
  int descriptor_ = -1;
};

/// A whole regular file mapped read-only and private. Shared by those who look into it; unmapped with the last of them.
class FileMapping {
 public:
  enum class Step { kStatus, kOpen, kMap, kDone };
  struct Result {
    std::shared_ptr<const FileMapping> mapping;  ///< none unless reached is kDone
    Step reached = Step::kStatus;                ///< the step that failed
    int error = 0;                               ///< its errno
  };
  /// Maps the file at the path. An empty file cannot be mapped and fails at kMap; anything but a regular file at kOpen.
  static Result Map(const std::string& path);

  FileMapping(const FileMapping&) = delete;
  FileMapping& operator=(const FileMapping&) = delete;
  ~FileMapping();

  ByteView Bytes() const { return bytes_; }

 private:
  explicit FileMapping(ByteView bytes) : bytes_(bytes) {}
  ByteView bytes_;
};

}  // namespace Tova
