#pragma once

#include <sys/types.h>

#include <Tova/Tova.hpp>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "Platform/ByteView.h"
#include "Platform/ForkFormats.h"

namespace Tova {

/// Which of a file's two byte streams.
enum class Fork { kData, kResource };

/// What a URL names: a file, opened and mapped once, or the bytes that the URL carries. Its forks are views of that one
/// mapping (read-only and private), valid as long as the object; the descriptor is closed again at once. Immutable,
/// and shared by those who look into it, on any thread.
///
/// The data fork is the file's content, and that of a file that holds both forks (see ForkFormats.h) the part that is
/// its data fork. The resource fork is looked for, when it is first asked for, where the file system offers it, in the
/// sidecar "._NAME" in the same folder, and in the file itself.
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
  /// The type that the file was given, four characters; none where nothing tells it.
  std::optional<uint32_t> TypeCode() const;
  /// Whether it is the same file, by whatever path.
  bool IsSameAs(const File& other) const;
  /// The file of that name in the same folder; null when there is none, or the name is no file's.
  std::shared_ptr<const File> Sibling(const std::string& name) const;

 private:
  /// What accompanies a file.
  struct Companions {
    std::shared_ptr<const File> namedFork;  ///< the file system's
    std::shared_ptr<const File> sidecar;
    ForkParts sidecarParts;
  };

  explicit File(TovaURLRef url);
  void Map();
  const Companions& GetCompanions() const;

  Url url_;
  std::string path_;
  Data data_;  // owns the bytes of a URL that carries them
  ByteView bytes_;
  bool mapped_ = false;
  State state_ = State::kOpened;
  int error_ = 0;
  dev_t device_ = 0;  // with the number, what file it is
  ino_t number_ = 0;
  std::optional<ForkParts> oneFile_;  // of a file that holds both forks
  mutable std::once_flag companionsSought_;
  mutable Companions companions_;
};

}  // namespace Tova
