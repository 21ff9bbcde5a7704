#pragma once

#include "Formats/Findings.h"
#include "Formats/ReportFormat.h"

namespace tool {

/// XML in the form that build servers read the results of unit tests in: a suite for each font, a case for each test
/// that ran over it. A case fails on findings that fail the run; milder ones that are to be shown are its output.
class JUnitReport : public ReportFormat {
 public:
  explicit JUnitReport(const Options& options) : choice_(options), failOn_(options.failOn) {}
  std::string Head(const Totals& totals) const override;
  bool ListsUnreadable() const override { return true; }
  void WriteFile(const FileReport& report, const TextSink& sink) const override;
  std::string End(const Totals& totals) const override;

 private:
  static bool Counts(const Message& message) { return message.standing == Standing::kCounts; }
  bool Fails(const Message& message) const;
  /// Whether a finding that does not fail its case is part of its output.
  bool IsOutput(const Message& message) const { return !Fails(message) && choice_.Shows(message); }
  std::string FontSuite(const std::string& path, const FontRecord& font) const;
  /// The suite of a file about whose fonts nothing is told.
  std::string FileSuite(const FileReport& report) const;

  FindingChoice choice_;
  std::optional<Severity> failOn_;
};

}  // namespace tool
