#pragma once

#include <chrono>
#include <string>

#include "Formats/ReportFormat.h"
#include "Formats/TextStyle.h"

namespace tool {

/// What the user wants to see in a report for people.
struct TextChoices {
  Detail detail;
  Severity show;                   ///< the mildest severity whose findings are shown
  std::optional<Severity> failOn;  ///< none: findings never fail the run
  bool fold;                       ///< whether findings of a rule are counted after the first few
  size_t width;                    ///< columns of a line
};

/// The report for people: a paragraph for each font in which something is to be shown, a line for each other file, and
/// a summary where there is more than one file.
class TextReport : public ReportFormat {
 public:
  TextReport(const Options& options, const Destination& destination);
  void WriteFile(const FileReport& report, const TextSink& sink) const override;
  std::string_view Between(bool isBlockBefore, bool isBlockAfter) const override;
  std::string End(const Totals& totals) const override;

 private:
  std::string Summary(const Totals& totals) const;

  TextChoices choices_;
  TextStyle style_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// Whether text is to be colored: as asked, or when it goes to a terminal that takes colors.
bool WantsColor(ColorMode mode, bool isTerminal);

}  // namespace tool
