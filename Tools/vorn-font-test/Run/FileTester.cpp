#include "Run/FileTester.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "Report/FileKind.h"

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
    : failOn_(options.failOn),
      judge_(options),
      libraryOptions_(LibraryOptions(options, tests)),
      formats_(std::move(formats)) {}

FileOutcome FileTester::Test(const std::string& path) const {
  const Tova::Dictionary tree = MakeTree(path, libraryOptions_);
  FileReport report = ReadReport(path, tree.get());
  judge_.Apply(report);
  report.fails = Fails(report);
  if (report.listsFonts && report.fonts.empty() && !report.results.Empty()) report.problem = KindInWords(path);
  FileOutcome outcome{.parts = std::vector<Spool>(formats_.size()), .totals = TotalsOf(report)};
  for (size_t i = 0; i < formats_.size(); ++i) {
    formats_[i]->WriteFile(report, [&](std::string_view text) { outcome.parts[i].Write(text); });
  }
  return outcome;
}

Tova::Dictionary FileTester::MakeTree(const std::string& path, const Tova::Dictionary& libraryOptions) const {
  const auto url = Tova::Adopt(TovaURLCreateWithFilePath(path.c_str()));
  auto tree = Tova::Adopt(VornFontTestCreateReport(url.get(), libraryOptions.get()));
  if (!tree) throw std::runtime_error(path + ": the library made no report");
  return tree;
}

bool FileTester::Fails(const FileReport& report) const {
  if (!failOn_) return false;
  const Judge::Decision decision = judge_.Decide(report, *failOn_);
  if (decision != Judge::Decision::kUndecided) return decision == Judge::Decision::kFails;
  const Tova::Dictionary tree = MakeTree(report.path, OptionsForAllMessages(judge_.OpenTests(report, *failOn_)));
  FileReport complete = ReadReport(report.path, tree.get());
  judge_.Apply(complete);
  return judge_.Decide(complete, *failOn_) != Judge::Decision::kPasses;
}

/// The tests: those to run; none: all of the run.
Tova::Dictionary FileTester::OptionsForAllMessages(const std::vector<std::string_view>& tests) const {
  auto options = Tova::Adopt(TovaDictionaryCreateMutableCopy(libraryOptions_.get()));
  TovaDictionarySetValue(options.get(), kVornFontTestCreateReportTypeKey, kVornFontTestReportTypeFull);
  const auto noLimit = Tova::Adopt(TovaNumberCreateWithInteger(0));
  TovaDictionarySetValue(options.get(), kVornFontTestMessageLimitOptionKey, noLimit.get());
  if (tests.empty()) return options;
  const TovaArrayRef all = Tova::AsArray(TovaDictionaryGetValue(options.get(), kVornFontTestArrayKey));
  const auto wanted = Tova::Adopt(TovaArrayCreateMutable());
  for (TovaIndex i = 0; i < TovaArrayGetCount(all); ++i) {
    const TovaDictionaryRef test = Tova::AsDictionary(TovaArrayGetValueAtIndex(all, i));
    const auto identifier = Tova::Text(Tova::AsString(TovaDictionaryGetValue(test, kVornFontTestIdentifierKey)));
    if (std::ranges::find(tests, identifier) != tests.end()) TovaArrayAppendValue(wanted.get(), test);
  }
  TovaDictionarySetValue(options.get(), kVornFontTestArrayKey, wanted.get());
  return options;
}

}  // namespace tool
