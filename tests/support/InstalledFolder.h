#pragma once

#include "support/FontBuilder.h"
#include "support/MessagePorts.h"

namespace test {

/// A folder whose folders "fonts" and "later" hold all that is installed for programs with this environment.
struct InstalledFolder : TemporaryFolder {
  InstalledFolder() {
    const std::string text = "<fontconfig><dir>" + File("fonts") + "</dir><dir>" + File("later") + "</dir><cachedir>" +
                             File("cache") + "</cachedir></fontconfig>";
    Write("fonts.conf", Bytes(text.begin(), text.end()));
  }
  /// Writes a font with a PostScript name and returns its path.
  std::string WriteFont(const std::string& path, const std::string& name) const {
    std::filesystem::create_directories(std::filesystem::path(File(path)).parent_path());
    return Write(path, GoodFont().Table("name", NameTable({{1, name}, {2, "Regular"}, {4, name}, {6, name}})).Build());
  }
  const Variable variable{"FONTCONFIG_FILE", File("fonts.conf").c_str()};
};

}  // namespace test
