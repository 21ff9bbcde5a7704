#pragma once

#include "Formats/Findings.h"
#include "Formats/ReportFormat.h"

namespace tool {

/// A summary in Markdown with tables, such as for a pull request: the totals, then a table with a line for each file,
/// how many findings it has, and what is to be shown of them folded away by rule.
class MarkdownReport : public ReportFormat {
 public:
  explicit MarkdownReport(const Options& options) : choice_(options), failOn_(options.failOn) {}
  bool HeadNeedsTotals() const override { return true; }
  std::string Head(const Totals& totals) const override;
  bool ListsUnreadable() const override { return true; }
  void WriteFile(const FileReport& report, const TextSink& sink) const override;

 private:
  FindingChoice choice_;
  std::optional<Severity> failOn_;
};

}  // namespace tool
