#pragma once

#include <string_view>
#include <vector>

namespace tool {

struct FontRecord;

/// The tables of a font by whether a test examined them, each list in the order of people's alphabets.
struct FontTables {
  std::vector<std::string_view> tested;
  std::vector<std::string_view> notTested;
};

FontTables TablesOf(const FontRecord& font);

/// The tag that a target of tests stands for, "cmap" for "kVornFontTest_cmapTable", as targets write it: blanks and
/// slashes as underscores. The target itself when it is none of a table.
std::string_view TagOfTarget(std::string_view target);

/// Whether this is the tag, blanks and slashes aside.
bool IsTargetTag(std::string_view targetTag, std::string_view tag);

}  // namespace tool
