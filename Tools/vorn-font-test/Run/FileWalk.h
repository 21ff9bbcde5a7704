#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <utility>

#include "Report/Problem.h"

namespace tool {

/// Finds the font files behind paths. A path that names a file is always a find; a directory is searched recursively,
/// in ascending order of names, for files that begin like a font or hold fonts as resources. Symbolic links are
/// followed, but no directory is entered twice. Font files of kinds that are known and cannot be tested fail, and so
/// does a path to a directory without any font file.
class FileWalk {
 public:
  struct Events {
    /// A readable regular file.
    std::function<void(const std::string& path)> found;
    /// Something that cannot be read or tested, and why.
    std::function<void(const std::string& path, const Problem& problem)> failed;
    /// Something else was looked at; the walk may take long.
    std::function<void()> looked;
  };

  explicit FileWalk(Events events) : events_(std::move(events)) {}
  void Walk(const std::string& path);

 private:
  void WalkRoot(const std::string& path, const std::pair<dev_t, ino_t>& identity);
  void WalkDirectory(const std::string& path);
  void WalkEntry(const std::string& path);
  void Found(const std::string& path);
  void Fail(const std::string& path, const Problem& problem);
  void FailUnsupported(const std::string& path, const std::string& name);
  void Fail(const std::string& path, int error);

  Events events_;
  std::set<std::pair<dev_t, ino_t>> entered_;
  uint64_t finds_ = 0;  ///< and failures
};

}  // namespace tool
