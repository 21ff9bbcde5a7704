#include "TextReport.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "EscapedText.h"

namespace tool {
namespace {

constexpr std::string_view kNoText = "(no further text)";

/// How many findings there are: messages, and one for each severity that the results hold and no message explains.
SeverityCounts CountFindings(const TestRecord& test) {
  SeverityCounts counts;
  for (size_t i = 0; i < test.messages.size(); ++i) ++counts[test.messages[i].severity];
  for (Severity severity : kSeverities) {
    if (counts[severity] == 0 && test.results.Has(severity)) counts[severity] = 1;
  }
  return counts;
}

/// The lowest level to show that shows this severity too: what is not about the font has no level of its own.
Severity LevelShowing(Severity severity) { return std::max(severity, Severity::kInformation); }

}  // namespace

TextReport::TextReport(const Options& options, Output& output)
    : detail_(options.detail),
      show_(options.show == Severity::kInformation ? Severity::kNonFont : options.show),
      fold_(!options.allMessages),
      output_(output),
      style_(WantsColor(options.color, output)) {}

void TextReport::AddFile(const std::string& path, TovaDictionaryRef tree) {
  const Report report = ReadReport(tree);
  const std::string heading = style_.Bold(EscapeForTerminal(path));
  ++files_;
  if (detail_ == Detail::kResults) {
    AddSeverities(heading, report.results);
  } else if (report.fonts.empty() && report.results.Has(Severity::kFatal)) {
    ++counts_[Severity::kFatal];
    BeginBlock(Block::kParagraph, heading);
    WriteMessage({Severity::kFatal, "The file cannot be opened as a font."}, 0);
  } else if (report.fonts.empty()) {
    BeginBlock(Block::kLine, heading + ": no fonts in it");
  } else {
    for (const FontRecord& font : report.fonts) AddFont(heading, font);
  }
  output_.Flush();
}

void TextReport::AddFont(const std::string& path, const FontRecord& font) {
  ++fonts_;
  std::string heading = path + ": " + EscapeForTerminal(font.name);
  if (!font.postScriptName.empty()) heading += " (" + EscapeForTerminal(font.postScriptName) + ")";
  heading += ", " + EscapeForTerminal(font.type);
  SeverityCounts all;
  std::vector<SeverityCounts> counts;
  for (const TestRecord& test : font.tests) {
    tests_ += test.ran;
    counts.push_back(CountFindings(test));
    all += counts.back();
  }
  counts_ += all;
  if (all.Total() == all.Below(show_)) return BeginBlock(Block::kLine, heading + Remark(all));
  BeginBlock(Block::kParagraph, heading);
  for (size_t i = 0; i < counts.size(); ++i) {
    if (counts[i].Total() > counts[i].Below(show_)) WriteTest(font.tests[i], counts[i]);
  }
}

/// What is to be shown of a test, the gravest first.
void TextReport::WriteTest(const TestRecord& test, const SeverityCounts& counts) {
  std::string name = EscapeForTerminal(test.name.empty() ? test.identifier : test.name);
  if (name.empty()) name = "The font could not be tested";
  output_.Write("  " + name);
  if (!test.name.empty() && test.name != test.identifier)
    output_.Write("  " + style_.Dim(EscapeForTerminal(test.identifier)));
  if (detail_ == Detail::kSummary) return output_.Write(": " + SeverityList(test.results) + "\n");

  output_.Write("\n");
  for (Severity severity : kGravestFirst) {
    if (severity >= show_ && counts[severity] > 0) WriteMessages(test.messages, severity);
  }
}

/// The messages of a severity, or a line without text when it has none.
void TextReport::WriteMessages(const MessageList& messages, Severity severity) {
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
    folded_ += decision.leftOut;
  }
  if (!any) WriteMessage({severity, kNoText}, 0);
}

void TextReport::WriteMessage(const Message& message, size_t leftOut) {
  const size_t width = Word(show_ >= Severity::kMinor ? Severity::kMajor : LevelShowing(show_)).size();
  const std::string_view word = Word(message.severity);
  const std::string indent(4, ' ');
  output_.Write(indent + style_.Of(message.severity, word));
  output_.Write(std::string((word.size() < width ? width - word.size() : 0) + 2, ' '));
  output_.Write(EscapeForTerminal(message.text));
  output_.Write("\n");
  if (leftOut == 0) return;
  output_.Write(indent + std::string(width + 2, ' '));
  output_.Write(style_.Dim("... and " + Grouped(leftOut) + " more like this") + "\n");
}

void TextReport::AddSeverities(const std::string& heading, SeveritySet results) {
  SeverityCounts counts;
  for (Severity severity : kSeverities) counts[severity] = results.Has(severity);
  counts_ += counts;
  BeginBlock(Block::kLine, heading + (results.Reaches(show_) ? ": " + SeverityList(results) : Remark(counts)));
}

/// What a line says of a font of which nothing is shown.
std::string TextReport::Remark(const SeverityCounts& counts) const {
  if (counts.Total() == 0) return ": " + style_.Good("nothing found");
  const std::string above = show_ == Severity::kFatal ? "" : " or above";
  return ": " + style_.Good("nothing " + std::string(Word(show_)) + above) + ", " + Grouped(counts.Total()) + " below";
}

/// Writes a line that stands alone or opens a paragraph, which has an empty line on either side.
void TextReport::BeginBlock(Block block, const std::string& line) {
  if (last_ != Block::kNone && (last_ == Block::kParagraph || block == Block::kParagraph)) output_.Write("\n");
  output_.Write(line);
  output_.Write("\n");
  last_ = block;
}

std::string TextReport::SeverityList(SeveritySet severities) const {
  std::string list;
  for (Severity severity : kGravestFirst) {
    if (severity < show_ || !severities.Has(severity)) continue;
    if (!list.empty()) list += ", ";
    list += style_.Of(severity, Word(severity));
  }
  return list;
}

void TextReport::End(size_t unreadable) {
  std::array<char, 32> seconds;
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start_;
  std::snprintf(seconds.data(), seconds.size(), "%.2f s", elapsed.count());
  std::string line = Counted(files_, "file");
  if (detail_ != Detail::kResults) line += ", " + Counted(fonts_, "font") + ", " + Counted(tests_, "test") + " run";
  output_.Write("\n" + line + " in " + seconds.data() + "\n");
  if (unreadable > 0)
    output_.Write(style_.Of(Severity::kFatal, Counted(unreadable, "path") + " could not be read") + "\n");
  WriteFindings();
}

void TextReport::WriteFindings() {
  std::string list;
  for (Severity severity : kGravestFirst) {
    if (counts_[severity] == 0) continue;
    if (!list.empty()) list += ", ";
    list += style_.Of(severity, Grouped(counts_[severity]) + " " + std::string(Word(severity)));
  }
  output_.Write("Findings: " + (list.empty() ? style_.Good("none") : list) + "\n");
  if (const size_t below = counts_.Below(show_); below > 0) {
    const Severity mildest =
        *std::ranges::find_if(kSeverities, [&](Severity severity) { return counts_[severity] > 0; });
    output_.Write(Grouped(below) + " more below " + std::string(Word(show_)) + " (use --show " +
                  std::string(Word(LevelShowing(mildest))) + " to see all)\n");
  }
  if (folded_ > 0) {
    output_.Write(Grouped(folded_) + " left out that break the same rules (use --all-messages)\n");
  }
}

bool WantsColor(ColorMode mode, const Output& output) {
  if (mode != ColorMode::kAuto) return mode == ColorMode::kAlways;
  const char* noColor = std::getenv("NO_COLOR");
  const char* terminal = std::getenv("TERM");
  if (noColor && *noColor) return false;
  return output.IsTerminal() && terminal && std::string_view(terminal) != "dumb";
}

}  // namespace tool
