#include "Report/Rules.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <tuple>

namespace tool {
namespace {

using namespace std::string_view_literals;

/// A message of a test.
struct RuleOfFormat {
  uint16_t test;  ///< index of kTests
  uint16_t rule;  ///< index of kRules
  std::string_view format;
};

// kRules by name; kTests, the first of which stands for any test, the others by name; kFormats by test and format.
#include "RuleTable.inc"

constexpr uint16_t kAnyTest = 0;

/// The index of a test; that of any test when it has no rules of its own.
uint16_t IndexOf(std::string_view test) {
  const auto* found = std::lower_bound(std::begin(kTests) + 1, std::end(kTests), test);
  return found != std::end(kTests) && *found == test ? static_cast<uint16_t>(found - std::begin(kTests)) : kAnyTest;
}

const Rule* Find(uint16_t test, std::string_view format) {
  const auto key = [](const RuleOfFormat& row) { return std::tuple(row.test, row.format); };
  const auto* found = std::ranges::lower_bound(kFormats, std::tuple(test, format), {}, key);
  return found != std::end(kFormats) && key(*found) == std::tuple(test, format) ? &kRules[found->rule] : nullptr;
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

std::span<const Rule> AllRules() { return kRules; }

const Rule* FindRule(std::string_view test, std::string_view format) {
  const Rule* rule = Find(IndexOf(test), format);
  return rule ? rule : Find(kAnyTest, format);
}

const Rule* FindRuleNamed(std::string_view name) {
  const auto* found = std::ranges::lower_bound(kRules, name, {}, &Rule::name);
  return found != std::end(kRules) && found->name == name ? found : nullptr;
}

std::vector<const Rule*> RulesOfTest(std::string_view test) {
  std::set<uint16_t> rules;
  const uint16_t index = IndexOf(test);
  for (const RuleOfFormat& row : kFormats) {
    if (row.test == index && index != kAnyTest) rules.insert(row.rule);
  }
  std::vector<const Rule*> found;
  found.reserve(rules.size());
  for (const uint16_t rule : rules) found.push_back(&kRules[rule]);
  return found;
}

}  // namespace tool
