#include "InstalledFonts.h"

#include <fontconfig/fontconfig.h>
#include <sys/stat.h>

#include <memory>
#include <stdexcept>

namespace conduit {
namespace {

using Configuration = std::unique_ptr<FcConfig, void (*)(FcConfig*)>;

const char* Text(const FcChar8* text) { return reinterpret_cast<const char*>(text); }

/// Watches the paths of a list, which is used up.
void Watch(FolderWatch& watch, FcStrList* paths) {
  if (!paths) return;
  while (const FcChar8* path = FcStrListNext(paths)) watch.Add(Text(path));
  FcStrListDone(paths);
}

}  // namespace

InstalledFonts::InstalledFonts() { Read(); }

void InstalledFonts::Read() {
  FolderWatch watch;
  const Configuration configuration(FcInitLoadConfigAndFonts(), FcConfigDestroy);
  if (!configuration) throw std::runtime_error("fontconfig does not load its configuration");
  pathsByName_.clear();
  count_ = 0;
  for (const FcSetName set : {FcSetSystem, FcSetApplication}) {
    const FcFontSet* fonts = FcConfigGetFonts(configuration.get(), set);
    for (int i = 0; fonts && i < fonts->nfont; ++i) {
      FcChar8* name = nullptr;
      FcChar8* path = nullptr;
      if (FcPatternGetString(fonts->fonts[i], FC_FILE, 0, &path) != FcResultMatch) continue;
      ++count_;
      for (int n = 0; FcPatternGetString(fonts->fonts[i], FC_POSTSCRIPT_NAME, n, &name) == FcResultMatch; ++n) {
        pathsByName_[Text(name)].emplace_back(Text(path));
      }
    }
  }
  Watch(watch, FcConfigGetConfigFiles(configuration.get()));
  Watch(watch, FcConfigGetConfigDirs(configuration.get()));
  Watch(watch, FcConfigGetFontDirs(configuration.get()));
  watch_ = std::move(watch);
}

std::string InstalledFonts::Find(std::string_view postScriptName, const std::string& otherThan) {
  if (watch_.MayHaveChanged()) Read();
  const auto found = pathsByName_.find(std::string(postScriptName));
  if (found == pathsByName_.end()) return {};
  struct stat other;
  const bool otherExists = stat(otherThan.c_str(), &other) == 0;
  for (const std::string& path : found->second) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0) continue;  // gone since
    if (!otherExists || status.st_dev != other.st_dev || status.st_ino != other.st_ino) return path;
  }
  return {};
}

}  // namespace conduit
