#pragma once

#include <sys/stat.h>

#include <ctime>
#include <set>
#include <string>
#include <vector>

namespace conduit {

/// Tells when folders or files may have changed since they were read: a folder changes with each entry that comes or
/// goes. Looks at their change times, which no program can set back.
///
/// Use: make one, read, Add what was read; then ask.
class FolderWatch {
 public:
  FolderWatch();

  /// Watches a path, whether something is there or not.
  void Add(const std::string& path);
  /// Whether a path changed, or may have while it was read.
  bool MayHaveChanged() const;

 private:
  struct Seen {
    std::string path;
    bool exists = false;
    dev_t device = 0;
    ino_t file = 0;
    timespec changed = {};
    bool operator==(const Seen& other) const;
  };
  static Seen Look(const std::string& path);

  timespec start_;
  bool changedWhileRead_ = false;
  std::set<std::string> paths_;
  std::vector<Seen> seen_;
};

}  // namespace conduit
