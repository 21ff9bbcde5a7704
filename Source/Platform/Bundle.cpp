#include "Platform/Bundle.h"

#include <link.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "Platform/Paths.h"
#include "Platform/String.h"

namespace Tova {
namespace {

namespace fs = std::filesystem;

/// The languages to look texts up in, the preferred one first: "de_AT" and "de", then "en".
std::vector<std::string> WantedLanguages() {
  std::string locale;
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(variable);
    if (!value || !*value) continue;
    locale = value;
    break;
  }
  locale.resize(std::min(locale.find_first_of(".@"), locale.size()));
  std::vector<std::string> languages;
  if (IsFileName(locale) && locale != "C" && locale != "POSIX") {
    languages.push_back(locale);
    const size_t territory = locale.find('_');
    if (territory != std::string::npos && territory > 0) languages.push_back(locale.substr(0, territory));
  }
  if (languages.empty() || languages.back() != "en") languages.emplace_back("en");
  return languages;
}

const std::vector<std::string>& Languages() {
  static const auto* languages = new std::vector<std::string>(WantedLanguages());
  return *languages;
}

Dictionary ReadTable(const std::string& path) {
  const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "re"), &std::fclose);
  if (!file) return Dictionary();
  const Value value = Adopt(TovaPropertyListCreateWithStream(file.get(), nullptr));
  return Share(AsDictionary(value.get()));
}

struct ImageSearch {
  std::string name;  ///< "libName.so"
  std::optional<std::string> path;
};

int CompareImage(dl_phdr_info* image, size_t /*size*/, void* context) {
  auto& search = *static_cast<ImageSearch*>(context);
  const std::string_view path = image->dlpi_name ? image->dlpi_name : "";
  const std::string_view name = path.substr(path.rfind('/') + 1);
  if (name.substr(0, search.name.size()) != search.name) return 0;
  if (name.size() > search.name.size() && name[search.name.size()] != '.') return 0;
  return Guarded([&] {
    search.path = path;
    return 1;
  });
}

/// The real path of the executable; empty when the system does not tell.
fs::path ExecutablePath() {
  std::error_code error;
  return fs::read_symlink("/proc/self/exe", error);
}

/// The folder share/<name> near a loaded file, up to three levels up (lib/<architecture>/…); null when there is none.
std::unique_ptr<const TovaBundle> FindNear(const fs::path& file, const std::string& name) {
  std::error_code error;
  fs::path folder = fs::canonical(file, error).parent_path();
  if (error) return nullptr;
  for (int levels = 1; levels <= 3; ++levels) {
    folder = folder.parent_path();
    const fs::path candidate = folder / "share" / name;
    if (fs::is_directory(candidate, error)) return std::make_unique<TovaBundle>(candidate.string());
  }
  return nullptr;
}

std::unique_ptr<const TovaBundle> FindBundle(const std::string& name) {
  if (!IsFileName(name)) return nullptr;
  ImageSearch search{"lib" + name + ".so", std::nullopt};
  dl_iterate_phdr(CompareImage, &search);
  auto bundle = search.path ? FindNear(*search.path, name) : nullptr;
  return bundle ? std::move(bundle) : FindNear(ExecutablePath(), name);
}

/// The bundle of a name, found once; null is remembered too.
TovaBundleRef CachedBundle(std::string_view name) {
  static auto* mutex = new std::mutex;
  static auto* bundles = new std::map<std::string, std::unique_ptr<const TovaBundle>, std::less<>>;
  const std::lock_guard lock(*mutex);
  auto found = bundles->find(name);
  if (found == bundles->end()) found = bundles->emplace(name, FindBundle(std::string(name))).first;
  return found->second.get();
}

}  // namespace
}  // namespace Tova

bool TovaBundle::IsEqual(const Object& other, int /*depth*/) const {
  return path == static_cast<const TovaBundle&>(other).path;
}

size_t TovaBundle::Hash(int /*depth*/) const { return std::hash<std::string>()(path); }

void TovaBundle::Describe(std::string& out, int /*depth*/) const {
  const auto text = Tova::Adopt(TovaStringCreateWithLossyUTF8(path.data(), path.size()));
  out += Tova::Text(text);
}

const TovaBundle::Table& TovaBundle::FindTable(std::string_view name) const {
  {
    const std::shared_lock lock(mutex_);
    const auto found = tables_.find(name);
    if (found != tables_.end()) return found->second;
  }
  Table table;
  std::string file = std::string(name) + ".strings";
  std::ranges::replace(file, '/', '_');
  for (const std::string& language : Tova::Languages()) {
    if (!Tova::IsFileName(file)) break;
    const Tova::Dictionary texts = Tova::ReadTable(std::filesystem::path(path) / language / file);
    if (texts) table.push_back(texts);
  }
  const std::unique_lock lock(mutex_);
  return tables_.emplace(name, std::move(table)).first->second;
}

Tova::String TovaBundle::FindText(std::string_view table, TovaStringRef key) const {
  for (const Tova::Dictionary& texts : FindTable(table)) {
    if (TovaStringRef text = Tova::AsString(TovaDictionaryGetValue(texts.get(), key))) return Tova::Share(text);
  }
  return Tova::String();
}

TovaBundleRef TovaBundleGetWithIdentifier(TovaStringRef identifier) {
  if (!identifier) return nullptr;
  return Tova::Guarded([&] {
    const std::string_view text = identifier->text;
    return Tova::CachedBundle(text.substr(text.rfind('.') + 1));
  });
}

TovaBundleRef TovaBundleGetMain(void) {
  return Tova::Guarded([] {
    static const TovaBundleRef bundle =
        Tova::FindNear(Tova::ExecutablePath(), Tova::ExecutablePath().filename()).release();
    return bundle;
  });
}

TovaURLRef TovaBundleCopyResourceURL(TovaBundleRef bundle, TovaStringRef name, TovaStringRef type) {
  if (!bundle || !name) return nullptr;
  return Tova::Guarded([&]() -> TovaURLRef {
    const std::string file = type && !type->text.empty() ? name->text + "." + type->text : name->text;
    const std::string path = bundle->path + "/" + file;
    struct stat status;
    if (!Tova::IsFileName(file) || stat(path.c_str(), &status) != 0) return nullptr;
    return TovaURLCreateWithFilePath(path.c_str());
  });
}

TovaStringRef TovaBundleCopyLocalizedString(TovaBundleRef bundle, TovaStringRef key, TovaStringRef defaultText,
                                            TovaStringRef table) {
  if (!key) return nullptr;
  Tova::String text;
  if (bundle && table) text = Tova::Guarded([&] { return bundle->FindText(table->text, key); });
  if (!text) text = Tova::Share(defaultText ? defaultText : key);
  return text.Detach();
}
