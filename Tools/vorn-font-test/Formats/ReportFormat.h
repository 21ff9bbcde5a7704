#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "Options.h"
#include "Report/EscapedText.h"
#include "Report/Report.h"
#include "Report/Totals.h"

namespace tool {

/// A format of reports. A report is a head, a part for each file, in the order of the files, and an end. Parts are
/// written one by one, perhaps in other processes, so that a format keeps nothing from one to the next.
///
/// To add one: derive from this class, name it in MakeReportFormat and give it a word in Options.cpp.
class ReportFormat {
 public:
  virtual ~ReportFormat() = default;

  /// Whether the head tells the totals. The parts of such a report are put by until all files are done.
  virtual bool HeadNeedsTotals() const { return false; }
  /// What stands before the first part. The totals are those of the run when HeadNeedsTotals, else empty.
  virtual std::string Head(const Totals&) const { return {}; }
  /// Whether paths that could not be read have parts, too. Where they have none, standard error alone names them.
  virtual bool ListsUnreadable() const { return false; }
  /// Writes the part of a file.
  virtual void WriteFile(const FileReport& report, const TextSink& sink) const = 0;
  /// What stands between two parts. A part is a block when it has more than one line.
  virtual std::string_view Between(bool /*isBlockBefore*/, bool /*isBlockAfter*/) const { return {}; }
  /// What stands after the last part.
  virtual std::string End(const Totals&) const { return {}; }
};

/// Where the text of a report goes, as far as a format may care.
struct Destination {
  bool isTerminal = false;
  size_t columns = 80;  ///< of a line
};

std::unique_ptr<ReportFormat> MakeReportFormat(Format format, const Options& options, const Destination& destination);

}  // namespace tool
