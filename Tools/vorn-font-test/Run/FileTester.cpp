#include "Run/FileTester.h"

#include <stdexcept>
#include <utility>

namespace tool {
namespace {

TovaStringRef ReportType(Detail detail) {
  switch (detail) {
    case Detail::kResults:
      return kVornFontTestReportTypeResultsOnly;
    case Detail::kSummary:
      return kVornFontTestReportTypeSummary;
    case Detail::kFull:
      break;
  }
  return kVornFontTestReportTypeFull;
}

/// How many messages of a test are kept. Where nobody reads them, one: with none at all, a test would stop at its first
/// finding, and might miss a graver one that decides the exit status.
int64_t MessageLimit(const Options& options) {
  return options.reports.empty() ? 1 : static_cast<int64_t>(options.maxMessages);
}

Tova::Dictionary LibraryOptions(const Options& options, const Tova::Array& tests) {
  auto severities = Tova::Adopt(TovaArrayCreateMutable());
  for (Severity severity : kSeverities) {
    if (severity >= options.enable) TovaArrayAppendValue(severities.get(), Constant(severity));
  }
  auto result = Tova::Adopt(TovaDictionaryCreateMutable());
  TovaDictionarySetValue(result.get(), kVornFontTestArrayKey, tests.get());
  TovaDictionarySetValue(result.get(), kVornFontTestSeverityKey, severities.get());
  TovaDictionarySetValue(result.get(), kVornFontTestCreateReportTypeKey, ReportType(options.detail));
  TovaDictionarySetValue(result.get(), kVornFontTestSkipDuplicateFontTestOptionKey, Tova::Boolean(!options.duplicates));
  TovaDictionarySetValue(result.get(), kVornFontTestMessageDetailsOptionKey, kTovaBooleanTrue);
  const auto limit = Tova::Adopt(TovaNumberCreateWithInteger(MessageLimit(options)));
  TovaDictionarySetValue(result.get(), kVornFontTestMessageLimitOptionKey, limit.get());
  return result;
}

}  // namespace

FileTester::FileTester(const Options& options, const Tova::Array& tests, std::vector<const ReportFormat*> formats)
    : failOn_(options.failOn), libraryOptions_(LibraryOptions(options, tests)), formats_(std::move(formats)) {}

FileOutcome FileTester::Test(const std::string& path) const {
  const auto url = Tova::Adopt(TovaURLCreateWithFilePath(path.c_str()));
  const auto tree = Tova::Adopt(VornFontTestCreateReport(url.get(), libraryOptions_.get()));
  if (!tree) throw std::runtime_error(path + ": the library made no report");
  const FileReport report = ReadReport(path, tree.get());
  FileOutcome outcome{.parts = std::vector<Spool>(formats_.size()), .totals = TotalsOf(report)};
  outcome.totals.reached = failOn_ && report.results.Reaches(*failOn_);
  for (size_t i = 0; i < formats_.size(); ++i) {
    formats_[i]->WriteFile(report, [&](std::string_view text) { outcome.parts[i].Write(text); });
  }
  return outcome;
}

}  // namespace tool
