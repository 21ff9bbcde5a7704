#include "Run/Merge.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Formats/FileEntry.h"
#include "Report/JsonReader.h"
#include "Run/FileList.h"
#include "Run/FileTester.h"
#include "Run/Reports.h"
#include "Run/Session.h"
#include "Run/Signals.h"

namespace tool {
namespace {

/// Stands in a report for bytes of a path that are no UTF-8. Paths that have it may be those of different files, so
/// such lines are the same only when all of their text is.
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

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

/// A line to make a part of the report of.
struct Choice {
  /// The better ones have the greater values.
  enum class Worth : uint8_t { kNone, kCut, kProblem, kTested };

  size_t part;
  size_t number;
  Worth worth;
  std::string path;  ///< of a line that was cut

  auto Position() const { return std::pair(part, number); }
};

/// Finds the lines that tell of the files, each once, and those that tell of none.
class Survey {
 public:
  void Add(const Line& line) {
    const ReportLineSurvey survey = SurveyReportLine(line.text);
    Choice choice{line.part, line.number, WorthOf(survey), {}};
    if (choice.worth == Choice::Worth::kNone) return none_.push_back(choice);
    const bool isNamed = choice.worth == Choice::Worth::kCut || survey.path.find(kReplacement) == std::string::npos;
    const auto [found, isNew] = files_.try_emplace(isNamed ? survey.path : line.text, choice);
    if (!isNew && found->second.worth < choice.worth) found->second = choice;
  }

  /// In the order of the parts and their lines. To be called last.
  std::vector<Choice> TakeChoices() {
    std::vector<Choice> choices = std::move(none_);
    for (auto& [path, choice] : files_) {
      if (choice.worth == Choice::Worth::kCut) choice.path = path;
      choices.push_back(std::move(choice));
    }
    files_.clear();
    std::ranges::sort(choices, {}, &Choice::Position);
    return choices;
  }

 private:
  static Choice::Worth WorthOf(const ReportLineSurvey& survey) {
    if (survey.path.empty()) return Choice::Worth::kNone;
    if (!survey.isWhole) return Choice::Worth::kCut;
    return survey.hasProblem ? Choice::Worth::kProblem : Choice::Worth::kTested;
  }

  std::unordered_map<std::string, Choice> files_;  ///< by path, or line
  std::vector<Choice> none_;
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
    Survey survey;
    ForEachLine(parts_, [&survey](const Line& line) { survey.Add(line); });
    const std::vector<Choice> choices = survey.TakeChoices();
    auto choice = choices.begin();
    reports_.Begin();
    ForEachLine(parts_, [&](const Line& line) {
      if (choice == choices.end() || choice->Position() != std::pair(line.part, line.number)) return;
      Add(line, *choice++);
    });
    reports_.End();
    return StatusOf(reports_.GetTotals());
  }

 private:
  void Add(const Line& line, const Choice& choice) {
    if (choice.worth == Choice::Worth::kCut) {
      return AddProblem(choice.path, {ProblemKind::kSystem, "its report was cut short"});
    }
    const Tova::Dictionary entry = choice.worth == Choice::Worth::kNone ? Tova::Dictionary() : ReadJsonLine(line.text);
    if (!entry) {
      const std::string place = parts_[line.part] + ":" + std::to_string(line.number + 1);
      return AddProblem(place, {ProblemKind::kUnreadable, "this line is no report of a file"});
    }
    const FileReport report = ReadFileEntry(entry.get());
    FileOutcome outcome(reports_.Count());
    outcome.problem = report.problem;
    tester_.ReportAgain(report, outcome);
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
