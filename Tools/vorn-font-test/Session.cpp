#include "Session.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

#include "ConduitForRun.h"
#include "EscapedText.h"
#include "Explanation.h"
#include "FileWalk.h"
#include "TestList.h"
#include "TestSelection.h"

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
  const bool anyoneReads = options.output || !options.quiet;
  return anyoneReads ? static_cast<int64_t>(options.maxMessages) : 1;
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

/// Opening the report's file empties it, so it must not be one of the files to be tested.
void RefuseToOverwriteInput(const Options& options) {
  struct stat output;
  if (!options.output || stat(options.output->c_str(), &output) != 0) return;
  for (const std::string& path : options.paths) {
    struct stat input;
    if (stat(path.c_str(), &input) == 0 && input.st_dev == output.st_dev && input.st_ino == output.st_ino) {
      throw UsageError("--output: '" + *options.output + "' is one of the files to test");
    }
  }
}

/// Passes what the libraries say beside their results on to standard error, with the file it is about, unless the user
/// wants quiet. For the length of a scope.
class LogLines {
 public:
  explicit LogLines(bool quiet) : quiet_(quiet) { TovaLogSetSink(&LogLines::Pass, this); }
  LogLines(const LogLines&) = delete;
  LogLines& operator=(const LogLines&) = delete;
  ~LogLines() { TovaLogSetSink(nullptr, nullptr); }

  void SetFile(const std::string& path) { path_ = path; }

 private:
  static void Pass(TovaStringRef line, void* context) {
    const auto& self = *static_cast<const LogLines*>(context);
    if (!self.quiet_) PrintError(self.path_ + ": " + std::string(Tova::Text(line)));
  }

  bool quiet_;
  std::string path_;
};

/// Tests one file after the other and remembers what the exit status is to say.
class Session {
 public:
  Session(const Options& options, const Tova::Array& tests, ReportWriter* writer)
      : failOn_(options.failOn),
        libraryOptions_(LibraryOptions(options, tests)),
        writer_(writer),
        logLines_(options.quiet) {
    if (AskAboutDuplicates(tests.get())) conduit_.Ensure();
  }

  void Test(const std::vector<std::string>& paths) {
    FileWalk walk({.found = [this](const std::string& path) { TestFile(path); },
                   .failed =
                       [this](const std::string& path, const std::string& reason) {
                         ++unreadable_;
                         PrintError(path + ": " + reason);
                       }});
    for (const std::string& path : paths) walk.Walk(path);
    if (files_ == 0 && unreadable_ == 0) PrintError("no font files found");
  }

  size_t Unreadable() const { return unreadable_; }
  int Status() const { return unreadable_ > 0 ? kUsageOrInput : found_ ? kSomethingFound : kNothingFound; }

 private:
  void TestFile(const std::string& path) {
    ++files_;
    logLines_.SetFile(path);
    const auto url = Tova::Adopt(TovaURLCreateWithFilePath(path.c_str()));
    const auto report = Tova::Adopt(VornFontTestCreateReport(url.get(), libraryOptions_.get()));
    conduit_.RequireAlive();
    if (!report) throw std::runtime_error(path + ": the library made no report");
    const SeveritySet results(Tova::AsArray(TovaDictionaryGetValue(report.get(), kVornFontTestResultKey)));
    found_ = found_ || (failOn_ && results.Reaches(*failOn_));
    if (writer_) writer_->AddFile(path, report.get());
  }

  std::optional<Severity> failOn_;
  Tova::Dictionary libraryOptions_;
  ReportWriter* writer_;  ///< null when no report is wanted
  ConduitForRun conduit_;
  LogLines logLines_;
  size_t files_ = 0;
  size_t unreadable_ = 0;
  bool found_ = false;
};

}  // namespace

int Run(const Options& options) {
  Tova::Array tests;
  if (options.answer.empty() && !options.explain) {
    tests = SelectTests(options);
    RefuseToOverwriteInput(options);
  }
  const auto output = options.output ? std::make_unique<Output>(*options.output) : std::make_unique<Output>();
  int status = kNothingFound;
  if (!options.answer.empty()) {
    output->Write(options.answer);
  } else if (options.explain) {
    WriteExplanation(*options.explain, options, *output);
  } else if (options.listTests) {
    WriteTestList(tests.get(), options, *output);
  } else {
    const bool wanted = options.output || !options.quiet;
    const auto writer = wanted ? MakeReportWriter(options, *output) : nullptr;
    Session session(options, tests, writer.get());
    if (writer) writer->Begin();
    session.Test(options.paths);
    if (writer) writer->End(session.Unreadable());
    status = session.Status();
  }
  output->Close();
  return status;
}

void PrintError(const std::string& text) {
  std::string_view rest;
  const std::string line = "vorn-font-test: " + EscapeForTerminal(text) + "\n";
  for (rest = line; !rest.empty();) {
    const ssize_t written = write(STDERR_FILENO, rest.data(), rest.size());
    if (written <= 0) return;
    rest.remove_prefix(static_cast<size_t>(written));
  }
}

}  // namespace tool
