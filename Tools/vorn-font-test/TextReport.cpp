#include "TextReport.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ranges>

#include "EscapedText.h"

namespace tool {
namespace {

constexpr std::string_view kNoText = "(no further text)";

/// Severities from the gravest to the mildest.
auto GravestFirst() { return kSeverities | std::views::reverse; }

/// The messages, gravest first, and one without text for each severity that the results hold and no message explains.
std::vector<Message> Ordered(const TestRecord& test) {
  std::vector<Message> messages = test.messages;
  SeveritySet explained;
  for (const Message& message : messages) explained.Add(message.severity);
  for (Severity severity : kSeverities) {
    if (test.results.Without(explained).Has(severity)) messages.push_back({severity, kNoText});
  }
  std::ranges::stable_sort(messages, std::ranges::greater(), &Message::severity);
  return messages;
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
  ++files_;
  fonts_ += report.fonts.size();
  if (detail_ == Detail::kResults) {
    AddSeverities(style_.Bold(EscapeForTerminal(path)), report.results);
  } else if (report.fonts.empty() && report.results.Has(Severity::kFatal)) {
    ++counts_[Severity::kFatal];
    Write(style_.Bold(EscapeForTerminal(path)),
          MessageLines({Severity::kFatal, "The file cannot be opened as a font."}, 0));
  } else if (report.fonts.empty()) {
    Write(style_.Bold(EscapeForTerminal(path)) + ": no fonts in it", "");
  }
  for (const FontRecord& font : report.fonts) AddFont(path, font);
  output_.Flush();
}

void TextReport::AddFont(const std::string& path, const FontRecord& font) {
  std::string heading = style_.Bold(EscapeForTerminal(path)) + ": " + EscapeForTerminal(font.name);
  if (!font.postScriptName.empty()) heading += " (" + EscapeForTerminal(font.postScriptName) + ")";
  heading += ", " + EscapeForTerminal(font.type);
  SeverityCounts counts;
  std::string paragraph;
  for (const TestRecord& test : font.tests) {
    tests_ += test.ran;
    paragraph += TestParagraph(test, counts);
  }
  counts_ += counts;
  Write(paragraph.empty() ? heading + Remark(counts) : heading, paragraph);
}

/// What is to be shown of a test; empty when that is nothing. Counts all that it found.
std::string TextReport::TestParagraph(const TestRecord& test, SeverityCounts& counts) {
  const std::vector<Message> messages = Ordered(test);
  for (const Message& message : messages) ++counts[message.severity];
  if (messages.empty() || messages.front().severity < show_) return "";

  std::string name = EscapeForTerminal(test.name.empty() ? test.identifier : test.name);
  if (name.empty()) name = "The font could not be tested";
  std::string heading = "  " + name;
  if (!test.name.empty() && test.name != test.identifier)
    heading += "  " + style_.Dim(EscapeForTerminal(test.identifier));
  if (detail_ == Detail::kSummary) return heading + ": " + SeverityList(test.results) + "\n";

  const auto shownEnd =
      std::ranges::find_if(messages, [&](const Message& message) { return message.severity < show_; });
  const std::vector<Message> shown(messages.begin(), shownEnd);
  std::string text = heading + "\n";
  if (!fold_) {
    for (const Message& message : shown) text += MessageLines(message, 0);
    return text;
  }
  for (const ShownMessage& message : FoldMessages(shown)) {
    text += MessageLines(message.message, message.leftOut);
    folded_ += message.leftOut;
  }
  return text;
}

std::string TextReport::MessageLines(const Message& message, size_t leftOut) const {
  const size_t width = Word(show_ >= Severity::kMinor ? Severity::kMajor : LevelShowing(show_)).size();
  const std::string_view word = Word(message.severity);
  const std::string indent(4, ' ');
  std::string lines = indent + style_.Of(message.severity, word);
  lines.append(word.size() < width ? width - word.size() : 0, ' ');
  lines += "  " + EscapeForTerminal(message.text) + "\n";
  if (leftOut > 0) {
    lines +=
        indent + std::string(width + 2, ' ') + style_.Dim("... and " + Grouped(leftOut) + " more like this") + "\n";
  }
  return lines;
}

void TextReport::AddSeverities(const std::string& heading, SeveritySet results) {
  SeverityCounts counts;
  for (Severity severity : kSeverities) counts[severity] = results.Has(severity);
  counts_ += counts;
  Write(heading + (results.Reaches(show_) ? ": " + SeverityList(results) : Remark(counts)), "");
}

/// What a line says of a font of which nothing is shown.
std::string TextReport::Remark(const SeverityCounts& counts) const {
  if (counts.Total() == 0) return ": " + style_.Good("nothing found");
  return ": " + style_.Good("nothing " + std::string(Word(show_))) + ", " + Grouped(counts.Total()) + " milder";
}

/// Writes a line, and a paragraph below it, with an empty line on either side of the two.
void TextReport::Write(const std::string& line, const std::string& paragraph) {
  const Block block = paragraph.empty() ? Block::kLine : Block::kParagraph;
  const bool gap = last_ != Block::kNone && (last_ == Block::kParagraph || block == Block::kParagraph);
  if (gap) output_.Write("\n");
  output_.Write(line);
  output_.Write("\n");
  output_.Write(paragraph);
  last_ = block;
}

std::string TextReport::SeverityList(SeveritySet severities) const {
  std::string list;
  for (Severity severity : GravestFirst()) {
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
  for (Severity severity : GravestFirst()) {
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
    output_.Write(Grouped(folded_) + " left out that differ from others only in numbers (use --all-messages)\n");
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
