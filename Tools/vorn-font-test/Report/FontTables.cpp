#include "Report/FontTables.h"

#include <strings.h>

#include <algorithm>
#include <string>

#include "Report/Report.h"

namespace tool {
namespace {

/// The test of several tables at once, which therefore names none as its target.
constexpr std::string_view kBitmapTest = "veltrin.TrueType.sbit.structure";
constexpr std::string_view kBitmapTables[] = {"bloc", "bdat", "EBLC", "EBDT"};

/// "cmap" for "kVornFontTest_cmapTable": the tag as targets write it, blanks and slashes as underscores.
std::string_view TagOfTarget(std::string_view target) {
  constexpr std::string_view kPrefix = "kVornFontTest_";
  constexpr std::string_view kSuffix = "Table";
  if (!target.starts_with(kPrefix) || !target.ends_with(kSuffix)) return {};
  target.remove_prefix(kPrefix.size());
  target.remove_suffix(kSuffix.size());
  return target;
}

bool AlphabeticalOrder(std::string_view one, std::string_view other) {
  const int order = strncasecmp(one.data(), other.data(), std::min(one.size(), other.size()));
  return order != 0 ? order < 0 : one < other;
}

}  // namespace

FontTables TablesOf(const FontRecord& font) {
  FontTables tables;
  for (const std::string_view tag : font.tables) {
    const bool tested = std::ranges::any_of(
        font.tests, [&](const TestRecord& test) { return test.ran && Examines(test.identifier, test.target, tag); });
    (tested ? tables.tested : tables.notTested).push_back(tag);
  }
  for (auto* tags : {&tables.tested, &tables.notTested}) {
    std::ranges::sort(*tags, AlphabeticalOrder);
    tags->erase(std::unique(tags->begin(), tags->end()), tags->end());
  }
  return tables;
}

bool Examines(std::string_view test, std::string_view target, std::string_view tag) {
  if (test == kBitmapTest) return std::ranges::find(kBitmapTables, tag) != std::end(kBitmapTables);
  std::string written(tag);
  for (char& character : written) {
    if (character == ' ' || character == '/') character = '_';
  }
  return !written.empty() && written == TagOfTarget(target);
}

}  // namespace tool
