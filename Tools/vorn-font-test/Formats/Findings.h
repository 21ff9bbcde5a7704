#pragma once

#include <functional>
#include <span>
#include <vector>

#include "Options.h"
#include "Report/Report.h"
#include "Report/Rules.h"

namespace tool {

/// The levels of build systems.
enum class Alert { kNotice, kWarning, kError };

Alert AlertOf(Severity severity);

/// What the user wants to see of findings.
struct FindingChoice {
  explicit FindingChoice(const Options& options);

  bool Shows(const Message& message) const { return message.severity >= show && message.standing == Standing::kCounts; }

  Severity show;  ///< the mildest severity shown
  bool fold;      ///< whether findings that repeat the rule of others are counted only
  Detail detail;  ///< of the library's report
};

/// The text of a finding of which only the severity is known.
inline constexpr std::string_view kNoText = "(no further text)";

/// The findings of a file about whose fonts nothing is told: why it was not tested, or one for each of its severities.
/// There are none of a file with fonts.
std::vector<Message> FindingsOfFile(const FileReport& report, Detail detail);

/// Calls take for each finding of a test: each message, and each severity of the results that no message explains.
void ForEachFinding(const TestRecord& test, const std::function<void(const Message&)>& take);

/// Findings of one severity and one standing that break one rule.
struct RuleFindings {
  Severity severity = Severity::kNonFont;
  Standing standing = Standing::kCounts;
  const Rule* rule = nullptr;  ///< null when it is not in the catalogue
  std::string_view name;       ///< of the rule, else the format of its messages
  std::string_view test;       ///< the identifier of the test; empty when no test ran
  std::vector<Message> shown;  ///< the first ones
  size_t count = 0;            ///< of all

  size_t LeftOut() const { return count - shown.size(); }
};

using FindingFilter = std::function<bool(const Message&)>;

/// The findings that filter lets through, by rule, the gravest first, then as they were found.
std::vector<RuleFindings> GroupFindings(std::span<const TestRecord> tests, bool fold, const FindingFilter& filter);
/// Those of FindingsOfFile.
std::vector<RuleFindings> GroupFindingsOfFile(const FileReport& report, Detail detail, const FindingFilter& filter);

}  // namespace tool
