#pragma once

#include <memory>
#include <optional>

#include "Formats/ReportFormat.h"
#include "Run/Output.h"
#include "Run/Spool.h"

namespace tool {

/// A report as it is written: a format and the place where its text goes. What goes wrong throws OutputError.
class ReportFile {
 public:
  ReportFile(const ReportRequest& request, const Options& options);

  const ReportFormat& GetFormat() const { return *format_; }

  /// Whether the report takes the place of that file.
  bool Replaces(const std::string& path) const { return output_.Replaces(path); }

  void Begin();
  /// The part of the next file.
  void Add(Spool& part);
  /// What is left to be written.
  void End(const Totals& totals);
  /// Puts the report in its place. To be called last, when all reports are whole.
  void Close() { output_.Close(); }

 private:
  void Write(std::string_view text) { output_.Write(text); }

  Output output_;
  std::unique_ptr<ReportFormat> format_;
  Spool waiting_;                     ///< parts that stand behind a head that tells the totals
  std::optional<bool> lastWasBlock_;  ///< none before the first part
};

}  // namespace tool
