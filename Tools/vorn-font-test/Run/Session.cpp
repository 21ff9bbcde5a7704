#include "Run/Session.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "Formats/Explanation.h"
#include "Formats/TestList.h"
#include "Formats/TextStyle.h"
#include "Report/EscapedText.h"
#include "Run/ConduitForRun.h"
#include "Run/FileList.h"
#include "Run/FileTester.h"
#include "Run/FileWalk.h"
#include "Run/Merge.h"
#include "Run/OnlyFile.h"
#include "Run/Progress.h"
#include "Run/Reports.h"
#include "Run/Sanitized.h"
#include "Run/Signals.h"
#include "Run/TestSelection.h"
#include "Run/WorkerPool.h"

namespace tool {
namespace {

/// Where files may be read before any of them is found.
ReadablePlaces PlacesOf(const std::vector<std::string>& paths) {
  constexpr size_t kMaximumRoots = 1024;  // files elsewhere are seen to when they come up
  ReadablePlaces places;
  places.AddResources();
  for (size_t i = 0; i < std::min(paths.size(), kMaximumRoots); ++i) places.AddRoot(paths[i]);
  return places;
}

/// Walks all paths that the options name.
void WalkAll(FileWalk& walk, const Options& options, const std::function<void(int descriptor)>& wait) {
  for (const std::string& path : options.paths) walk.Walk(path);
  if (!options.filesFrom) return;
  FileList list(*options.filesFrom, options.nullSeparated ? '\0' : '\n');
  while (const auto path = list.Next(wait)) walk.Walk(*path);
}

/// How many files there are to test. Called in a process of its own; standard input is not for it.
uint64_t CountFiles(const Options& options) {
  uint64_t count = 0;
  FileWalk walk({.found = [&count](const std::string&) { ++count; },
                 .failed = [&count](const std::string&, const Problem&) { ++count; },
                 .looked = [] {}});
  WalkAll(walk, options, [](int) {});
  return count;
}

/// Counts the files; null where reading the list would take it from this process.
std::function<uint64_t()> CounterFor(const Options& options) {
  if (options.filesFrom && !std::filesystem::is_regular_file(*options.filesFrom)) return nullptr;
  return [&options] { return CountFiles(options); };
}

/// Whether all that is wanted is the exit status over a single file, which this process may test unless told how many
/// others are to.
bool IsOnlyFile(const Options& options) {
  struct stat status;
  return !kSanitized && !options.jobs && options.reports.empty() && !options.filesFrom && options.paths.size() == 1 &&
         stat(options.paths.front().c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

std::string InterruptedLine(const Totals& totals) {
  return ErrorLine("interrupted: " + Counted(totals.files, "file") + " done, with " +
                   Counted(totals.findings.Total(), "finding"));
}

void WriteErrorLine(std::string_view line) {
  Progress::Hide();
  while (!line.empty()) {
    const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
    if (written <= 0) return;
    line.remove_prefix(static_cast<size_t>(written));
  }
}

/// What EndAtOnce says.
std::string gInterruptedLine;

/// Ends the program while this process tests a file. Called by the handler of a signal.
void EndAtOnce(int signal) {
  WriteErrorLine(gInterruptedLine);
  Output::RemoveTemporaries();
  std::_Exit(kEndedBySignal + signal);
}

/// Tests the files behind paths, in this process or in workers, and writes the reports in the order of the files.
class Session {
 public:
  Session(const Options& options, const Tova::Array& tests, TestHook hook)
      : options_(options),
        reports_(options),
        tester_(options, tests, reports_.Formats()),
        hook_(std::move(hook)),
        progress_(options.progress && !options.quiet, CounterFor(options)) {
    const bool askConduit = AskAboutDuplicates(tests.get());
    if (askConduit) conduit_.Ensure();
    isWorker_ = !askConduit && IsOnlyFile(options);
    if (options.jobs != 0u && !isWorker_) StartPool(askConduit);
  }

  void Test() {
    for (const std::string& path : options_.paths) reports_.RefuseToReplace(path);
    reports_.Begin();
    FileWalk walk({.found = [this](const std::string& path) { Found(path); },
                   .failed = [this](const std::string& path, const Problem& problem) { Failed(path, problem); },
                   .looked = [this] { pool_ ? pool_->Poll() : ThrowIfInterrupted(); }});
    WalkAll(walk, options_,
            [this](int descriptor) { pool_ ? pool_->WaitForInput(descriptor) : WaitToRead(descriptor); });
    isWalked_ = true;
    if (pool_) pool_->Finish();
    Progress::Hide();
    if (found_ == 0) PrintError("no font files given");
    reports_.End();
  }

  const Totals& GetTotals() const { return reports_.GetTotals(); }
  /// The exit status.
  int Status() const { return found_ == 0 ? kUsageOrInput : StatusOf(GetTotals()); }

 private:
  void StartPool(bool askConduit) {
    const PoolSettings settings = {.workers = options_.jobs.value_or(std::max(1u, std::thread::hardware_concurrency())),
                                   .reports = reports_.Count(),
                                   .timeout = std::chrono::seconds(options_.timeout),
                                   .memory = options_.memory << 20,
                                   .askConduit = askConduit};
    WorkerPool::Events events = {
        .test = [this](const std::string& path, OutcomeSink& sink) { TestFile(path, sink); },
        .done = [this](const std::string& path, FileOutcome& outcome) { HandOn(path, outcome); },
        .tick = nullptr};
    if (progress_.IsWanted()) events.tick = [this](const std::string& path) { ShowProgress(path); };
    pool_.emplace(settings, std::move(events), PlacesOf(options_.paths));
  }

  void Confine(const std::string& path) const {
    const ReadablePlaces places = PlacesOf({path});
    BecomeWorker(path,
                 {.memory = options_.memory << 20,
                  .askConduit = false,
                  .writeErrors = true,
                  .filterCalls = false,
                  .places = &places},
                 options_.timeout);
  }

  void Found(const std::string& path) {
    ++found_;
    reports_.RefuseToReplace(path);
    if (pool_) return pool_->Add(path);
    ThrowIfInterrupted();
    ShowProgress(path);
    if (isWorker_) Confine(path);
    gInterruptedLine = InterruptedLine(GetTotals());
    FileOutcome outcome = TestHere(path);
    HandOn(path, outcome);
  }

  FileOutcome TestHere(const std::string& path) const {
    FileOutcome outcome(reports_.Count());
    const EndsOnSignal endsOnSignal(EndAtOnce);
    try {
      TestFile(path, outcome);
    } catch (const OutputError&) {  // the reports are at an end, not only this file's
      throw;
    } catch (const std::exception& error) {
      outcome.Fail({ProblemKind::kSystem, error.what()});
    }
    return outcome;
  }

  void Failed(const std::string& path, const Problem& problem) {
    ++found_;
    FileOutcome outcome(reports_.Count());
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
    if (outcome.problem) tester_.ReportProblem(path, outcome);
    reports_.Add(path, outcome);
    ++done_;
  }

  void ShowProgress(const std::string& path) {
    progress_.Show(done_ + (pool_ ? pool_->CountDone() : 0), isWalked_ ? std::optional(found_) : std::nullopt, path);
  }

  const Options& options_;
  Reports reports_;
  FileTester tester_;
  TestHook hook_;
  Progress progress_;
  ConduitForRun conduit_;
  uint64_t found_ = 0;  ///< files and other paths, and
  uint64_t done_ = 0;   ///< how many of them are in the reports
  bool isWalked_ = false;
  bool isWorker_ = false;  ///< this process does by itself what a worker does
  std::optional<WorkerPool> pool_;
};

/// Where an answer goes that is no report: the first file asked for, or standard output.
std::optional<std::string> AnswerFile(const Options& options) {
  return options.reports.empty() ? std::nullopt : options.reports.front().file;
}

/// Says what was done when the signal came, and returns the exit status.
int EndInterrupted(const Totals& totals, int signal) {
  WriteErrorLine(InterruptedLine(totals));
  return kEndedBySignal + signal;
}

}  // namespace

int StatusOf(const Totals& totals) {
  if (totals.failed > 0) return kProgramFailed;
  if (totals.unreadable > 0) return kUsageOrInput;
  return totals.reached ? kSomethingFound : kNothingFound;
}

int Run(const Options& options, TestHook hook) {
  // The libraries look at the environment when they look up the first text.
  if (!options.language.empty() && options.language != kNoLanguage) setenv("LC_ALL", options.language.c_str(), 1);
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
  if (options.merge) return MergeParts(options);
  const Tova::Array tests = SelectTests(options);
  if (options.listTests) {
    Output output(AnswerFile(options));
    WriteTestList(tests.get(), options, output);
    output.Close();
    return kNothingFound;
  }
  Session session(options, tests, std::move(hook));
  try {
    session.Test();
  } catch (const Interrupted& interrupted) {
    return EndInterrupted(session.GetTotals(), interrupted.signal);
  }
  return session.Status();
}

std::string ErrorLine(const std::string& text) { return "vorn-font-test: " + EscapeForTerminal(text) + "\n"; }

void PrintError(const std::string& text) { WriteErrorLine(ErrorLine(text)); }

}  // namespace tool
