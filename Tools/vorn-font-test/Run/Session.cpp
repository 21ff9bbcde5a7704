#include "Run/Session.h"

#include <sys/stat.h>
#include <unistd.h>

#include <memory>

#include "Formats/Explanation.h"
#include "Formats/TestList.h"
#include "Report/EscapedText.h"
#include "Run/ConduitForRun.h"
#include "Run/FileTester.h"
#include "Run/FileWalk.h"
#include "Run/ReportFile.h"
#include "Run/TestSelection.h"

namespace tool {
namespace {

/// Opening a report's file empties it, so it must not be one of the files to be tested.
void RefuseToOverwriteInput(const Options& options) {
  for (const ReportRequest& request : options.reports) {
    struct stat output;
    if (!request.file || stat(request.file->c_str(), &output) != 0) continue;
    for (const std::string& path : options.paths) {
      struct stat input;
      if (stat(path.c_str(), &input) == 0 && input.st_dev == output.st_dev && input.st_ino == output.st_ino) {
        throw UsageError("--output: '" + *request.file + "' is one of the files to test");
      }
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

std::vector<std::unique_ptr<ReportFile>> OpenReports(const Options& options) {
  std::vector<std::unique_ptr<ReportFile>> reports;
  for (const ReportRequest& request : options.reports) {
    reports.push_back(std::make_unique<ReportFile>(request, options));
  }
  return reports;
}

std::vector<const ReportFormat*> FormatsOf(const std::vector<std::unique_ptr<ReportFile>>& reports) {
  std::vector<const ReportFormat*> formats;
  for (const auto& report : reports) formats.push_back(&report->GetFormat());
  return formats;
}

/// Tests one file after the other, writes the reports and remembers what the exit status is to say.
class Session {
 public:
  Session(const Options& options, const Tova::Array& tests)
      : reports_(OpenReports(options)), tester_(options, tests, FormatsOf(reports_)), logLines_(options.quiet) {
    if (AskAboutDuplicates(tests.get())) conduit_.Ensure();
  }

  void Test(const std::vector<std::string>& paths) {
    for (const auto& report : reports_) report->Begin();
    FileWalk walk({.found = [this](const std::string& path) { TestFile(path); },
                   .failed =
                       [this](const std::string& path, const std::string& reason) {
                         ++totals_.unreadable;
                         PrintError(path + ": " + reason);
                       }});
    for (const std::string& path : paths) walk.Walk(path);
    if (totals_.files == 0 && totals_.unreadable == 0) PrintError("no font files found");
    for (const auto& report : reports_) report->End(totals_);
  }

  int Status() const {
    return totals_.unreadable > 0 ? kUsageOrInput : totals_.Reached() ? kSomethingFound : kNothingFound;
  }

 private:
  void TestFile(const std::string& path) {
    logLines_.SetFile(path);
    FileOutcome outcome = tester_.Test(path);
    conduit_.RequireAlive();
    totals_ += outcome.totals;
    for (size_t i = 0; i < reports_.size(); ++i) reports_[i]->Add(outcome.parts[i]);
  }

  std::vector<std::unique_ptr<ReportFile>> reports_;
  FileTester tester_;
  ConduitForRun conduit_;
  LogLines logLines_;
  Totals totals_;
};

/// Where an answer goes that is no report: the first file asked for, or standard output.
std::optional<std::string> AnswerFile(const Options& options) {
  return options.reports.empty() ? std::nullopt : options.reports.front().file;
}

}  // namespace

int Run(const Options& options) {
  if (!options.answer.empty()) {
    Output output(std::nullopt);
    output.Write(options.answer);
    output.Close();
    return kNothingFound;
  }
  if (options.explain) {
    Output output(AnswerFile(options));
    WriteExplanation(*options.explain, options, output);
    output.Close();
    return kNothingFound;
  }
  const Tova::Array tests = SelectTests(options);
  RefuseToOverwriteInput(options);
  if (options.listTests) {
    Output output(AnswerFile(options));
    WriteTestList(tests.get(), options, output);
    output.Close();
    return kNothingFound;
  }
  Session session(options, tests);
  session.Test(options.paths);
  return session.Status();
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
