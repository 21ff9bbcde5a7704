#pragma once

#include "ReportWriter.h"

namespace tool {

/// {"files": [{"path": ..., "report": ...}, ...]}, one file a line, written as each file ends.
class JsonReport : public ReportWriter {
 public:
  explicit JsonReport(Output& output) : output_(output) {}
  void Begin() override;
  void AddFile(const std::string& path, TovaDictionaryRef report) override;
  void End(size_t unreadable) override;

 private:
  Output& output_;
  bool first_ = true;
};

/// {"path": ..., "report": ...} for each file, one a line, flushed as each file ends.
class JsonLinesReport : public ReportWriter {
 public:
  explicit JsonLinesReport(Output& output) : output_(output) {}
  void AddFile(const std::string& path, TovaDictionaryRef report) override;
  void End(size_t) override {}

 private:
  Output& output_;
};

}  // namespace tool
