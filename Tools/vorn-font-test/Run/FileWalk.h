#pragma once

#include <sys/types.h>

#include <functional>
#include <set>
#include <string>
#include <utility>

namespace tool {

/// Finds the font files behind paths. A path that names a file is always a find; a directory is searched recursively,
/// in ascending order of names, for files that begin like a font or hold fonts as resources. Symbolic links are
/// followed, but no directory is entered twice.
class FileWalk {
 public:
  struct Events {
    /// A readable regular file.
    std::function<void(const std::string& path)> found;
    /// Something that cannot be read, and why.
    std::function<void(const std::string& path, const std::string& reason)> failed;
  };

  explicit FileWalk(Events events) : events_(std::move(events)) {}
  void Walk(const std::string& path);

 private:
  void WalkDirectory(const std::string& path);
  void WalkEntry(const std::string& path);
  void Fail(const std::string& path, int error) const;

  Events events_;
  std::set<std::pair<dev_t, ino_t>> entered_;
};

}  // namespace tool
