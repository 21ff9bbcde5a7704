#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "FolderWatch.h"

namespace conduit {

/// The fonts that fontconfig lists, by PostScript name. A font that is installed or removed is noticed at the next
/// question. For one thread.
class InstalledFonts {
 public:
  InstalledFonts();

  /// The path of an installed font with the name, other than the file at a path (under whatever name it is installed);
  /// empty without one.
  std::string Find(std::string_view postScriptName, const std::string& otherThan);
  /// How many fonts are installed.
  size_t Count() const { return count_; }

 private:
  void Read();

  std::unordered_map<std::string, std::vector<std::string>> pathsByName_;
  size_t count_ = 0;
  FolderWatch watch_;
};

}  // namespace conduit
