#include "Report/Configuration.h"

#include <fnmatch.h>
#include <toml++/toml.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string_view>

#include "Options.h"
#include "Report/Report.h"
#include "Report/Rules.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFileName = "vorn-font-test.toml";

/// Options that a file in the folder of the fonts may set: none that writes files or names others than fonts do.
constexpr std::string_view kOptions[] = {"all-messages",   "color",        "duplicates",  "enable",   "exclude",
                                         "fail-on",        "format",       "jobs",        "language", "memory",
                                         "limit-to-shown", "max-messages", "no-progress", "no-times", "profile",
                                         "report",         "show",         "test",        "timeout",  "type"};

class Reader {
 public:
  explicit Reader(const std::string& file) : result_{.file = file} {}

  Configuration Read() {
    std::ifstream stream(result_.file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (!stream) throw UsageError(result_.file + ": cannot be read");
    toml::table root;
    try {
      root = toml::parse(text);
    } catch (const toml::parse_error& error) {
      Fail(error.source(), std::string(error.description()));
    }
    for (const auto& [key, node] : root) {
      if (key == "rules") {
        ReadLevels(node);
      } else if (key == "ignore") {
        ReadIgnores(node);
      } else {
        ReadOption(std::string(key.str()), node);
      }
    }
    // In the order of the file: a table forgets it.
    std::ranges::stable_sort(result_.ignores, {}, [](const Ignore& ignore) { return LineOf(ignore.place); });
    return std::move(result_);
  }

 private:
  static int LineOf(const std::string& place) { return std::atoi(place.c_str() + place.rfind(':') + 1); }

  std::string PlaceOf(const toml::source_region& source) const {
    return result_.file + ":" + std::to_string(source.begin.line);
  }
  [[noreturn]] void Fail(const toml::source_region& source, const std::string& what) const {
    throw UsageError(PlaceOf(source) + ": " + what);
  }

  std::string TextOf(const toml::node& node, std::string_view what) const {
    const auto text = node.value_exact<std::string>();
    if (!text || text->empty()) Fail(node.source(), std::string(what) + " must be a text");
    return *text;
  }

  void ReadOption(const std::string& name, const toml::node& node) {
    if (std::ranges::find(kOptions, name) == std::end(kOptions)) {
      Fail(node.source(), "there is no option '" + name + "' that a configuration may set");
    }
    ConfiguredOption option{.name = name, .arguments = {}, .place = PlaceOf(node.source())};
    const auto add = [&](const toml::node& value) {
      if (const auto number = value.value_exact<int64_t>()) {
        option.arguments.push_back("--" + name + "=" + std::to_string(*number));
      } else if (const auto flag = value.value_exact<bool>()) {
        if (*flag) option.arguments.push_back("--" + name);
      } else {
        option.arguments.push_back("--" + name + "=" + TextOf(value, name));
      }
    };
    if (const toml::array* array = node.as_array()) {
      for (const toml::node& value : *array) add(value);
    } else {
      add(node);
    }
    result_.options.push_back(std::move(option));
  }

  void ReadLevels(const toml::node& node) {
    const toml::table* table = node.as_table();
    if (!table) Fail(node.source(), "rules must be a table");
    for (const auto& [key, value] : *table) {
      const auto severity = SeverityFromWord(TextOf(value, key.str()));
      if (!severity || *severity == Severity::kNonFont) {
        Fail(value.source(),
             "the level of " + std::string(key.str()) + " is none of information, technical, minor, major, fatal");
      }
      result_.levels.push_back({.rule = RuleFrom(std::string(key.str()), value), .severity = *severity});
    }
  }

  std::string RuleFrom(const std::string& name, const toml::node& node) const {
    const bool isKnown =
        std::ranges::any_of(AllRules(), [&](const Rule& rule) { return MatchesGlob(name, rule.name); });
    if (!isKnown) Fail(node.source(), "there is no rule '" + name + "'; docs/rules.md lists them");
    return name;
  }

  void ReadIgnores(const toml::node& node) {
    const toml::array* array = node.as_array();
    if (!array) Fail(node.source(), "ignore must be an array of tables: [[ignore]]");
    for (const toml::node& entry : *array) {
      const toml::table* table = entry.as_table();
      if (!table) Fail(entry.source(), "ignore must be an array of tables: [[ignore]]");
      ReadIgnore(*table);
    }
  }

  void ReadIgnore(const toml::table& table) {
    Ignore ignore{.place = PlaceOf(table.source())};
    for (const auto& [key, node] : table) {
      if (key == "rule") {
        ignore.rule = RuleFrom(TextOf(node, "rule"), node);
      } else if (key == "font") {
        ignore.font = TextOf(node, "font");
      } else if (key == "reason") {
        ignore.reason = TextOf(node, "reason");
      } else if (key == "glyphs") {
        ReadGlyphs(node, ignore);
      } else {
        Fail(node.source(), "an ignore has rule, font, glyphs and reason, no '" + std::string(key.str()) + "'");
      }
    }
    for (const auto& [value, name] :
         {std::pair(&ignore.rule, "rule"), {&ignore.font, "font"}, {&ignore.reason, "reason"}}) {
      if (value->empty()) Fail(table.source(), std::string("this ignore has no ") + name);
    }
    result_.ignores.push_back(std::move(ignore));
  }

  /// Indexes, ranges of them as texts ("12-20"), and names.
  void ReadGlyphs(const toml::node& node, Ignore& ignore) const {
    const toml::array* array = node.as_array();
    if (!array || array->empty()) Fail(node.source(), "glyphs must be an array of indexes, ranges and names");
    for (const toml::node& value : *array) {
      if (const auto index = value.value_exact<int64_t>()) {
        ignore.glyphs.emplace_back(*index, *index);
        continue;
      }
      const std::string text = TextOf(value, "a glyph");
      const auto range = RangeFrom(text);
      range ? ignore.glyphs.push_back(*range) : ignore.glyphNames.push_back(text);
    }
  }

  static std::optional<std::pair<int64_t, int64_t>> RangeFrom(std::string_view text) {
    std::pair<int64_t, int64_t> range;
    const char* const end = text.data() + text.size();
    const auto first = std::from_chars(text.data(), end, range.first);
    if (first.ec != std::errc() || first.ptr == end || *first.ptr != '-') return std::nullopt;
    const auto last = std::from_chars(first.ptr + 1, end, range.second);
    return last.ec == std::errc() && last.ptr == end ? std::optional(range) : std::nullopt;
  }

  Configuration result_;
};

/// The folder in which a path's configuration is looked for first.
fs::path FolderOf(const std::string& path) {
  std::error_code error;
  const fs::path absolute = fs::absolute(path, error).lexically_normal();
  return fs::is_directory(absolute, error) ? absolute : absolute.parent_path();
}

}  // namespace

bool MatchesGlob(const std::string& pattern, std::string_view name) {
  return fnmatch(pattern.c_str(), std::string(name).c_str(), 0) == 0;
}

bool Ignore::IsAbout(const std::string& path, const FontRecord& record) const {
  return MatchesGlob(font, path) || MatchesGlob("*/" + font, path) || MatchesGlob(font, record.name) ||
         MatchesGlob(font, record.postScriptName);
}

bool Ignore::IsAboutGlyph(const Message& message) const {
  if (glyphs.empty() && glyphNames.empty()) return true;
  if (!message.glyph) return false;
  return std::ranges::find(glyphNames, message.glyphName) != glyphNames.end() ||
         std::ranges::any_of(glyphs, [&](const auto& range) {
           return range.first <= *message.glyph && *message.glyph <= range.second;
         });
}

Configuration ReadConfiguration(const std::string& file) { return Reader(file).Read(); }

std::optional<std::string> FindConfiguration(const std::vector<std::string>& paths) {
  std::set<fs::path> looked;
  std::optional<std::string> found;
  for (const std::string& path : paths.empty() ? std::vector<std::string>{"."} : paths) {
    fs::path folder = FolderOf(path);
    while (looked.insert(folder).second) {
      std::error_code error;
      const fs::path file = folder / kFileName;
      if (fs::is_regular_file(file, error)) {
        if (found && *found != file) {
          throw UsageError("different fonts have different configurations, " + *found + " and " + file.string() +
                           "; choose with --config");
        }
        found = file.string();
        break;
      }
      folder = folder.parent_path();
    }
  }
  return found;
}

}  // namespace tool
