#include "Report/Judge.h"

#include <Tova/Tova.hpp>
#include <algorithm>
#include <unordered_map>
#include <utility>

#include "Report/Rules.h"

namespace tool {
namespace {

/// The rule of the last message where a test has left messages out.
constexpr std::string_view kFurtherMessages = "run/further-messages";

/// Whether a message says that a test has left messages out; it is about the report, not about the font.
bool IsAboutRest(const Judgement& judgement) { return judgement.rule && judgement.rule->name == kFurtherMessages; }

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

/// The judging of one file: what the baseline has of it is used up finding by finding.
class Judge::OneFile {
 public:
  OneFile(const Judge& judge, FileReport& report) : judge_(judge), report_(report) {
    if (judge_.configuration_) report_.ignoresMet.resize(judge_.configuration_->ignores.size());
    const Baseline::Findings* findings = judge_.baseline_ ? judge_.baseline_->FindingsOf(report.path) : nullptr;
    for (size_t i = 0; findings && i < findings->size(); ++i) {
      const Baseline::Finding& finding = (*findings)[i];
      ++known_[finding.hash];
      ran_[finding.hash] =
          judge_.tests_.empty() ||
          std::ranges::find(judge_.tests_, judge_.baseline_->Test(finding.test)) != judge_.tests_.end();
    }
  }

  void Apply() {
    if (report_.listsFonts && report_.fonts.empty() && !report_.results.Empty()) {
      report_.isKnown = TakeKnown(Baseline::HashOfUnopened());
    }
    for (FontRecord& font : report_.fonts) {
      FindIgnores(font);
      for (TestRecord& test : font.tests) ApplyTo(font, test);
    }
    if (!judge_.seesMessages_) return;
    for (const auto& [hash, count] : known_) {
      if (ran_[hash]) report_.fixed += count;
    }
  }

 private:
  void FindIgnores(const FontRecord& font) {
    ignores_.clear();
    for (size_t i = 0; i < report_.ignoresMet.size(); ++i) {
      ignores_.push_back(judge_.configuration_->ignores[i].IsAbout(report_.path, font));
    }
  }

  void ApplyTo(const FontRecord& font, TestRecord& test) {
    RuleFinder rules(test.identifier);
    std::vector<Judgement> judgements;
    judgements.reserve(test.messages.size());
    for (size_t i = 0; i < test.messages.size(); ++i) {
      Judgement judgement = test.messages.JudgementAt(i);
      judgement.rule = rules.Find(test.messages.FormatAt(i));
      if (!judgement.rule && !test.ran) judgement.rule = FindRule(test.identifier, kFailureFormat);
      judgements.push_back(judgement);
    }
    test.messages.SetJudgements(judgements);
    if (!judge_.leavesHistoricOut_ && judge_.views_.empty() && !judge_.baseline_) return;
    for (size_t i = 0; i < judgements.size(); ++i) {
      const RuleView& view = judge_.ViewOf(judgements[i].rule);
      if (view.level) judgements[i].severity = *view.level;
      judgements[i].isKnown = judge_.baseline_ && TakeKnown(Baseline::HashOf(font, test, i));
      judgements[i].ignore = TakeIgnore(test.messages, i, view);
      judgements[i].standing = StandingOf(judgements[i], view);
    }
    // As many messages as in the baseline are left out: the same ones.
    const bool restIsKnown =
        !judgements.empty() && IsAboutRest(judgements.back()) && judgements.back().standing == Standing::kKnown;
    if (restIsKnown) test.unexplained = {};
    test.messages.SetJudgements(std::move(judgements));
  }

  /// The first ignore that is for the message, and counts it as met; null for none.
  const Ignore* TakeIgnore(const MessageList& messages, size_t index, const RuleView& view) {
    for (const size_t i : view.ignores) {
      const Ignore& ignore = judge_.configuration_->ignores[i];
      if (!ignores_[i] || !ignore.IsAboutGlyph(messages[index])) continue;
      ++report_.ignoresMet[i];
      return &ignore;
    }
    return nullptr;
  }

  Standing StandingOf(const Judgement& judgement, const RuleView& view) const {
    if (judgement.ignore) return Standing::kIgnored;
    const bool isHistoric = judgement.rule && judgement.rule->state == RuleState::kHistoric;
    if (judge_.leavesHistoricOut_ && isHistoric && !view.level) return Standing::kHistoric;
    return judgement.isKnown ? Standing::kKnown : Standing::kCounts;
  }

  /// Whether the baseline has the finding once more than it was met.
  bool TakeKnown(uint64_t hash) {
    const auto found = known_.find(hash);
    if (found == known_.end() || found->second == 0) return false;
    --found->second;
    return true;
  }

  const Judge& judge_;
  FileReport& report_;
  std::unordered_map<uint64_t, size_t> known_;  ///< findings of the baseline that were not met yet
  std::unordered_map<uint64_t, bool> ran_;      ///< whether their tests are among those of this run
  std::vector<bool> ignores_;                   ///< which of them are about the font
};

Judge::Judge(const Options& options, std::vector<std::string> tests)
    : leavesHistoricOut_(options.profile == Profile::kDefault),
      seesMessages_(options.detail == Detail::kFull),
      maxMessages_(options.maxMessages),
      tests_(std::move(tests)),
      configuration_(options.configuration) {
  if (options.baseline) baseline_ = std::make_shared<const Baseline>(*options.baseline);
  if (!configuration_) return;
  for (const Rule& rule : AllRules()) {
    RuleView& view = views_.emplace_back();
    size_t length = 0;  // of the glob, the longest of which is the most particular one
    for (const RuleLevel& level : configuration_->levels) {
      if (!MatchesGlob(level.rule, rule.name) || (view.level && level.rule != rule.name && level.rule.size() < length))
        continue;
      view.level = level.severity;
      length = level.rule == rule.name ? std::string::npos : level.rule.size();
    }
    if (view.level) gravestLevel_ = std::max(gravestLevel_, *view.level);
    for (size_t i = 0; i < configuration_->ignores.size(); ++i) {
      if (MatchesGlob(configuration_->ignores[i].rule, rule.name)) view.ignores.push_back(i);
    }
  }
}

const Judge::RuleView& Judge::ViewOf(const Rule* rule) const {
  static const RuleView kNone;
  return rule && !views_.empty() ? views_[static_cast<size_t>(rule - AllRules().data())] : kNone;
}

void Judge::Apply(FileReport& report) const { OneFile(*this, report).Apply(); }

Judge::Decision Judge::Decide(const FileReport& report, Severity level) const {
  if (!report.listsFonts) return DecideUnseen(report.results, {}, level);
  if (report.fonts.empty()) {
    return report.results.Reaches(level) && !report.isKnown ? Decision::kFails : Decision::kPasses;
  }
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
  if (baseline_) return tests;
  for (const FontRecord& font : report.fonts) {
    for (const TestRecord& test : font.tests) {
      if (Decide(test, level) == Decision::kUndecided) tests.push_back(test.identifier);
    }
  }
  return tests;
}

Judge::Decision Judge::Decide(const TestRecord& test, Severity level) const {
  bool isComplete = test.messages.size() > 0;
  for (size_t i = 0; i < test.messages.size(); ++i) {
    const Judgement judgement = test.messages.JudgementAt(i);
    if (IsAboutRest(judgement)) {
      isComplete = judgement.standing == Standing::kKnown;
    } else if (judgement.standing == Standing::kCounts && judgement.severity >= level) {
      return Decision::kFails;
    }
  }
  if (!isComplete) return DecideUnseen(test.results, test.identifier, level);
  return test.unexplained.Reaches(level) ? Decision::kFails : Decision::kPasses;
}

/// Of findings that nothing is known of but their severities.
Judge::Decision Judge::DecideUnseen(SeveritySet unseen, std::string_view test, Severity level) const {
  const bool mayBeRaised = !unseen.Empty() && gravestLevel_ >= level;
  if (!unseen.Reaches(level) && !mayBeRaised) return Decision::kPasses;
  if (configuration_ || baseline_) return Decision::kUndecided;
  if (!leavesHistoricOut_) return Decision::kFails;
  const Severity gravestHistoric = GravestHistoric(test);
  for (const Severity severity : kSeverities) {
    if (severity >= level && severity > gravestHistoric && unseen.Has(severity)) return Decision::kFails;
  }
  return Decision::kUndecided;
}

}  // namespace tool
