#include "Run/ReportFile.h"

namespace tool {
namespace {

Destination DestinationOf(const Output& output) {
  return {.isTerminal = output.IsTerminal(), .columns = output.Columns().value_or(Destination().columns)};
}

}  // namespace

ReportFile::ReportFile(const ReportRequest& request, const Options& options)
    : output_(request.file), format_(MakeReportFormat(request.format, options, DestinationOf(output_))) {}

void ReportFile::Begin() {
  if (!format_->HeadNeedsTotals()) Write(format_->Head({}));
}

void ReportFile::Add(Spool& part) {
  if (part.Empty()) return;
  const auto write = [this](std::string_view text) { format_->HeadNeedsTotals() ? waiting_.Write(text) : Write(text); };
  if (lastWasBlock_) write(format_->Between(*lastWasBlock_, part.IsBlock()));
  lastWasBlock_ = part.IsBlock();
  part.CopyTo(write);
  output_.Flush();
}

void ReportFile::End(const Totals& totals) {
  if (format_->HeadNeedsTotals()) {
    Write(format_->Head(totals));
    waiting_.CopyTo([this](std::string_view text) { Write(text); });
  }
  Write(format_->End(totals));
  output_.Flush();
}

}  // namespace tool
