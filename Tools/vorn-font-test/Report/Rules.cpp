#include "Report/Rules.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <tuple>

namespace tool {
namespace {

/// A text of the table: bytes from the start of kTexts, and its length.
struct Text {
  uint32_t at;
  uint16_t size;
};

/// A rule, as Rule has it.
struct RuleRow {
  Text name;
  Severity severity;
  RuleState state;
  Text title, means, why, fix, document;
};

/// A message of a test.
struct RuleOfFormat {
  uint16_t test;  ///< index of kTests
  uint16_t rule;  ///< index of kRules
  Text format;
};

// kRules by name; kTests, the first of which stands for any test, the others by name; kFormats by test and format.
#include "RuleTable.inc"

constexpr uint16_t kAnyTest = 0;

constexpr std::string_view View(Text text) { return {kTexts + text.at, text.size}; }

/// The index of a test; that of any test when it has no rules of its own.
uint16_t IndexOf(std::string_view test) {
  const auto* found = std::ranges::lower_bound(std::begin(kTests) + 1, std::end(kTests), test, {}, View);
  return found != std::end(kTests) && View(*found) == test ? static_cast<uint16_t>(found - std::begin(kTests))
                                                           : kAnyTest;
}

const Rule* Find(uint16_t test, std::string_view format) {
  const auto key = [](const RuleOfFormat& row) { return std::tuple(row.test, View(row.format)); };
  const auto* found = std::ranges::lower_bound(kFormats, std::tuple(test, format), {}, key);
  return found != std::end(kFormats) && key(*found) == std::tuple(test, format) ? &AllRules()[found->rule] : nullptr;
}

}  // namespace

std::string_view Word(RuleState state) {
  switch (state) {
    case RuleState::kSound:
      return "sound";
    case RuleState::kHistoric:
      return "historic";
    case RuleState::kAdvice:
      break;
  }
  return "advice";
}

std::string Rule::Link() const {
  std::string anchor;  // as documents are shown: lower case, without slashes
  for (const char c : name) {
    if (c != '/') anchor += static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  }
  return "docs/rules.md#" + anchor;
}

std::span<const Rule> AllRules() {
  static const std::vector<Rule> rules = [] {
    std::vector<Rule> made;
    made.reserve(std::size(kRules));
    for (const RuleRow& row : kRules) {
      made.push_back({View(row.name), row.severity, row.state, View(row.title), View(row.means), View(row.why),
                      View(row.fix), View(row.document)});
    }
    return made;
  }();
  return rules;
}

const Rule* FindRule(std::string_view test, std::string_view format) {
  const Rule* rule = Find(IndexOf(test), format);
  return rule ? rule : Find(kAnyTest, format);
}

const Rule* FindRuleNamed(std::string_view name) {
  const std::span<const Rule> rules = AllRules();
  const auto found = std::ranges::lower_bound(rules, name, {}, &Rule::name);
  return found != rules.end() && found->name == name ? &*found : nullptr;
}

std::vector<const Rule*> RulesOfTest(std::string_view test) {
  std::set<uint16_t> rules;
  const uint16_t index = IndexOf(test);
  for (const RuleOfFormat& row : kFormats) {
    if (row.test == index && index != kAnyTest) rules.insert(row.rule);
  }
  std::vector<const Rule*> found;
  found.reserve(rules.size());
  for (const uint16_t rule : rules) found.push_back(&AllRules()[rule]);
  return found;
}

}  // namespace tool
