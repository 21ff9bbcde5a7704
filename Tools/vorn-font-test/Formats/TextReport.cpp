#include "Formats/TextReport.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "Formats/MessageFolding.h"
#include "Report/EscapedText.h"

namespace tool {
namespace {

constexpr std::string_view kNoText = "(no further text)";

/// The lowest level to show that shows this severity too: what is not about the font has no level of its own.
Severity LevelShowing(Severity severity) { return std::max(severity, Severity::kInformation); }

/// Writes the part of one file.
class FileText {
 public:
  FileText(const TextReport::Choices& choices, const TextStyle& style, const TextSink& sink)
      : detail_(choices.detail), show_(choices.show), fold_(choices.fold), style_(style), sink_(sink) {}

  void Write(const FileReport& report);

 private:
  void AddFont(const std::string& path, const FontRecord& font);
  void AddSeverities(const std::string& heading, SeveritySet results);
  void WriteTest(const TestRecord& test, const SeverityCounts& counts);
  void WriteMessages(const MessageList& messages, Severity severity);
  void WriteMessage(const Message& message, size_t leftOut);
  std::string Remark(const SeverityCounts& counts) const;
  enum class Block { kNone, kLine, kParagraph };
  void BeginBlock(Block block, const std::string& line);
  std::string SeverityList(SeveritySet severities) const;

  Detail detail_;
  Severity show_;
  bool fold_;
  const TextStyle& style_;
  const TextSink& sink_;
  Block last_ = Block::kNone;  ///< what was written last
};

void FileText::Write(const FileReport& report) {
  const std::string heading = style_.Bold(EscapeForTerminal(report.path));
  if (report.problem) {
    BeginBlock(Block::kLine, heading + ": " + style_.Of(Severity::kFatal, "not tested") + ", " +
                                 EscapeForTerminal(report.problem.text));
  } else if (detail_ == Detail::kResults) {
    AddSeverities(heading, report.results);
  } else if (report.fonts.empty() && report.results.Has(Severity::kFatal)) {
    BeginBlock(Block::kParagraph, heading);
    WriteMessage({Severity::kFatal, "The file cannot be opened as a font."}, 0);
  } else if (report.fonts.empty()) {
    BeginBlock(Block::kLine, heading + ": no fonts in it");
  } else {
    for (const FontRecord& font : report.fonts) AddFont(heading, font);
  }
}

void FileText::AddFont(const std::string& path, const FontRecord& font) {
  std::string heading = path + ": " + EscapeForTerminal(font.name);
  if (!font.postScriptName.empty()) heading += " (" + EscapeForTerminal(font.postScriptName) + ")";
  heading += ", " + EscapeForTerminal(font.type);
  SeverityCounts all;
  std::vector<SeverityCounts> counts;
  for (const TestRecord& test : font.tests) {
    counts.push_back(CountFindings(test));
    all += counts.back();
  }
  if (all.Total() == all.Below(show_)) return BeginBlock(Block::kLine, heading + Remark(all));
  BeginBlock(Block::kParagraph, heading);
  for (size_t i = 0; i < counts.size(); ++i) {
    if (counts[i].Total() > counts[i].Below(show_)) WriteTest(font.tests[i], counts[i]);
  }
}

/// What is to be shown of a test, the gravest first.
void FileText::WriteTest(const TestRecord& test, const SeverityCounts& counts) {
  std::string name = EscapeForTerminal(test.name.empty() ? test.identifier : test.name);
  if (name.empty()) name = "The font could not be tested";
  sink_("  " + name);
  if (!test.name.empty() && test.name != test.identifier) sink_("  " + style_.Dim(EscapeForTerminal(test.identifier)));
  if (detail_ == Detail::kSummary) return sink_(": " + SeverityList(test.results) + "\n");

  sink_("\n");
  for (Severity severity : kGravestFirst) {
    if (severity >= show_ && counts[severity] > 0) WriteMessages(test.messages, severity);
  }
}

/// The messages of a severity, or a line without text when it has none.
void FileText::WriteMessages(const MessageList& messages, Severity severity) {
  MessageFolding folding;
  for (size_t i = 0; fold_ && i < messages.size(); ++i) {
    const Message message = messages[i];
    if (message.severity == severity) folding.Count(message.format);
  }
  bool any = false;
  for (size_t i = 0; i < messages.size(); ++i) {
    const Message message = messages[i];
    if (message.severity != severity) continue;
    any = true;
    const auto decision = fold_ ? folding.Decide(message.format) : MessageFolding::Decision{.show = true};
    if (decision.show) WriteMessage(message, decision.leftOut);
  }
  if (!any) WriteMessage({severity, kNoText}, 0);
}

void FileText::WriteMessage(const Message& message, size_t leftOut) {
  const size_t width = Word(show_ >= Severity::kMinor ? Severity::kMajor : LevelShowing(show_)).size();
  const std::string_view word = Word(message.severity);
  const std::string indent(4, ' ');
  sink_(indent + style_.Of(message.severity, word));
  sink_(std::string((word.size() < width ? width - word.size() : 0) + 2, ' '));
  sink_(EscapeForTerminal(message.text));
  sink_("\n");
  if (leftOut == 0) return;
  sink_(indent + std::string(width + 2, ' '));
  sink_(style_.Dim("... and " + Grouped(leftOut) + " more like this") + "\n");
}

void FileText::AddSeverities(const std::string& heading, SeveritySet results) {
  SeverityCounts counts;
  for (Severity severity : kSeverities) counts[severity] = results.Has(severity);
  BeginBlock(Block::kLine, heading + (results.Reaches(show_) ? ": " + SeverityList(results) : Remark(counts)));
}

/// What a line says of a font of which nothing is shown.
std::string FileText::Remark(const SeverityCounts& counts) const {
  if (counts.Total() == 0) return ": " + style_.Good("nothing found");
  const std::string above = show_ == Severity::kFatal ? "" : " or above";
  return ": " + style_.Good("nothing " + std::string(Word(show_)) + above) + ", " + Grouped(counts.Total()) + " below";
}

/// Writes a line that stands alone or opens a paragraph, which has an empty line on either side.
void FileText::BeginBlock(Block block, const std::string& line) {
  if (last_ != Block::kNone && (last_ == Block::kParagraph || block == Block::kParagraph)) sink_("\n");
  sink_(line);
  sink_("\n");
  last_ = block;
}

std::string FileText::SeverityList(SeveritySet severities) const {
  std::string list;
  for (Severity severity : kGravestFirst) {
    if (severity < show_ || !severities.Has(severity)) continue;
    if (!list.empty()) list += ", ";
    list += style_.Of(severity, Word(severity));
  }
  return list;
}

}  // namespace

TextReport::TextReport(const Options& options, const Destination& destination)
    : choices_{.detail = options.detail,
               .show = options.show == Severity::kInformation ? Severity::kNonFont : options.show,
               .fold = !options.allMessages},
      style_(WantsColor(options.color, destination.isTerminal)) {}

void TextReport::WriteFile(const FileReport& report, const TextSink& sink) const {
  FileText(choices_, style_, sink).Write(report);
}

std::string_view TextReport::Between(bool isBlockBefore, bool isBlockAfter) const {
  return isBlockBefore || isBlockAfter ? "\n" : "";
}

std::string TextReport::End(const Totals& totals) const {
  std::array<char, 32> seconds;
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start_;
  std::snprintf(seconds.data(), seconds.size(), "%.2f s", elapsed.count());
  std::string text = "\n" + Counted(totals.files, "file");
  if (choices_.detail != Detail::kResults) {
    text += ", " + Counted(totals.fonts, "font") + ", " + Counted(totals.tests, "test") + " run";
  }
  text.append(" in ").append(seconds.data()).append("\n");
  if (totals.unreadable > 0) {
    text += style_.Of(Severity::kFatal, Counted(totals.unreadable, "path") + " could not be read") + "\n";
  }
  if (totals.failed > 0) {
    text += style_.Of(Severity::kFatal, Counted(totals.failed, "file") + " could not be tested") + "\n";
  }
  return text + Findings(totals.findings);
}

/// The lines about all findings.
std::string TextReport::Findings(const SeverityCounts& counts) const {
  std::string list;
  for (Severity severity : kGravestFirst) {
    if (counts[severity] == 0) continue;
    if (!list.empty()) list += ", ";
    list += style_.Of(severity, Grouped(counts[severity]) + " " + std::string(Word(severity)));
  }
  std::string text = "Findings: " + (list.empty() ? style_.Good("none") : list) + "\n";
  if (const size_t below = counts.Below(choices_.show); below > 0) {
    const Severity mildest =
        *std::ranges::find_if(kSeverities, [&](Severity severity) { return counts[severity] > 0; });
    text += Grouped(below) + " more below " + std::string(Word(choices_.show)) + " (use --show " +
            std::string(Word(LevelShowing(mildest))) + " to see all)\n";
  }
  return text;
}

bool WantsColor(ColorMode mode, bool isTerminal) {
  if (mode != ColorMode::kAuto) return mode == ColorMode::kAlways;
  const char* noColor = std::getenv("NO_COLOR");
  const char* terminal = std::getenv("TERM");
  if (noColor && *noColor) return false;
  return isTerminal && terminal && std::string_view(terminal) != "dumb";
}

}  // namespace tool
