#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Run/Outcome.h"
#include "Run/ReportFile.h"

namespace tool {

/// The reports of a run, written side by side.
class Reports {
 public:
  explicit Reports(const Options& options);

  std::vector<const ReportFormat*> Formats() const;
  size_t Count() const { return files_.size(); }
  /// Throws UsageError when a report would take the place of a file that is to be read.
  void RefuseToReplace(const std::string& path) const;

  void Begin();
  /// What the next file came to; names its problem, and what was said about it, on standard error.
  void Add(const std::string& path, FileOutcome& outcome);
  void End();

  /// What the files came to so far.
  const Totals& GetTotals() const { return totals_; }

 private:
  void NameUnmetIgnores() const;

  std::shared_ptr<const Configuration> configuration_;  ///< null for none whose ignores are to be looked at
  std::vector<std::unique_ptr<ReportFile>> files_;
  Totals totals_;
};

}  // namespace tool
