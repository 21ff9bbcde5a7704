#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Report/Severity.h"

namespace tool {

/// Whether what a rule demands still matters.
enum class RuleState : uint8_t {
  kSound,     ///< the demand stands
  kHistoric,  ///< it has left today's formats, or mattered to older systems only
  kAdvice     ///< a recommendation, or a plain remark
};

/// What messages of one kind are about. The rules stand in rules/*.toml, from which the tool is built.
struct Rule {
  std::string_view name;  ///< group and key: "glyf/box-differs"
  Severity severity;      ///< the gravest that a test gives it
  RuleState state;
  std::string_view title;     ///< the fault in a few words
  std::string_view means;     ///< in sentences
  std::string_view why;       ///< why it matters, a clause
  std::string_view fix;       ///< how to mend it, a clause
  std::string_view document;  ///< the public document with section

  /// Its place in the documents that come with the tool: "docs/rules.md#glyfbox-differs".
  std::string Link() const;
  /// "glyf".
  std::string_view Group() const { return name.substr(0, name.find('/')); }
};

/// The word for a state: "sound".
std::string_view Word(RuleState state);

/// All rules by ascending name.
std::span<const Rule> AllRules();
/// The rule of a message of this test, by the message's untranslated format; null when there is none.
const Rule* FindRule(std::string_view test, std::string_view format);
/// The rule of this name; null when there is none.
const Rule* FindRuleNamed(std::string_view name);
/// The rules that a test alone or with others has, each once, by name; none for an unknown test.
std::vector<const Rule*> RulesOfTest(std::string_view test);

}  // namespace tool
