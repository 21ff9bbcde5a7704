#pragma once

#include "Formats/FileEntry.h"
#include "Formats/ReportFormat.h"

namespace tool {

/// An XML property list: a dictionary whose "files" are an array of dictionaries of "path" and "report".
class PropertyListReport : public ReportFormat {
 public:
  explicit PropertyListReport(const Options& options) : choices_(options) {}
  std::string Head(const Totals& totals) const override;
  void WriteFile(const FileReport& report, const TextSink& sink) const override;
  std::string End(const Totals& totals) const override;

 private:
  TreeChoices choices_;
};

/// Writes a value as an XML property list.
void WritePropertyList(TovaTypeRef value, const TextSink& sink);

}  // namespace tool
