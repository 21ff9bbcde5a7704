#include <sys/stat.h>
#include <unistd.h>

#include <Tova/Tova.hpp>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/Paths.h"
#include "Platform/Value.h"

namespace Tova {
namespace {

/// The folder of all preferences; none when the environment names none.
std::optional<std::filesystem::path> PreferencesFolder() {
  // An XDG_CONFIG_HOME that is not absolute is to be ignored (XDG Base Directory Specification).
  const char* folder = std::getenv("XDG_CONFIG_HOME");
  if (folder && folder[0] == '/') return folder;
  const char* home = std::getenv("HOME");
  if (home && home[0] == '/') return std::filesystem::path(home) / ".config";
  return std::nullopt;
}

bool Exists(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::exists(std::filesystem::symlink_status(path, error));
}

bool IsRegularFile(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::is_regular_file(path, error);
}

/// Replaces a file in one step, so that readers see the old contents or the new.
bool ReplaceFile(const std::string& path, std::string_view contents) {
  std::string temporary = path + ".XXXXXX";
  const int descriptor = mkstemp(temporary.data());
  if (descriptor < 0) return false;
  bool written = true;
  while (written && !contents.empty()) {
    const ssize_t count = write(descriptor, contents.data(), contents.size());
    if (count > 0) contents.remove_prefix(static_cast<size_t>(count));
    written = count > 0 || (count < 0 && errno == EINTR);
  }
  written = close(descriptor) == 0 && written;
  if (written && std::rename(temporary.c_str(), path.c_str()) == 0) return true;
  unlink(temporary.c_str());
  return false;
}

/// The preferences of one domain: what its file held when it was last read, and the changes since.
class Domain {
 public:
  explicit Domain(std::string name) : name_(std::move(name)) { Load(); }

  Value Get(TovaStringRef key) const { return Share(TovaDictionaryGetValue(values_.get(), key)); }

  /// Null removes the value.
  void Set(TovaStringRef key, TovaTypeRef value) {
    changes_.emplace_back(Share(key), Share(value));
    Apply(changes_.back());
  }

  /// Puts the changes on top of what the file holds by now.
  bool Synchronize() {
    const bool usable = Load();
    for (const Change& change : changes_) Apply(change);
    if (changes_.empty()) return true;
    if (!usable) return false;  // someone's file, whatever is wrong with it
    const auto path = Path();
    const Data data = Adopt(TovaPropertyListCreateXMLData(values_.get()));
    if (!path || !data) return false;
    std::error_code error;
    std::filesystem::create_directories(path->parent_path(), error);
    const auto* bytes = reinterpret_cast<const char*>(TovaDataGetBytes(data.get()));
    if (!ReplaceFile(path->string(), std::string_view(bytes, TovaDataGetLength(data.get())))) return false;
    changes_.clear();
    return true;
  }

 private:
  using Change = std::pair<String, Value>;

  std::optional<std::filesystem::path> Path() const {
    const auto folder = PreferencesFolder();
    if (!folder || !IsFileName(name_)) return std::nullopt;
    return *folder / (name_ + ".plist");
  }

  /// Reads the file. False when there is one that holds no dictionary.
  bool Load() {
    Value stored;
    const auto path = Path();
    const bool exists = path && Exists(*path);
    if (exists && IsRegularFile(*path)) {
      const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path->c_str(), "re"), &std::fclose);
      if (file) stored = Adopt(TovaPropertyListCreateWithStream(file.get(), nullptr));
    }
    const TovaDictionaryRef dictionary = AsDictionary(stored.get());
    values_ = Adopt(dictionary ? TovaDictionaryCreateMutableCopy(dictionary) : TovaDictionaryCreateMutable());
    return dictionary || !exists;
  }

  void Apply(const Change& change) {
    if (change.second) {
      TovaDictionarySetValue(values_.get(), change.first.get(), change.second.get());
    } else {
      TovaDictionaryRemoveValue(values_.get(), change.first.get());
    }
  }

  std::string name_;
  MutableDictionary values_;
  std::vector<Change> changes_;
};

/// All domains used so far, each read once.
struct Domains {
  std::mutex mutex;
  std::map<std::string, Domain, std::less<>> byName;
};

Domains& AllDomains() {
  static auto* domains = new Domains;
  return *domains;
}

/// Does something with a domain while no other thread does.
template <class Action>
auto WithDomain(TovaStringRef name, Action action) {
  return Guarded([&] {
    Domains& domains = AllDomains();
    const std::lock_guard lock(domains.mutex);
    auto found = domains.byName.find(Text(name));
    if (found == domains.byName.end()) {
      const std::string key(Text(name));
      found = domains.byName.emplace(key, Domain(key)).first;
    }
    return action(found->second);
  });
}

}  // namespace
}  // namespace Tova

TovaTypeRef TovaPreferencesCopyValue(TovaStringRef key, TovaStringRef domain) {
  if (!key || !domain) return nullptr;
  return Tova::WithDomain(domain, [&](Tova::Domain& preferences) { return preferences.Get(key); }).Detach();
}

void TovaPreferencesSetValue(TovaStringRef key, TovaTypeRef value, TovaStringRef domain) {
  if (!key || !domain) return;
  Tova::WithDomain(domain, [&](Tova::Domain& preferences) { preferences.Set(key, value); });
}

bool TovaPreferencesSynchronize(TovaStringRef domain) {
  if (!domain) return false;
  return Tova::WithDomain(domain, [](Tova::Domain& preferences) { return preferences.Synchronize(); });
}
