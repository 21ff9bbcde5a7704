#pragma once

#include "ReportWriter.h"

namespace tool {

/// An XML property list: a dictionary whose "files" are an array of dictionaries of "path" and "report". It is held in
/// memory until the run ends.
class PropertyListReport : public ReportWriter {
 public:
  explicit PropertyListReport(Output& output) : output_(output), files_(Tova::Adopt(TovaArrayCreateMutable())) {}
  void AddFile(const std::string& path, TovaDictionaryRef report) override;
  void End(size_t unreadable) override;

 private:
  Output& output_;
  Tova::MutableArray files_;
};

/// Writes a value as an XML property list.
void WritePropertyList(TovaTypeRef value, Output& output);

}  // namespace tool
