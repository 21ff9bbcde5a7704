#include "Formats/TextReport.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <set>

#include "Formats/FontText.h"
#include "Formats/LineWrapping.h"
#include "Report/EscapedText.h"
#include "Report/FontTables.h"

namespace tool {
namespace {

constexpr size_t kSmallestWidth = 60;
constexpr size_t kHeadingGap = 3;
constexpr size_t kHeadingIndent = 4;
constexpr size_t kVerdictIndent = 6;

std::string FailLevel(const std::optional<Severity>& failOn) {
  return failOn ? "fails on " + std::string(Word(*failOn)) : "never fails";
}

/// Writes the part of one file.
class FileText {
 public:
  FileText(const FileReport& report, const TextChoices& choices, const TextStyle& style, const TextSink& sink)
      : report_(report), totals_(TotalsOf(report)), choices_(choices), style_(style), sink_(sink) {}

  void Write() const;

 private:
  struct Paragraph {
    std::vector<std::string> heading;  ///< of the first font
    std::string body;
    std::string others = {};  ///< names of the other fonts
  };

  void WriteFonts(const std::vector<FontText>& fonts) const;
  void WriteUnopened() const;
  void WriteLine(std::vector<std::string> parts) const;
  void WriteVerdict(size_t rules) const;
  std::string Passed() const;
  std::string Heading(const std::vector<std::string>& parts) const;
  std::string Remark() const;
  size_t CountTablesNotTested() const;

  const FileReport& report_;
  const Totals totals_;
  const TextChoices& choices_;
  const TextStyle& style_;
  const TextSink& sink_;
};

void FileText::Write() const {
  if (report_.problem) {
    sink_(style_.Bold(EscapeForTerminal(report_.path)) + ": " + style_.Of(Severity::kFatal, "not tested") + ", " +
          EscapeForTerminal(report_.problem.text) + "\n");
    return;
  }
  if (choices_.detail == Detail::kResults) {
    const std::string list = style_.List(report_.results, choices_.show);
    sink_(style_.Bold(EscapeForTerminal(report_.path)) + ": " + Passed() + ", " + (list.empty() ? Remark() : list) +
          "\n");
    return;
  }
  if (report_.fonts.empty() && !report_.unopened.empty()) {
    return report_.isKnown ? WriteLine({report_.unopened}) : WriteUnopened();
  }
  std::vector<FontText> fonts;
  for (const FontRecord& font : report_.fonts) fonts.emplace_back(font, choices_, style_);
  if (std::ranges::any_of(fonts, &FontText::IsShown)) return WriteFonts(fonts);
  if (fonts.size() == 1) return WriteLine(fonts.front().Heading(report_.path));
  WriteLine({fonts.empty() ? "no fonts in it" : Counted(fonts.size(), "font")});
}

/// Fonts of which the same is to be said share a paragraph.
void FileText::WriteFonts(const std::vector<FontText>& fonts) const {
  std::vector<Paragraph> paragraphs;
  std::set<const Rule*> rules;
  for (const FontText& font : fonts) {
    font.AddRulesShown(rules);
    const std::string body = font.Body();
    const auto same = std::ranges::find(paragraphs, body, &Paragraph::body);
    if (same == paragraphs.end()) {
      paragraphs.push_back({.heading = font.Heading(report_.path), .body = body});
    } else {
      same->others += (same->others.empty() ? "" : ", ") + font.Name();
    }
  }
  if (fonts.size() > 1) sink_(Heading({EscapeForTerminal(report_.path), Counted(fonts.size(), "font")}));
  for (Paragraph& paragraph : paragraphs) {
    if (fonts.size() > 1) sink_("\n");
    if (fonts.size() == 1) paragraph.heading.insert(paragraph.heading.begin(), EscapeForTerminal(report_.path));
    sink_(Heading(paragraph.heading));
    if (!paragraph.body.empty()) sink_("\n" + paragraph.body);
    if (!paragraph.others.empty()) sink_("\n" + Labelled(" The same in  ", paragraph.others, choices_.width));
  }
  WriteVerdict(rules.size());
}

void FileText::WriteUnopened() const {
  sink_(Heading({EscapeForTerminal(report_.path)}) + "\n");
  std::string text = Labelled(Spaces(kMarkColumns), report_.unopened, choices_.width);
  sink_(text.replace(0, kMarkColumns, SeverityMark(Severity::kFatal, style_)));
  WriteVerdict(0);
}

/// A file of which nothing is shown.
void FileText::WriteLine(std::vector<std::string> parts) const {
  parts.insert(parts.begin(), EscapeForTerminal(report_.path));
  parts.push_back(Passed() + ", " + Remark());
  sink_(Heading(parts));
}

/// The first part in bold, the others beside it, or below where there is no room.
std::string FileText::Heading(const std::vector<std::string>& parts) const {
  std::string text = style_.Bold(parts.front());
  size_t column = Columns(parts.front());
  for (size_t i = 1; i < parts.size(); ++i) {
    const std::vector<std::string> lines = WrappedLines(parts[i], choices_.width - kHeadingIndent);
    const size_t columns = Columns(lines.front());
    const bool fits = lines.size() == 1 && column + kHeadingGap + columns <= choices_.width;
    if (fits) {
      text += Spaces(kHeadingGap) + parts[i];
      column += kHeadingGap + columns;
      continue;
    }
    for (const std::string& line : lines) text += "\n" + Spaces(kHeadingIndent) + line;
    column = kHeadingIndent + Columns(lines.back());
  }
  return text + "\n";
}

std::string FileText::Passed() const { return report_.fails ? style_.Bad("FAIL") : style_.Good("PASS"); }

void FileText::WriteVerdict(size_t rules) const {
  std::string text = "\n " + Passed() + " (" + FailLevel(choices_.failOn) + ") ";
  size_t column = 9 + FailLevel(choices_.failOn).size();
  const auto add = [&](size_t gap, const std::string& words, const std::string& styled) {
    const bool fits = column + gap + words.size() <= choices_.width;
    text += fits ? Spaces(gap) + styled : "\n" + Spaces(kVerdictIndent) + styled;
    column = (fits ? column + gap : kVerdictIndent) + words.size();
  };
  for (const Severity severity : kGravestFirst) {
    const size_t count = totals_.findings[severity];
    const bool isAlwaysTold = severity >= std::max(choices_.show, Severity::kMajor);
    if (severity < choices_.show || (count == 0 && !isAlwaysTold)) continue;
    const std::string words = Grouped(count) + " " + std::string(Word(severity));
    add(2, words, count > 0 ? style_.Of(severity, words) : words);
  }
  const std::string inRules = "in " + Counted(rules, "rule") + (report_.fixed > 0 ? ";" : "");
  if (rules > 0) add(1, inRules, inRules);
  const std::string fixed = Grouped(report_.fixed) + " fixed";
  if (report_.fixed > 0) add(rules > 0 ? 1 : 2, fixed, fixed);
  sink_(text + "\n");
}

/// What a line says of a file of which nothing is shown.
std::string FileText::Remark() const {
  // A font without tables is examined by few tests, so that their number tells more than that of the tables.
  const bool hasTables =
      std::ranges::any_of(report_.fonts, [](const FontRecord& font) { return !font.tables.empty(); });
  std::string remark = "nothing found" + (hasTables ? "" : " by " + Counted(totals_.tests, "test"));
  const size_t count = choices_.detail == Detail::kResults ? 0 : totals_.findings.Total();
  const bool hasResults = !report_.results.Empty() && choices_.detail == Detail::kResults;
  if (count > 0) remark = Grouped(count) + " below " + std::string(Word(choices_.show));
  if (hasResults) remark = "nothing from " + std::string(Word(choices_.show)) + " on";
  remark += WhatDoesNotCount(totals_);
  const size_t tables = CountTablesNotTested();
  return tables == 0 ? remark : remark + ", " + Counted(tables, "table") + " not tested";
}

size_t FileText::CountTablesNotTested() const {
  std::set<std::string_view> tags;
  for (const FontRecord& font : report_.fonts) {
    for (const std::string_view tag : TablesOf(font).notTested) tags.insert(tag);
  }
  return tags.size();
}

}  // namespace

TextReport::TextReport(const Options& options, const Destination& destination)
    : choices_{.detail = options.detail,
               .show = options.show == Severity::kInformation ? Severity::kNonFont : options.show,
               .failOn = options.failOn,
               .fold = !options.allMessages,
               .width = std::max(destination.columns, kSmallestWidth)},
      style_(WantsColor(options.color, destination.isTerminal)) {}

void TextReport::WriteFile(const FileReport& report, const TextSink& sink) const {
  FileText(report, choices_, style_, sink).Write();
}

std::string_view TextReport::Between(bool isBlockBefore, bool isBlockAfter) const {
  return isBlockBefore || isBlockAfter ? "\n" : "";
}

std::string TextReport::End(const Totals& totals) const {
  std::string text;
  if (totals.unreadable > 0) {
    text += style_.Of(Severity::kFatal, Counted(totals.unreadable, "path") + " could not be read") + "\n";
  }
  if (totals.failed > 0) {
    text += style_.Of(Severity::kFatal, Counted(totals.failed, "file") + " could not be tested") + "\n";
  }
  if (totals.files != 1) text += Summary(totals);
  return text.empty() ? text : "\n" + text;
}

/// The lines about all files.
std::string TextReport::Summary(const Totals& totals) const {
  std::array<char, 32> seconds;
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start_;
  std::snprintf(seconds.data(), seconds.size(), "%.2f s", elapsed.count());
  std::string text = Counted(totals.files, "file");
  if (choices_.detail != Detail::kResults) {
    text += ", " + Counted(totals.fonts, "font") + ", " + Counted(totals.tests, "test") + " run";
  }
  text.append(" in ").append(seconds.data()).append("\n");
  std::string counts;
  for (Severity severity : kGravestFirst) {
    if (totals.findings[severity] == 0) continue;
    counts += (counts.empty() ? "" : ", ") +
              style_.Of(severity, Grouped(totals.findings[severity]) + " " + std::string(Word(severity)));
  }
  text += "Findings: " + (counts.empty() ? style_.Good("none") : counts) + "\n";
  text += LeftOutLines("", totals, choices_.width);
  if (totals.fixed > 0)
    text += Padded("Fixed", kLabelColumns - 1) + Counted(totals.fixed, "finding") + " of the baseline\n";
  const size_t passed = totals.files - totals.failed - totals.reached;
  const bool fails = totals.reached + totals.unreadable + totals.failed > 0;
  text += (fails ? style_.Bad("FAIL") : style_.Good("PASS")) + " (" + FailLevel(choices_.failOn) + ")  " +
          Grouped(totals.reached) + " failed, " + Grouped(passed) + " passed\n";
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
