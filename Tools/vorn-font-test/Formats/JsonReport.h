#pragma once

#include "Formats/FileEntry.h"
#include "Formats/ReportFormat.h"

namespace tool {

/// A head that tells of the run, and {"path": ..., "report": ...} for each file under "files", one a line.
/// docs/report.schema.json describes it.
class JsonReport : public ReportFormat {
 public:
  explicit JsonReport(const Options& options) : options_(options), choices_(options) {}
  bool HeadNeedsTotals() const override { return true; }
  std::string Head(const Totals& totals) const override;
  void WriteFile(const FileReport& report, const TextSink& sink) const override;
  std::string_view Between(bool isBlockBefore, bool isBlockAfter) const override;
  std::string End(const Totals& totals) const override;

 private:
  Options options_;
  TreeChoices choices_;
};

/// {"path": ..., "report": ...} for each file, one a line, and for each path that could not be read: all that a run
/// came to can be told from the lines of its parts.
class JsonLinesReport : public ReportFormat {
 public:
  explicit JsonLinesReport(const Options& options) : choices_(options) {}
  bool ListsUnreadable() const override { return true; }
  void WriteFile(const FileReport& report, const TextSink& sink) const override;

 private:
  TreeChoices choices_;
};

}  // namespace tool
