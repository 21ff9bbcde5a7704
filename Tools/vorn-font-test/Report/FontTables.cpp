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

bool Examines(const TestRecord& test, std::string_view tag) {
  if (!test.ran) return false;
  if (test.identifier == kBitmapTest) return std::ranges::find(kBitmapTables, tag) != std::end(kBitmapTables);
  return !test.target.empty() && IsTargetTag(TagOfTarget(test.target), tag);
}

bool AlphabeticalOrder(std::string_view one, std::string_view other) {
  const int order = strncasecmp(one.data(), other.data(), std::min(one.size(), other.size()));
  return order != 0 ? order < 0 : one < other;
}

}  // namespace

FontTables TablesOf(const FontRecord& font) {
  FontTables tables;
  for (const std::string_view tag : font.tables) {
    const bool tested = std::ranges::any_of(font.tests, [&](const TestRecord& test) { return Examines(test, tag); });
    (tested ? tables.tested : tables.notTested).push_back(tag);
  }
  for (auto* tags : {&tables.tested, &tables.notTested}) {
    std::ranges::sort(*tags, AlphabeticalOrder);
    tags->erase(std::unique(tags->begin(), tags->end()), tags->end());
  }
  return tables;
}

std::string_view TagOfTarget(std::string_view target) {
  constexpr std::string_view kPrefix = "kVornFontTest_";
  constexpr std::string_view kSuffix = "Table";
  if (!target.starts_with(kPrefix) || !target.ends_with(kSuffix)) return target;
  target.remove_prefix(kPrefix.size());
  target.remove_suffix(kSuffix.size());
  return target;
}

bool IsTargetTag(std::string_view targetTag, std::string_view tag) {
  std::string written(tag);
  for (char& character : written) {
    if (character == ' ' || character == '/') character = '_';
  }
  return written == targetTag || written.substr(0, written.find_last_not_of('_') + 1) == targetTag;
}

}  // namespace tool
