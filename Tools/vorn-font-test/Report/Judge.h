#pragma once

#include <string_view>
#include <vector>

#include "Options.h"
#include "Report/Report.h"

namespace tool {

/// Says of each finding which rule it breaks, how grave that is and whether it counts, by the profile. Keeps nothing
/// from one file to the next.
class Judge {
 public:
  explicit Judge(const Options& options);

  /// Judges the messages of a report.
  void Apply(FileReport& report) const;

  enum class Decision {
    kPasses,    ///< nothing that counts reaches the level
    kFails,     ///< something does
    kUndecided  ///< messages that are not there decide
  };
  /// Whether the findings of the report fail a run at the level. Where messages were left out, or none were asked for,
  /// only the tests' severities tell of them, and those may be of findings that do not count.
  Decision Decide(const FileReport& report, Severity level) const;
  /// The identifiers of the tests that leave this open.
  std::vector<std::string_view> OpenTests(const FileReport& report, Severity level) const;

 private:
  Standing StandingOf(const Rule* rule) const;
  void ApplyTo(TestRecord& test) const;
  Decision Decide(const TestRecord& test, Severity level) const;
  Decision DecideUnseen(SeveritySet unseen, std::string_view test, Severity level) const;

  bool leavesHistoricOut_;
};

}  // namespace tool
