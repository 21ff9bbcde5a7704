#include "Report/Judge.h"

#include <Tova/Tova.hpp>
#include <algorithm>
#include <unordered_map>

#include "Report/Rules.h"

namespace tool {
namespace {

/// The rule of the last message where a test has left messages out.
constexpr std::string_view kFurtherMessages = "run/further-messages";

/// The format of messages that say why a font could not be tested; they do not tell it themselves.
constexpr std::string_view kFailureFormat = "%@";

/// Finds the rules of a test's messages. Messages of a report share their formats, so that most are found by address.
class RuleFinder {
 public:
  explicit RuleFinder(std::string_view test) : test_(test) {}

  const Rule* Find(TovaStringRef format) {
    const auto [place, isNew] = found_.emplace(format, nullptr);
    if (isNew) place->second = FindRule(test_, Tova::Text(format));
    return place->second;
  }

 private:
  std::string_view test_;
  std::unordered_map<TovaStringRef, const Rule*> found_;
};

/// The gravest severity of the historic rules of a test, of those of all tests for an empty identifier; the mildest
/// severity when there are none.
Severity GravestHistoric(std::string_view test) {
  Severity gravest = Severity::kNonFont;
  const auto look = [&](const Rule& rule) {
    if (rule.state == RuleState::kHistoric) gravest = std::max(gravest, rule.severity);
  };
  if (test.empty()) {
    std::ranges::for_each(AllRules(), look);
  } else {
    for (const Rule* rule : RulesOfTest(test)) look(*rule);
  }
  return gravest;
}

}  // namespace

Judge::Judge(const Options& options) : leavesHistoricOut_(options.profile == Profile::kDefault) {}

Standing Judge::StandingOf(const Rule* rule) const {
  return leavesHistoricOut_ && rule && rule->state == RuleState::kHistoric ? Standing::kHistoric : Standing::kCounts;
}

void Judge::Apply(FileReport& report) const {
  for (FontRecord& font : report.fonts) {
    for (TestRecord& test : font.tests) ApplyTo(test);
  }
}

void Judge::ApplyTo(TestRecord& test) const {
  RuleFinder rules(test.identifier);
  std::vector<Judgement> judgements;
  judgements.reserve(test.messages.size());
  for (size_t i = 0; i < test.messages.size(); ++i) {
    Judgement judgement = test.messages.JudgementAt(i);
    judgement.rule = rules.Find(test.messages.FormatAt(i));
    if (!judgement.rule && !test.ran) judgement.rule = FindRule(test.identifier, kFailureFormat);
    judgement.standing = StandingOf(judgement.rule);
    judgements.push_back(judgement);
  }
  test.messages.SetJudgements(std::move(judgements));
}

Judge::Decision Judge::Decide(const FileReport& report, Severity level) const {
  if (!report.listsFonts) return DecideUnseen(report.results, {}, level);
  if (report.fonts.empty()) return report.results.Reaches(level) ? Decision::kFails : Decision::kPasses;
  Decision decision = Decision::kPasses;
  for (const FontRecord& font : report.fonts) {
    for (const TestRecord& test : font.tests) {
      const Decision ofTest = Decide(test, level);
      if (ofTest == Decision::kFails) return ofTest;
      if (ofTest == Decision::kUndecided) decision = ofTest;
    }
  }
  return decision;
}

std::vector<std::string_view> Judge::OpenTests(const FileReport& report, Severity level) const {
  std::vector<std::string_view> tests;
  for (const FontRecord& font : report.fonts) {
    for (const TestRecord& test : font.tests) {
      if (Decide(test, level) == Decision::kUndecided) tests.push_back(test.identifier);
    }
  }
  return tests;
}

Judge::Decision Judge::Decide(const TestRecord& test, Severity level) const {
  SeveritySet seen;
  bool isComplete = test.messages.size() > 0;
  for (size_t i = 0; i < test.messages.size(); ++i) {
    const Judgement judgement = test.messages.JudgementAt(i);
    if (judgement.standing == Standing::kCounts && judgement.severity >= level) return Decision::kFails;
    seen.Add(judgement.given);
    if (judgement.rule && judgement.rule->name == kFurtherMessages) isComplete = false;
  }
  return DecideUnseen(isComplete ? test.results.Without(seen) : test.results, test.identifier, level);
}

/// Of findings that nothing is known of but their severities.
Judge::Decision Judge::DecideUnseen(SeveritySet unseen, std::string_view test, Severity level) const {
  if (!unseen.Reaches(level)) return Decision::kPasses;
  if (!leavesHistoricOut_) return Decision::kFails;
  const Severity gravestHistoric = GravestHistoric(test);
  for (const Severity severity : kSeverities) {
    if (severity >= level && severity > gravestHistoric && unseen.Has(severity)) return Decision::kFails;
  }
  return Decision::kUndecided;
}

}  // namespace tool
