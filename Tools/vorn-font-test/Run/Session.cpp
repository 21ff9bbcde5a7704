#include "Run/Session.h"

#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <thread>

#include "Formats/Explanation.h"
#include "Formats/TestList.h"
#include "Report/EscapedText.h"
#include "Run/ConduitForRun.h"
#include "Run/FileTester.h"
#include "Run/FileWalk.h"
#include "Run/ReportFile.h"
#include "Run/Signals.h"
#include "Run/TestSelection.h"
#include "Run/WorkerPool.h"

namespace tool {
namespace {

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

/// Where files may be read before any of them is found.
ReadablePlaces PlacesOf(const std::vector<std::string>& paths) {
  constexpr size_t kMaximumRoots = 1024;  // files elsewhere are seen to when they come up
  ReadablePlaces places;
  places.AddResources();
  for (size_t i = 0; i < std::min(paths.size(), kMaximumRoots); ++i) places.AddRoot(paths[i]);
  return places;
}

/// Tests the files behind paths, in this process or in workers, writes the reports in the order of the files and
/// remembers what the exit status is to say.
class Session {
 public:
  Session(const Options& options, const Tova::Array& tests, TestHook hook)
      : reports_(OpenReports(options)), tester_(options, tests, FormatsOf(reports_)), hook_(std::move(hook)) {
    const bool askConduit = AskAboutDuplicates(tests.get());
    if (askConduit) conduit_.Ensure();
    if (options.jobs == 0) return;
    const PoolSettings settings = {.workers = options.jobs,
                                   .reports = reports_.size(),
                                   .timeout = std::chrono::seconds(options.timeout),
                                   .memory = options.memory << 20,
                                   .askConduit = askConduit};
    pool_.emplace(
        settings,
        WorkerPool::Events{.test = [this](const std::string& path, OutcomeSink& sink) { TestFile(path, sink); },
                           .done = [this](const std::string& path, FileOutcome& outcome) { HandOn(path, outcome); },
                           .tick = nullptr},
        PlacesOf(options.paths));
  }

  void Test(const std::vector<std::string>& paths) {
    for (const auto& report : reports_) report->Begin();
    FileWalk walk({.found = [this](const std::string& path) { Found(path); },
                   .failed = [this](const std::string& path, const Problem& problem) { Failed(path, problem); },
                   .looked = [this] { pool_ ? pool_->Poll() : ThrowIfInterrupted(); }});
    for (const std::string& path : paths) walk.Walk(path);
    if (pool_) pool_->Finish();
    for (const auto& report : reports_) report->End(totals_);
  }

  /// The exit status.
  int Status() const {
    if (totals_.failed > 0) return kProgramFailed;
    if (totals_.unreadable > 0) return kUsageOrInput;
    return totals_.reached ? kSomethingFound : kNothingFound;
  }

  const Totals& GetTotals() const { return totals_; }

 private:
  void Found(const std::string& path) {
    for (const auto& report : reports_) {
      if (report->Replaces(path)) throw UsageError("--output: '" + path + "' is one of the files to test");
    }
    if (pool_) return pool_->Add(path);
    ThrowIfInterrupted();
    FileOutcome outcome(reports_.size());
    TestFile(path, outcome);
    HandOn(path, outcome);
  }

  void Failed(const std::string& path, const Problem& problem) {
    FileOutcome outcome(reports_.size());
    outcome.Fail(problem);
    pool_ ? pool_->AddDone(path, std::move(outcome)) : HandOn(path, outcome);
  }

  /// Called in a worker, when there are any.
  void TestFile(const std::string& path, OutcomeSink& sink) const {
    if (hook_) hook_(path);
    tester_.Test(path, sink);
  }

  void HandOn(const std::string& path, FileOutcome& outcome) {
    conduit_.RequireAlive();
    PrintLines(outcome.lines);
    if (outcome.problem) {
      PrintError(path + ": " + outcome.problem.text);
      tester_.ReportProblem(path, outcome);
    }
    totals_ += outcome.totals;
    for (size_t i = 0; i < reports_.size(); ++i) {
      const bool isListed = !outcome.problem.IsOfInput() || reports_[i]->GetFormat().ListsUnreadable();
      if (isListed) reports_[i]->Add(outcome.parts[i]);
    }
  }

  /// Prints lines, each as one about a problem.
  static void PrintLines(Spool& lines) {
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

  std::vector<std::unique_ptr<ReportFile>> reports_;
  FileTester tester_;
  TestHook hook_;
  ConduitForRun conduit_;
  Totals totals_;
  std::optional<WorkerPool> pool_;
};

/// Where an answer goes that is no report: the first file asked for, or standard output.
std::optional<std::string> AnswerFile(const Options& options) {
  return options.reports.empty() ? std::nullopt : options.reports.front().file;
}

int Interrupt(const Totals& totals, int signal) {
  PrintError("interrupted: " + std::to_string(totals.files) + " files done, with " +
             std::to_string(totals.findings.Total()) + " findings");
  return kEndedBySignal + signal;
}

}  // namespace

int Run(const Options& options, TestHook hook) {
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
  if (options.listTests) {
    Output output(AnswerFile(options));
    WriteTestList(tests.get(), options, output);
    output.Close();
    return kNothingFound;
  }
  Session session(options, tests, std::move(hook));
  try {
    session.Test(options.paths);
  } catch (const Interrupted& interrupted) {
    return Interrupt(session.GetTotals(), interrupted.signal);
  }
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
