#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Options.h"
#include "Report/Baseline.h"
#include "Report/Configuration.h"
#include "Report/Report.h"

namespace tool {

/// Says of each finding which rule it breaks, how grave that is and whether it counts: by the profile, the
/// configuration and the baseline. Keeps nothing from one file to the next.
class Judge {
 public:
  /// tests: the identifiers of those that run; empty: those that the reports tell of. Throws UsageError when the
  /// baseline cannot be read.
  Judge(const Options& options, std::vector<std::string> tests);

  /// Judges the messages of a report, and counts what the configuration and the baseline met.
  void Apply(FileReport& report) const;

  enum class Decision {
    kPasses,    ///< nothing that counts reaches the level
    kFails,     ///< something does
    kUndecided  ///< messages that are not there decide
  };
  /// Whether the findings of the report fail a run at the level. Where messages were left out, or none were asked for,
  /// only the tests' severities tell of them, and those may be of findings that do not count.
  Decision Decide(const FileReport& report, Severity level) const;
  /// The identifiers of the tests that are to run again to decide; none: all. With a baseline, all: what a report
  /// leaves out depends on all of its tests.
  std::vector<std::string_view> OpenTests(const FileReport& report, Severity level) const;
  /// How many messages of a test are to be asked for to decide; 0: all.
  uint64_t MessagesToDecide() const { return baseline_ ? maxMessages_ : 0; }

 private:
  class OneFile;

  /// What the configuration says of a rule.
  struct RuleView {
    std::optional<Severity> level;
    std::vector<size_t> ignores = {};  ///< indexes of those that it is for
  };

  const RuleView& ViewOf(const Rule* rule) const;
  Decision Decide(const TestRecord& test, Severity level) const;
  Decision DecideUnseen(SeveritySet unseen, std::string_view test, Severity level) const;

  bool leavesHistoricOut_;
  bool seesMessages_;  ///< whether reports have them; without, nothing is known to be fixed
  uint64_t maxMessages_;
  std::vector<std::string> tests_;
  std::shared_ptr<const Configuration> configuration_;  ///< null for none
  std::shared_ptr<const Baseline> baseline_;            ///< null for none
  std::vector<RuleView> views_;                         ///< in the order of AllRules; empty without a configuration
  Severity gravestLevel_ = Severity::kNonFont;          ///< that the configuration gives a rule
};

}  // namespace tool
