#include "Formats/MarkdownReport.h"

#include <array>

#include "Formats/TextStyle.h"

namespace tool {
namespace {

/// The columns of the table that count.
constexpr std::array kCounted = {Severity::kFatal, Severity::kMajor, Severity::kMinor, Severity::kTechnical,
                                 Severity::kInformation};

/// Text that stays text wherever it stands, in the one line of a table's row too.
std::string Escaped(std::string_view text) {
  std::string escaped = EscapeForMarkup(text, "\\`*_[]|~$#:@");
  for (size_t at = 0; (at = escaped.find("www.", at)) != std::string::npos;) escaped.replace(at + 3, 1, "&#46;");
  return escaped;
}

/// A name or a message: set off, and so no mention of anybody.
std::string Verbatim(std::string_view text) { return "<code>" + Escaped(text) + "</code>"; }

std::string Details(const RuleFindings& group) {
  std::string text("<details><summary>");
  text.append(Word(group.severity));
  if (group.rule) text += ": " + Escaped(group.rule->title);
  if (const auto name = group.rule ? group.name : group.test; !name.empty()) text += " " + Verbatim(name);
  text += " (" + Grouped(group.count) + ")</summary><ul>";
  for (const Message& message : group.shown) text += "<li>" + Verbatim(message.text) + "</li>";
  if (group.LeftOut() > 0) text += "<li>... and " + Grouped(group.LeftOut()) + " more like this</li>";
  text += "</ul>";
  if (group.rule) text += "Why: " + Escaped(group.rule->why) + "<br>Fix: " + Escaped(group.rule->fix);
  return text + "</details>";
}

SeverityCounts Count(const FileReport& report) {
  SeverityCounts counts;
  for (const FontRecord& font : report.fonts) {
    for (const TestRecord& test : font.tests) counts += CountFindings(test);
  }
  if (report.problem) return counts;
  for (const Message& finding : FindingsOfFile(report, Detail::kFull)) {
    counts[finding.severity] += finding.standing == Standing::kCounts;
  }
  return counts;
}

}  // namespace

std::string MarkdownReport::Head(const Totals& totals) const {
  const size_t missing = totals.unreadable + totals.failed;
  std::string text = std::string("## Fonts: ") + (totals.reached || missing > 0 ? "failed" : "passed") + "\n\n";
  text += Counted(totals.files, "file");
  if (choice_.detail != Detail::kResults) {
    text += ", " + Counted(totals.fonts, "font") + ", " + Counted(totals.tests, "test") + " run";
  }
  std::string list;
  for (const Severity severity : kGravestFirst) {
    if (totals.findings[severity] == 0) continue;
    list.append(list.empty() ? "" : ", ").append(Grouped(totals.findings[severity]) + " ").append(Word(severity));
  }
  text += ". Findings: " + (list.empty() ? "none" : list) + WhatDoesNotCount(totals) + ". ";
  text += failOn_ ? "Fails on " + std::string(Word(*failOn_)) + " and above.\n" : "Findings never fail the run.\n";
  if (missing > 0) text += "\n**" + Counted(missing, "path") + " could not be tested.**\n";
  if (totals.files + missing == 0) return text;
  text += "\n| file |";
  for (const Severity severity : kCounted) text.append(" ").append(Word(severity)).append(" |");
  return text + " shown: " + std::string(Word(std::max(choice_.show, Severity::kInformation))) +
         (choice_.show == Severity::kFatal ? "" : " and above") + " |\n|---|--:|--:|--:|--:|--:|---|\n";
}

void MarkdownReport::WriteFile(const FileReport& report, const TextSink& sink) const {
  std::string row = "| " + Verbatim(report.path) + " |";
  const SeverityCounts counts = Count(report);
  for (const Severity severity : kCounted) row += " " + Grouped(counts[severity]) + " |";
  const auto shows = [this](const Message& message) { return choice_.Shows(message); };
  for (const FontRecord& font : report.fonts) {
    const auto groups = GroupFindings(font.tests, choice_.fold, shows);
    if (!groups.empty()) row += " " + Verbatim(font.name);
    for (const RuleFindings& group : groups) row += Details(group);
  }
  for (const RuleFindings& group : GroupFindingsOfFile(report, choice_.detail, shows)) row += Details(group);
  sink(row + " |\n");
}

}  // namespace tool
