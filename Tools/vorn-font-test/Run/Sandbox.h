#pragma once

#include <cstdint>
#include <set>
#include <string>

namespace tool {

/// Folders, with all that is in them, and single files that a worker may read.
class ReadablePlaces {
 public:
  /// The folder of a path to be tested, or the path itself when it is a folder.
  void AddRoot(const std::string& path);
  /// What testing a file reads: its folder, where its companions stand, and what it is a link to.
  void AddFile(const std::string& path);
  /// The folders where the libraries and this program find their lists and texts.
  void AddResources();
  /// Whether all that testing the file reads is among them.
  bool Cover(const std::string& path);

  const std::set<std::string>& Places() const { return places_; }

 private:
  struct Needs {
    std::string folder;  ///< real path
    std::string target;  ///< the real path of a file that stands elsewhere than its name; else empty
  };
  Needs NeedsOf(const std::string& path);
  bool Holds(std::string place) const;

  std::set<std::string> places_;  ///< real paths
  std::string lastFolder_;        ///< as it was last asked for, and
  std::string lastRealFolder_;    ///< what it is
};

/// What a worker may still do.
struct Permissions {
  uint64_t memory = 0;       ///< bytes; 0: no limit
  bool askConduit = false;   ///< may connect to the conduit
  bool writeErrors = false;  ///< may write to standard error, which may be a file
  bool filterCalls = true;   ///< system calls are refused one by one; a tenth of a millisecond for the kernel to learn
  const ReadablePlaces* places;  ///< of files
};

/// Whether this system can keep a process to some places of the file system.
bool CanConfineToPlaces();

/// Gives up for good what testing fonts does not need: memory beyond the limit, writing files and, as far as this
/// system knows how, reading files elsewhere, sockets, other programs and processes.
void Confine(const Permissions& permissions);

}  // namespace tool
