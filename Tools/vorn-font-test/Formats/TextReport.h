#pragma once

#include <chrono>
#include <string>

#include "Formats/ReportFormat.h"
#include "Formats/TextStyle.h"

namespace tool {

/// The report for people: a paragraph for each font in which something is to be shown, a line for each other one, and
/// a summary.
class TextReport : public ReportFormat {
 public:
  /// What the user wants to see.
  struct Choices {
    Detail detail;
    Severity show;  ///< the mildest severity shown
    bool fold;      ///< whether findings that repeat the rule of others are counted only
  };

  TextReport(const Options& options, const Destination& destination);
  void WriteFile(const FileReport& report, const TextSink& sink) const override;
  std::string_view Between(bool isBlockBefore, bool isBlockAfter) const override;
  std::string End(const Totals& totals) const override;

 private:
  std::string Findings(const SeverityCounts& counts) const;

  Choices choices_;
  TextStyle style_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// Whether text is to be colored: as asked, or when it goes to a terminal that takes colors.
bool WantsColor(ColorMode mode, bool isTerminal);

}  // namespace tool
