#include "Run/FileTester.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
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

/// Whether messages are read, and not only the severities found.
bool WantsMessages(const Options& options) { return !options.reports.empty() || options.baseline; }

/// How many messages of a test are kept. Where nobody reads them, one: with none at all, a test would stop at its first
/// finding, and might miss a graver one that decides the exit status. Compared with a baseline, what a report leaves
/// out has to be what it left out then.
int64_t MessageLimit(const Options& options) {
  return WantsMessages(options) ? static_cast<int64_t>(options.maxMessages) : 1;
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
  TovaDictionarySetValue(result.get(), kVornFontTestMessageDetailsOptionKey, Tova::Boolean(WantsMessages(options)));
  const bool untranslated = options.language == kNoLanguage || options.reports.empty();
  TovaDictionarySetValue(result.get(), kVornFontTestUntranslatedOptionKey, Tova::Boolean(untranslated));
  const auto limit = Tova::Adopt(TovaNumberCreateWithInteger(MessageLimit(options)));
  TovaDictionarySetValue(result.get(), kVornFontTestMessageLimitOptionKey, limit.get());
  return result;
}

std::vector<std::string> IdentifiersOf(TovaArrayRef tests) {
  std::vector<std::string> identifiers;
  for (TovaIndex i = 0; i < TovaArrayGetCount(tests); ++i) {
    const TovaDictionaryRef test = Tova::AsDictionary(TovaArrayGetValueAtIndex(tests, i));
    identifiers.emplace_back(Tova::Text(Tova::AsString(TovaDictionaryGetValue(test, kVornFontTestIdentifierKey))));
  }
  return identifiers;
}

/// Why a file cannot be read as a whole; none when it can. The library takes such a file for a broken font.
Problem ProblemOfReading(const char* path) {
  const int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
  int error = descriptor < 0 ? errno : 0;
  struct stat status;
  if (error == 0 && fstat(descriptor, &status) != 0) error = errno;
  if (error == 0 && status.st_size > 0) {
    const auto size = static_cast<size_t>(status.st_size);
    void* const address = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
    if (address == MAP_FAILED) error = errno;
    if (error == 0) munmap(address, size);
  }
  if (descriptor >= 0) close(descriptor);
  return error == 0 ? Problem() : ProblemOfError(error);
}

/// Hands what the libraries say beside their results on, with the file it is about. For the length of a scope.
class LogLines {
 public:
  LogLines(const std::string& path, OutcomeSink& sink) : path_(path), sink_(sink) {
    TovaLogSetSink(&LogLines::Pass, this);
  }
  LogLines(const LogLines&) = delete;
  LogLines& operator=(const LogLines&) = delete;
  ~LogLines() { TovaLogSetSink(nullptr, nullptr); }

 private:
  static void Pass(TovaStringRef line, void* context) {
    const auto& self = *static_cast<const LogLines*>(context);
    self.sink_.WriteLine(self.path_ + ": " + std::string(Tova::Text(line)));
  }

  const std::string& path_;
  OutcomeSink& sink_;
};

/// Leaves the messages out, so that what is judged are the severities.
void ForgetMessages(FileReport& report) {
  for (FontRecord& font : report.fonts) {
    for (TestRecord& test : font.tests) {
      test.messages = MessageList();
      test.unexplained = test.results;
    }
  }
}

/// What is not wanted of a file's lines.
void Drop(TovaStringRef, void*) {}

}  // namespace

FileTester::FileTester(const Options& options, const Tova::Array& tests, std::vector<const ReportFormat*> formats)
    : failOn_(options.failOn),
      quiet_(options.quiet),
      wantsMessages_(WantsMessages(options)),
      judge_(options, IdentifiersOf(tests.get())),
      libraryOptions_(LibraryOptions(options, tests)),
      formats_(std::move(formats)) {}

void FileTester::Test(const std::string& path, OutcomeSink& sink) const {
  const auto url = Tova::Adopt(TovaURLCreateWithFilePath(path.c_str()));
  if (const Problem problem = ProblemOfReading(TovaURLGetFileSystemPath(url.get()))) return sink.Fail(problem);
  std::optional<LogLines> lines;
  quiet_ ? TovaLogSetSink(&Drop, nullptr) : static_cast<void>(lines.emplace(path, sink));
  const auto tree = Tova::Adopt(VornFontTestCreateReport(url.get(), libraryOptions_.get()));
  if (!tree) return sink.Fail({ProblemKind::kSystem, "the library made no report"});
  FileReport report = ReadReport(path, tree.get());
  if (!wantsMessages_) ForgetMessages(report);
  if (report.listsFonts && report.fonts.empty() && !report.results.Empty()) report.unopened = WhyUnopened(path);
  judge_.Apply(report);
  report.fails = Fails(report, url.get());
  Report(report, sink);
}

void FileTester::ReportAgain(FileReport report, OutcomeSink& sink) const {
  judge_.Apply(report);
  report.fails = failOn_ && judge_.Decide(report, *failOn_) != Judge::Decision::kPasses;
  Report(report, sink);
}

void FileTester::ReportProblem(const std::string& path, FileOutcome& outcome) const {
  const auto tree = EmptyTree();
  FileReport report = ReadReport(path, tree.get());
  report.problem = outcome.problem;
  Report(report, outcome);
}

void FileTester::Report(const FileReport& report, OutcomeSink& sink) const {
  for (size_t i = 0; i < formats_.size(); ++i) {
    if (report.problem.IsOfInput() && !formats_[i]->ListsUnreadable()) continue;
    formats_[i]->WriteFile(report, [&](std::string_view text) { sink.WritePart(i, text); });
  }
  sink.End(TotalsOf(report));
}

bool FileTester::Fails(const FileReport& report, TovaURLRef url) const {
  if (!failOn_) return false;
  const Judge::Decision decision = judge_.Decide(report, *failOn_);
  if (decision != Judge::Decision::kUndecided) return decision == Judge::Decision::kFails;
  const Tova::Dictionary options = OptionsForAllMessages(judge_.OpenTests(report, *failOn_));
  TovaLogSetSink(&Drop, nullptr);  // what there is to say has been said
  const auto tree = Tova::Adopt(VornFontTestCreateReport(url, options.get()));
  FileReport complete = ReadReport(report.path, tree.get());
  judge_.Apply(complete);
  return !tree || judge_.Decide(complete, *failOn_) != Judge::Decision::kPasses;
}

/// The tests: those to run; none: all of the run.
Tova::Dictionary FileTester::OptionsForAllMessages(const std::vector<std::string_view>& tests) const {
  auto options = Tova::Adopt(TovaDictionaryCreateMutableCopy(libraryOptions_.get()));
  TovaDictionarySetValue(options.get(), kVornFontTestCreateReportTypeKey, kVornFontTestReportTypeFull);
  TovaDictionarySetValue(options.get(), kVornFontTestMessageDetailsOptionKey, kTovaBooleanTrue);
  const auto limit = Tova::Adopt(TovaNumberCreateWithInteger(static_cast<int64_t>(judge_.MessagesToDecide())));
  TovaDictionarySetValue(options.get(), kVornFontTestMessageLimitOptionKey, limit.get());
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
