#include "Formats/Findings.h"

#include <algorithm>

namespace tool {
namespace {

/// How many messages of one rule are shown before the rest of them is counted.
constexpr size_t kMessagesBeforeFolding = 3;

/// How many of so many messages are shown. A single one too many stays: a count would take as much room.
constexpr size_t MessagesShown(size_t count) {
  return count <= kMessagesBeforeFolding + 1 ? count : kMessagesBeforeFolding;
}

class Grouping {
 public:
  explicit Grouping(bool fold) : fold_(fold) {}

  void Add(const Message& message, std::string_view test) {
    const std::string_view name = message.rule ? message.rule->name : message.format;
    auto group = std::ranges::find_if(groups_, [&](const RuleFindings& other) {
      return other.severity == message.severity && other.standing == message.standing && other.rule == message.rule &&
             other.name == name;
    });
    if (group == groups_.end()) {
      groups_.push_back({.severity = message.severity,
                         .standing = message.standing,
                         .rule = message.rule,
                         .name = name,
                         .test = test,
                         .shown = {}});
      group = groups_.end() - 1;
    }
    ++group->count;
    if (!fold_ || group->count == MessagesShown(group->count)) group->shown.push_back(message);
  }

  std::vector<RuleFindings> Finish() {
    for (RuleFindings& group : groups_) {
      if (fold_) group.shown.resize(std::min(group.shown.size(), MessagesShown(group.count)));
    }
    std::ranges::stable_sort(groups_, std::ranges::greater(), &RuleFindings::severity);
    return std::move(groups_);
  }

 private:
  bool fold_;
  std::vector<RuleFindings> groups_;
};

}  // namespace

Alert AlertOf(Severity severity) {
  return severity >= Severity::kMajor       ? Alert::kError
         : severity >= Severity::kTechnical ? Alert::kWarning
                                            : Alert::kNotice;
}

FindingChoice::FindingChoice(const Options& options)
    : show(options.show == Severity::kInformation ? Severity::kNonFont : options.show),
      fold(!options.allMessages),
      detail(options.detail) {}

std::vector<Message> FindingsOfFile(const FileReport& report, Detail detail) {
  std::vector<Message> findings;
  if (report.problem) {
    findings.push_back(
        {.severity = Severity::kFatal, .text = report.problem.text, .rule = FindRuleNamed("run/failure")});
  }
  if (report.problem || !report.fonts.empty()) return findings;
  for (const Severity severity : kGravestFirst) {
    if (!report.results.Has(severity)) continue;
    const bool unopened = severity == Severity::kFatal && detail != Detail::kResults;
    findings.push_back({.severity = severity,
                        .text = report.unopened.empty() ? kNoText : report.unopened,
                        .rule = unopened ? FindRuleNamed("run/failure") : nullptr,
                        .standing = report.isKnown ? Standing::kKnown : Standing::kCounts,
                        .isKnown = report.isKnown});
  }
  return findings;
}

void ForEachFinding(const TestRecord& test, const std::function<void(const Message&)>& take) {
  for (size_t i = 0; i < test.messages.size(); ++i) take(test.messages[i]);
  for (const Severity severity : kGravestFirst) {
    if (test.unexplained.Has(severity)) take({.severity = severity, .text = kNoText});
  }
}

std::vector<RuleFindings> GroupFindings(std::span<const TestRecord> tests, bool fold, const FindingFilter& filter) {
  Grouping grouping(fold);
  for (const TestRecord& test : tests) {
    ForEachFinding(test, [&](const Message& message) {
      if (filter(message)) grouping.Add(message, test.identifier);
    });
  }
  return grouping.Finish();
}

std::vector<RuleFindings> GroupFindingsOfFile(const FileReport& report, Detail detail, const FindingFilter& filter) {
  Grouping grouping(true);
  for (const Message& finding : FindingsOfFile(report, detail)) {
    if (filter(finding)) grouping.Add(finding, {});
  }
  return grouping.Finish();
}

}  // namespace tool
