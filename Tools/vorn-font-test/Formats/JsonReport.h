#pragma once

#include "Formats/ReportFormat.h"

namespace tool {

/// {"files": [{"path": ..., "report": ...}, ...]}, one file a line.
class JsonReport : public ReportFormat {
 public:
  std::string Head(const Totals& totals) const override;
  void WriteFile(const FileReport& report, const TextSink& sink) const override;
  std::string_view Between(bool isBlockBefore, bool isBlockAfter) const override;
  std::string End(const Totals& totals) const override;
};

/// {"path": ..., "report": ...} for each file, one a line, and for each path that could not be read: all that a run
/// came to can be told from the lines of its parts.
class JsonLinesReport : public ReportFormat {
 public:
  bool ListsUnreadable() const override { return true; }
  void WriteFile(const FileReport& report, const TextSink& sink) const override;
};

}  // namespace tool
