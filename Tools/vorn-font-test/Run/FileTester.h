#pragma once

#include <Tova/Tova.hpp>
#include <string>
#include <vector>

#include "Formats/ReportFormat.h"
#include "Report/Judge.h"
#include "Run/Outcome.h"

namespace tool {

/// Tests one file after the other and writes their parts of the reports. Keeps nothing from one file to the next.
class FileTester {
 public:
  /// The formats must outlive it.
  FileTester(const Options& options, const Tova::Array& tests, std::vector<const ReportFormat*> formats);

  void Test(const std::string& path, OutcomeSink& sink) const;
  /// Writes the parts of a report that the judge has seen, and what the file adds to the totals.
  void Report(const FileReport& report, OutcomeSink& sink) const;
  /// The same of a report that was made before.
  void ReportAgain(FileReport report, OutcomeSink& sink) const;
  /// Writes the parts of a file that was not tested into its outcome, which says why.
  void ReportProblem(const std::string& path, FileOutcome& outcome) const;

 private:
  /// Whether what was found fails the run. Tests whose findings leave that open run again, for all their messages.
  bool Fails(const FileReport& report, TovaURLRef url) const;
  Tova::Dictionary OptionsForAllMessages(const std::vector<std::string_view>& tests) const;

  std::optional<Severity> failOn_;
  bool quiet_;
  bool wantsMessages_;
  Judge judge_;
  Tova::Dictionary libraryOptions_;
  std::vector<const ReportFormat*> formats_;
};

}  // namespace tool
