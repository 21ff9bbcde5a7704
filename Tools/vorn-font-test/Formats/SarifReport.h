#pragma once

#include "Formats/Findings.h"
#include "Formats/ReportFormat.h"

namespace tool {

/// A log of the Static Analysis Results Interchange Format (SARIF) 2.1.0 with one run: all findings, one a line, and
/// all rules, so that the index of a rule does not depend on what was found. It has no artifacts: files without a
/// finding are counted only.
class SarifReport : public ReportFormat {
 public:
  explicit SarifReport(const Options& options) : detail_(options.detail), hasBaseline_(options.baseline.has_value()) {}
  std::string Head(const Totals& totals) const override;
  bool ListsUnreadable() const override { return true; }
  void WriteFile(const FileReport& report, const TextSink& sink) const override;
  std::string_view Between(bool isBlockBefore, bool isBlockAfter) const override;
  std::string End(const Totals& totals) const override;

 private:
  Detail detail_;
  bool hasBaseline_;
};

}  // namespace tool
