#include "Formats/Explanation.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <string_view>
#include <utility>
#include <vector>

#include "Formats/LineWrapping.h"
#include "Formats/TextReport.h"
#include "Formats/TextStyle.h"
#include "Report/Rules.h"

namespace tool {
namespace {

constexpr size_t kWidth = 80;
constexpr size_t kMargin = 12;
constexpr size_t kNamesOffered = 5;

/// The rules that a name stands for: that rule, or those of that test or group.
std::vector<const Rule*> RulesNamed(std::string_view name) {
  if (const Rule* rule = FindRuleNamed(name)) return {rule};
  std::vector<const Rule*> rules = RulesOfTest(name);
  if (!rules.empty()) return rules;
  for (const Rule& rule : AllRules()) {
    if (rule.Group() == name) rules.push_back(&rule);
  }
  return rules;
}

/// How many characters must be put in, taken out or changed to make one text of the other.
size_t Distance(std::string_view one, std::string_view other) {
  std::vector<size_t> row(other.size() + 1);
  std::iota(row.begin(), row.end(), size_t{0});
  for (size_t i = 0; i < one.size(); ++i) {
    size_t diagonal = std::exchange(row[0], i + 1);
    for (size_t j = 0; j < other.size(); ++j) {
      const size_t changed = diagonal + (one[i] == other[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({row[j] + 1, diagonal + 1, changed});
    }
  }
  return row.back();
}

/// The names of rules and groups that are most like one that there is not, for a message about it.
std::string NamesLike(std::string_view name) {
  std::multimap<size_t, std::string_view> names;
  std::string_view group;
  for (const Rule& rule : AllRules()) {
    names.emplace(Distance(name, rule.name), rule.name);
    const bool sameKey = !name.empty() && rule.name.find(name) != rule.name.npos;
    if (sameKey) names.emplace(0, rule.name);
    if (std::exchange(group, rule.Group()) != rule.Group()) names.emplace(Distance(name, group), group);
  }
  std::vector<std::string_view> offered;
  for (const auto& [distance, like] : names) {
    if (offered.size() == kNamesOffered) break;
    if (std::ranges::find(offered, like) == offered.end()) offered.push_back(like);
  }
  std::string list;
  for (const std::string_view like : offered) list.append(list.empty() ? "" : ", ").append(like);
  return list;
}

void WriteRule(const Rule& rule, const TextStyle& style, Output& output) {
  output.Write(style.Bold(rule.name) + "  " + style.Of(rule.severity, Word(rule.severity)) + ", " +
               std::string(Word(rule.state)) + "\n");
  output.Write("  " + std::string(rule.title) + "\n");
  output.Write(Labelled(Padded("  means", kMargin), rule.means, kWidth));
  output.Write(Labelled(Padded("  why", kMargin), rule.why, kWidth));
  output.Write(Labelled(Padded("  fix", kMargin), rule.fix, kWidth));
  output.Write(Labelled(Padded("  document", kMargin), rule.document, kWidth));
}

}  // namespace

void WriteExplanation(const std::string& name, const Options& options, Output& output) {
  const std::vector<const Rule*> rules = RulesNamed(name);
  if (rules.empty()) throw UsageError("--explain: no rule, test or group '" + name + "'; like it: " + NamesLike(name));
  const TextStyle style(WantsColor(options.color, output.IsTerminal()));
  for (const Rule* rule : rules) {
    if (rule != rules.front()) output.Write("\n");
    WriteRule(*rule, style, output);
  }
}

}  // namespace tool
