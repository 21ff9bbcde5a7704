#pragma once

#include <sys/types.h>

#include <Tova/Tova.hpp>
#include <memory>
#include <optional>
#include <string>

#include "Platform/ByteView.h"

namespace Tova {

/// Which of a file's two byte streams. Only data forks exist on this platform's file systems.
enum class Fork { kData, kResource };

/// What a URL names: a file, opened and mapped once, or the bytes that the URL carries. Its forks are views of that one
/// mapping (read-only and private), valid as long as the object; the descriptor is closed again at once. Immutable,
/// and shared by those who look into it.
///
/// Anything but a regular file (a folder, a pipe, a device) exists without being opened, and opening never blocks.
class File {
 public:
  enum class State { kOpened, kNotOpened, kNotMapped };

  /// Null when the URL carries no bytes and nothing exists at its path.
  static std::shared_ptr<const File> AtUrl(TovaURLRef url);

  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File();

  TovaURLRef GetUrl() const { return url_.get(); }
  /// The absolute path in the file system's bytes; for bytes in memory, the name they were given.
  const std::string& Path() const { return path_; }
  State GetState() const { return state_; }
  /// The errno of what failed; 0 for an opened file.
  int Error() const { return error_; }
  /// Whether the bytes are those of a file, not of a value in memory.
  bool IsMapped() const { return mapped_; }
  /// None when the file was not opened, or has no such fork.
  std::optional<ByteView> Open(Fork fork) const;

 private:
  explicit File(TovaURLRef url);
  void Map();

  Url url_;
  std::string path_;
  Data data_;  // owns the bytes of a URL that carries them
  ByteView bytes_;
  bool mapped_ = false;
  State state_ = State::kOpened;
  int error_ = 0;
};

}  // namespace Tova
