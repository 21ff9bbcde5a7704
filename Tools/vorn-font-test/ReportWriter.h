#pragma once

#include <Tova/Tova.hpp>
#include <memory>
#include <string>
#include <string_view>

#include "Options.h"
#include "Output.h"

namespace tool {

/// Writes the reports of a run in one of the formats.
class ReportWriter {
 public:
  virtual ~ReportWriter() = default;
  virtual void Begin() {}
  /// The report of a file, called as each file ends.
  virtual void AddFile(const std::string& path, TovaDictionaryRef report) = 0;
  /// Finishes the report; unreadable is the number of paths that could not be read.
  virtual void End(size_t unreadable) = 0;
};

/// A writer for the format that the options name. The output must outlive it.
std::unique_ptr<ReportWriter> MakeReportWriter(const Options& options, Output& output);

/// {"path": ..., "report": ...}; bytes of the path that are not UTF-8 become U+FFFD.
Tova::Dictionary FileEntry(const std::string& path, TovaDictionaryRef report);
/// A dictionary with one entry.
Tova::Dictionary SingleEntry(std::string_view key, TovaTypeRef value);

}  // namespace tool
