#pragma once

#include "ReportWriter.h"

namespace tool {

/// An XML property list: a dictionary whose "files" are an array of dictionaries of "path" and "report". Written as
/// each file ends, so that memory holds the text of one file at a time.
class PropertyListReport : public ReportWriter {
 public:
  explicit PropertyListReport(Output& output) : output_(output) {}
  void Begin() override;
  void AddFile(const std::string& path, TovaDictionaryRef report) override;
  void End(size_t unreadable) override;

 private:
  Output& output_;
};

/// Writes a value as an XML property list.
void WritePropertyList(TovaTypeRef value, Output& output);

}  // namespace tool
