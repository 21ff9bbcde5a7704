#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Report/Severity.h"

namespace tool {

struct FontRecord;
struct Message;

/// An option of the command line that a configuration sets.
struct ConfiguredOption {
  std::string name;                    ///< "show"
  std::vector<std::string> arguments;  ///< as a command line would have them: "--show=minor"
  std::string place;                   ///< "FILE:LINE"
};

/// A level that findings of rules are to have.
struct RuleLevel {
  std::string rule;  ///< a name, or a glob
  Severity severity;
};

/// Findings that are not to count.
struct Ignore {
  std::string rule = {};  ///< a name, or a glob
  std::string font = {};  ///< a glob for the file's path, the end of it, or a name of the font
  std::vector<std::pair<int64_t, int64_t>> glyphs = {};  ///< ranges of indexes, and
  std::vector<std::string> glyphNames = {};              ///< names; neither: all glyphs, and what is about none
  std::string reason = {};
  std::string place = {};  ///< "FILE:LINE"

  bool IsAbout(const std::string& path, const FontRecord& font) const;
  /// Whether it is about the glyph of a message.
  bool IsAboutGlyph(const Message& message) const;
};

/// A file in TOML that says what is special about some fonts. docs/configuration.md describes it.
struct Configuration {
  std::string file;
  std::vector<ConfiguredOption> options = {};
  std::vector<RuleLevel> levels = {};
  std::vector<Ignore> ignores = {};
};

/// Whether the glob stands for the name.
bool MatchesGlob(const std::string& pattern, std::string_view name);

/// Throws UsageError, which names file and line.
Configuration ReadConfiguration(const std::string& file);

/// The configuration in the folder of the paths or the nearest above it, in the working folder when there are no paths;
/// none without one. Throws UsageError when different paths lead to different ones.
std::optional<std::string> FindConfiguration(const std::vector<std::string>& paths);

}  // namespace tool
