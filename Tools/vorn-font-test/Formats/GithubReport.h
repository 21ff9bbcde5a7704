#pragma once

#include "Formats/Findings.h"
#include "Formats/ReportFormat.h"

namespace tool {

/// Workflow commands that annotate the files of a GitHub build: one a line for each rule of a font that something to be
/// shown breaks, with the first messages, as a build shows few annotations.
class GithubReport : public ReportFormat {
 public:
  explicit GithubReport(const Options& options) : choice_(options) {}
  bool ListsUnreadable() const override { return true; }
  void WriteFile(const FileReport& report, const TextSink& sink) const override;

 private:
  FindingChoice choice_;
};

}  // namespace tool
