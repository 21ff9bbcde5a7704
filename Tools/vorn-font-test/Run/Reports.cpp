#include "Run/Reports.h"

#include "Report/Configuration.h"
#include "Run/Progress.h"
#include "Run/Session.h"

namespace tool {
namespace {

/// Prints lines, each as one about a problem.
void PrintLines(Spool& lines) {
  std::string line;
  lines.CopyTo([&line](std::string_view text) {
    line += text;
    size_t begin = 0;
    for (size_t end; (end = line.find('\n', begin)) != std::string::npos; begin = end + 1) {
      PrintError(line.substr(begin, end - begin));
    }
    line.erase(0, begin);
  });
}

}  // namespace

Reports::Reports(const Options& options) : configuration_(options.quiet ? nullptr : options.configuration) {
  for (const ReportRequest& request : options.reports) {
    files_.push_back(std::make_unique<ReportFile>(request, options));
  }
}

std::vector<const ReportFormat*> Reports::Formats() const {
  std::vector<const ReportFormat*> formats;
  for (const auto& file : files_) formats.push_back(&file->GetFormat());
  return formats;
}

void Reports::RefuseToReplace(const std::string& path) const {
  for (const auto& file : files_) {
    if (file->Replaces(path)) throw UsageError("--output: '" + path + "' is one of the files to test");
  }
}

void Reports::Begin() {
  for (const auto& file : files_) file->Begin();
}

void Reports::Add(const std::string& path, FileOutcome& outcome) {
  Progress::Hide();
  PrintLines(outcome.lines);
  if (outcome.problem) PrintError(path + ": " + outcome.problem.text);
  totals_ += outcome.totals;
  for (size_t i = 0; i < files_.size(); ++i) {
    const bool isListed = !outcome.problem.IsOfInput() || files_[i]->GetFormat().ListsUnreadable();
    if (isListed) files_[i]->Add(outcome.parts[i]);
  }
}

/// Names the ignores of the configuration that met nothing, after which it may be tidied.
void Reports::NameUnmetIgnores() const {
  for (size_t i = 0; configuration_ && i < configuration_->ignores.size(); ++i) {
    const Ignore& ignore = configuration_->ignores[i];
    const bool isMet = i < totals_.ignoresMet.size() && totals_.ignoresMet[i] > 0;
    if (!isMet) PrintError(ignore.place + ": nothing was found to ignore: " + ignore.rule + " in " + ignore.font);
  }
}

void Reports::End() {
  NameUnmetIgnores();
  for (const auto& file : files_) file->End(totals_);
}

}  // namespace tool
