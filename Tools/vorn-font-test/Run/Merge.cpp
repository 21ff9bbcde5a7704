#include "Run/Merge.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <unordered_map>

#include "Formats/FileEntry.h"
#include "Report/JsonReader.h"
#include "Run/FileList.h"
#include "Run/FileTester.h"
#include "Run/Reports.h"
#include "Run/Session.h"
#include "Run/Signals.h"

namespace tool {
namespace {

/// A line of a part.
struct Line {
  size_t part;    ///< its number
  size_t number;  ///< of the line in it
  const std::string& text;
};

/// Reads the parts from the first line to the last.
void ForEachLine(const std::vector<std::string>& parts, const std::function<void(const Line&)>& action) {
  for (size_t part = 0; part < parts.size(); ++part) {
    std::ifstream file(parts[part], std::ios::binary);
    std::string text;
    for (size_t number = 0; std::getline(file, text); ++number) {
      ThrowIfInterrupted();
      action({part, number, text});
    }
    if (file.bad() || !file.eof()) throw UsageError("--merge: " + parts[part] + ": " + std::strerror(errno));
  }
}

/// The parts that the options name. They are read twice, so they must be files.
std::vector<std::string> PartsOf(const Options& options) {
  std::vector<std::string> parts = options.paths;
  if (options.filesFrom) {
    FileList list(*options.filesFrom, options.nullSeparated ? '\0' : '\n');
    while (const auto path = list.Next([](int) {})) parts.push_back(*path);
  }
  for (const std::string& part : parts) {
    std::error_code error;
    const auto type = std::filesystem::status(part, error).type();
    if (error) throw UsageError("--merge: " + part + ": " + error.message());
    if (type != std::filesystem::file_type::regular) throw UsageError("--merge: " + part + ": Not a regular file");
  }
  return parts;
}

/// Which line tells of each file.
class Choices {
 public:
  explicit Choices(const std::vector<std::string>& parts) {
    ForEachLine(parts, [this](const Line& line) { Consider(line, SurveyReportLine(line.text)); });
  }

  /// Whether the line, which tells of this file, is the one to take.
  bool IsChosen(const Line& line, const std::string& path) const {
    const auto choice = chosen_.find(path);
    return choice != chosen_.end() && choice->second.part == line.part && choice->second.number == line.number;
  }

 private:
  /// The better ones have the greater values.
  enum class Worth { kCut, kProblem, kTested };
  struct Choice {
    size_t part;
    size_t number;
    Worth worth;
  };

  void Consider(const Line& line, const ReportLineSurvey& survey) {
    if (survey.path.empty()) return;
    const Worth worth = !survey.isWhole ? Worth::kCut : survey.hasProblem ? Worth::kProblem : Worth::kTested;
    const auto [choice, isNew] = chosen_.try_emplace(survey.path, Choice{line.part, line.number, worth});
    if (!isNew && choice->second.worth < worth) choice->second = {line.part, line.number, worth};
  }

  std::unordered_map<std::string, Choice> chosen_;
};

/// Makes reports of the lines that were chosen.
class Merger {
 public:
  explicit Merger(const Options& options)
      : parts_(PartsOf(options)),
        reports_(options),
        tester_(options, Tova::Adopt(TovaArrayCreateMutable()), reports_.Formats()) {
    for (const std::string& part : parts_) reports_.RefuseToReplace(part);
  }

  int Merge() {
    const Choices choices(parts_);
    reports_.Begin();
    ForEachLine(parts_, [&](const Line& line) {
      const ReportLineSurvey survey = SurveyReportLine(line.text);
      if (survey.path.empty()) {
        AddProblem(PlaceOf(line), {ProblemKind::kUnreadable, "this line is no report of a file"});
      } else if (choices.IsChosen(line, survey.path)) {
        survey.isWhole ? Add(line) : AddProblem(survey.path, {ProblemKind::kSystem, "its report was cut short"});
      }
    });
    reports_.End();
    return StatusOf(reports_.GetTotals());
  }

 private:
  std::string PlaceOf(const Line& line) const { return parts_[line.part] + ":" + std::to_string(line.number + 1); }

  void Add(const Line& line) {
    const Tova::Dictionary entry = ReadJsonLine(line.text);
    if (!entry) return AddProblem(PlaceOf(line), {ProblemKind::kUnreadable, "this line is no report of a file"});
    const FileReport report = ReadFileEntry(entry.get());
    FileOutcome outcome(reports_.Count());
    outcome.problem = report.problem;
    tester_.Report(report, outcome);
    reports_.Add(report.path, outcome);
  }

  void AddProblem(const std::string& path, const Problem& problem) {
    FileOutcome outcome(reports_.Count());
    outcome.Fail(problem);
    tester_.ReportProblem(path, outcome);
    reports_.Add(path, outcome);
  }

  std::vector<std::string> parts_;
  Reports reports_;
  FileTester tester_;
};

}  // namespace

int MergeParts(const Options& options) { return Merger(options).Merge(); }

}  // namespace tool
