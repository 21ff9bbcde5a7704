#include "Formats/FindingGroups.h"

#include <algorithm>
#include <functional>
#include <map>
#include <tuple>

namespace tool {
namespace {

void GroupTest(const TestRecord& test, std::vector<FindingGroup>& groups) {
  std::map<std::tuple<const Rule*, std::string_view, std::string_view, Severity, Standing>, size_t> known;
  SeveritySet explained;
  for (size_t i = 0; i < test.messages.size(); ++i) {
    const Message message = test.messages[i];
    const Rule* rule = message.rule ? message.rule : FindRule(test.identifier, message.format);
    const std::string_view format = rule ? std::string_view() : message.format;
    const auto [at, isNew] =
        known.try_emplace({rule, format, message.table, message.severity, message.standing}, groups.size());
    if (isNew) groups.push_back({rule, &test, format, message.table, message.severity, message.standing, {}});
    groups[at->second].messages.push_back(i);
    explained.Add(message.severity);
  }
  for (Severity severity : kSeverities) {
    if (test.results.Has(severity) && !explained.Has(severity)) {
      groups.push_back({.test = &test, .severity = severity});
    }
  }
}

}  // namespace

std::vector<FindingGroup> GroupFindings(const FontRecord& font) {
  std::vector<FindingGroup> groups;
  for (const TestRecord& test : font.tests) GroupTest(test, groups);
  std::ranges::stable_sort(groups, std::greater(), &FindingGroup::severity);
  return groups;
}

}  // namespace tool
