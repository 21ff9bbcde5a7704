#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "support/FontBuilder.h"
#include "support/TemporaryFolder.h"

namespace test {

/// A folder whose folder "fonts" holds all that is installed for programs that read Configuration().
class InstalledFolder {
 public:
  InstalledFolder() {
    std::filesystem::create_directory(Fonts());
    std::ofstream(Configuration()) << "<?xml version=\"1.0\"?><fontconfig><dir>" << Fonts().string() << "</dir><dir>"
                                   << folder_.File("later") << "</dir><cachedir>" << folder_.File("cache")
                                   << "</cachedir></fontconfig>";
  }

  /// What the environment variable FONTCONFIG_FILE is to name.
  std::string Configuration() const { return folder_.File("fonts.conf"); }
  std::filesystem::path Fonts() const { return folder_.Path() / "fonts"; }
  /// Writes a font with a PostScript name to a path relative to the whole folder, and returns its path.
  std::string Write(const std::string& path, const std::string& postScriptName) const {
    std::filesystem::create_directories((folder_.Path() / path).parent_path());
    const std::string name = "Family " + postScriptName;
    const auto names = NameTable({{1, name}, {2, "Regular"}, {4, name}, {6, postScriptName}});
    return folder_.Write(path, GoodFont().Table("name", names).Build());
  }

 private:
  TemporaryFolder folder_;
};

}  // namespace test
