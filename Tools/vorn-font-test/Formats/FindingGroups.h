#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "Report/Report.h"
#include "Report/Rules.h"

namespace tool {

/// Findings of one font that break the same rule in the same way.
struct FindingGroup {
  const Rule* rule = nullptr;  ///< null when the catalogue has none
  const TestRecord* test = nullptr;
  std::string_view format = {};  ///< names the rule when the catalogue has none
  std::string_view table = {};
  Severity severity = Severity::kNonFont;
  Standing standing = Standing::kCounts;
  std::vector<size_t> messages = {};  ///< indexes of the test's messages; none for a result that no message explains

  size_t Count() const { return messages.empty() ? 1 : messages.size(); }
  /// A short heading for them.
  std::string_view Title() const { return rule ? rule->title : format.empty() ? "(no further text)" : format; }
};

/// The findings of a font, the gravest first, else in the order in which the tests made them.
std::vector<FindingGroup> GroupFindings(const FontRecord& font);

}  // namespace tool
