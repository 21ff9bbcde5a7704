#pragma once

#include "Formats/ReportFormat.h"

namespace tool {

/// A page for people: one file that loads nothing, with filters, the findings folded by rule and the glyphs that they
/// name drawn. html/report.js makes the view from the data of the parts; without JavaScript, each part holds a plain
/// list.
class HtmlReport : public ReportFormat {
 public:
  explicit HtmlReport(const Options& options);

  bool HeadNeedsTotals() const override { return true; }
  std::string Head(const Totals& totals) const override;
  void WriteFile(const FileReport& report, const TextSink& sink) const override;
  std::string End(const Totals& totals) const override;

 private:
  std::optional<Severity> failOn_;
  Detail detail_;
};

}  // namespace tool
