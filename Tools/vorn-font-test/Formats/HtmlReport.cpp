#include "Formats/HtmlReport.h"

#include "Formats/GlyphDrawing.h"
#include "Formats/HtmlFile.h"
#include "Formats/TextStyle.h"

namespace tool {
namespace {

// kStyle and kProgram, the texts of the files in html; kStyleHash and kProgramHash, the hashes by
// which the page's policy lets them, and nothing else, in.
#include "HtmlResources.inc"

struct Verdict {
  bool passed;
  std::string reason;
};

Verdict VerdictOf(const Totals& totals, std::optional<Severity> failOn) {
  const std::string level = failOn ? std::string(Word(*failOn)) : std::string();
  const std::string reached = level + (failOn == Severity::kFatal ? " findings" : " or graver findings");
  if (totals.failed > 0) return {false, Counted(totals.failed, "file") + " could not be tested (exit status 3)"};
  if (totals.unreadable > 0) return {false, Counted(totals.unreadable, "path") + " could not be read (exit status 2)"};
  if (totals.files == 0) return {true, "no font files found (exit status 0)"};
  if (totals.reached) return {false, "there are " + reached + " (exit status 1)"};
  if (!failOn) return {true, "no finding fails this run (exit status 0)"};
  return {true, "there are no " + reached + " (exit status 0)"};
}

std::string Total(std::string_view name, size_t count) {
  return "<div><dt>" + std::string(name) + "</dt><dd>" + Grouped(count) + "</dd></div>";
}

std::string SeverityItems(const SeverityCounts& counts) {
  std::string items;
  for (Severity severity : kGravestFirst) {
    if (severity == Severity::kNonFont && counts[severity] == 0) continue;
    const std::string_view word = Word(severity);
    items.append("<li class=\"").append(word).append("\"><b>").append(Grouped(counts[severity])).append("</b> ");
    items.append(word).append("</li>\n");
  }
  return items;
}

}  // namespace

HtmlReport::HtmlReport(const Options& options) : failOn_(options.failOn), detail_(options.detail) {
  LoadFreeType();  // while the program may still load it
}

std::string HtmlReport::Head(const Totals& totals) const {
  const Verdict verdict = VerdictOf(totals, failOn_);
  const std::string word = verdict.passed ? "Pass" : "Fail";
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; base-uri 'none'; "
         "form-action 'none'; style-src '" +
         std::string(kStyleHash) + "'; script-src '" + std::string(kProgramHash) +
         "'\">\n<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<meta name=\"color-scheme\" content=\"light dark\">\n<title>" +
         word + ": font report</title>\n<style>" + std::string(kStyle) +
         "</style>\n</head>\n<body>\n<a class=\"skip\" href=\"#results\">Skip to the findings</a>\n"
         "<header class=\"page\">\n<div class=\"heading\"><h1>Font report</h1><p>vorn-font-test " VORN_VERSION
         "</p></div>\n<p class=\"verdict " +
         (verdict.passed ? "pass" : "fail") + "\"><strong>" + word + "</strong> <span>" + verdict.reason +
         "</span></p>\n<dl class=\"totals\">" + Total("Files", totals.files) + Total("Fonts", totals.fonts) +
         Total("Tests run", totals.tests) + Total("Findings", totals.findings.Total()) +
         "</dl>\n<ul class=\"severities\" id=\"severities\">\n" + SeverityItems(totals.findings) +
         "</ul>\n</header>\n<div id=\"app\">\n<main id=\"results\" tabindex=\"-1\">\n";
}

void HtmlReport::WriteFile(const FileReport& report, const TextSink& sink) const {
  WriteHtmlFile(report, detail_, sink);
}

std::string HtmlReport::End(const Totals&) const {
  return "</main>\n</div>\n<script>" + std::string(kProgram) + "</script>\n</body>\n</html>\n";
}

}  // namespace tool
