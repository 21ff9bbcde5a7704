#include "Formats/JUnitReport.h"

#include <utility>

#include "Formats/TextStyle.h"

namespace tool {
namespace {

std::string Attribute(std::string_view name, std::string_view value) {
  return std::string(" ").append(name).append("=\"").append(EscapeForMarkup(value)).append("\"");
}

std::string Attribute(std::string_view name, size_t value) { return Attribute(name, std::to_string(value)); }

/// The findings as lines of text: those of a rule together, then what it asks for.
std::string Lines(const std::vector<RuleFindings>& groups) {
  std::string text;
  for (const RuleFindings& group : groups) {
    for (const Message& message : group.shown) {
      text.append(Word(message.severity)).append("  ").append(EscapeForMarkup(message.text)).append("\n");
    }
    if (group.LeftOut() > 0) text += "... and " + Grouped(group.LeftOut()) + " more like this\n";
    if (!group.rule) continue;
    text.append("  rule: ").append(EscapeForMarkup(group.rule->name)).append("\n");
    text.append("  why: ").append(EscapeForMarkup(group.rule->why)).append("\n");
    text.append("  fix: ").append(EscapeForMarkup(group.rule->fix)).append("\n");
  }
  return text;
}

/// "failure" or "error", with the number of findings and the gravest first.
std::string Complaint(std::string_view element, const std::vector<RuleFindings>& groups) {
  SeverityCounts counts;
  for (const RuleFindings& group : groups) counts[group.severity] += group.count;
  std::string summary;
  for (const Severity severity : kGravestFirst) {
    if (counts[severity] == 0) continue;
    summary.append(summary.empty() ? "" : ", ").append(std::to_string(counts[severity]) + " ").append(Word(severity));
  }
  const auto name = std::string(element);
  return "      <" + name + Attribute("message", summary) + Attribute("type", Word(groups.front().severity)) + ">" +
         Lines(groups) + "</" + name + ">\n";
}

/// The cases of one suite, and how they ended.
class Suite {
 public:
  Suite(std::string path, std::string name) : path_(std::move(path)), name_(std::move(name)) {}

  /// A case that has failed if there are complaints; it is an error when it could not run.
  void Add(std::string_view name, bool couldRun, const std::vector<RuleFindings>& complaints,
           const std::vector<RuleFindings>& output) {
    std::string content;
    if (!complaints.empty()) {
      ++(couldRun ? failures_ : errors_);
      content = Complaint(couldRun ? "failure" : "error", complaints);
    }
    if (!output.empty()) content += "      <system-out>" + Lines(output) + "</system-out>\n";
    AddCase(name, content);
  }

  void Skip(std::string_view name, std::string_view reason) {
    ++skipped_;
    AddCase(name, "      <skipped" + Attribute("message", reason) + "/>\n");
  }

  std::string Text() const {
    return "  <testsuite" + Attribute("name", name_) + Attribute("tests", tests_) + Attribute("failures", failures_) +
           Attribute("errors", errors_) + Attribute("skipped", skipped_) + ">\n" + cases_ + "  </testsuite>\n";
  }

 private:
  void AddCase(std::string_view name, const std::string& content) {
    ++tests_;
    cases_ += "    <testcase" + Attribute("name", name) + Attribute("classname", name_) + Attribute("file", path_);
    cases_ += content.empty() ? "/>\n" : ">\n" + content + "    </testcase>\n";
  }

  std::string path_;
  std::string name_;
  size_t tests_ = 0;
  size_t failures_ = 0;
  size_t errors_ = 0;
  size_t skipped_ = 0;
  std::string cases_;
};

}  // namespace

std::string JUnitReport::Head(const Totals&) const {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites name=\"vorn-font-test\">\n";
}

void JUnitReport::WriteFile(const FileReport& report, const TextSink& sink) const {
  for (const FontRecord& font : report.fonts) sink(FontSuite(report.path, font));
  if (report.fonts.empty()) sink(FileSuite(report));
}

std::string JUnitReport::End(const Totals&) const { return "</testsuites>\n"; }

bool JUnitReport::Fails(const Message& message) const {
  return Counts(message) && failOn_ && message.severity >= *failOn_;
}

std::string JUnitReport::FontSuite(const std::string& path, const FontRecord& font) const {
  Suite suite(path, font.name.empty() ? path : path + ": " + std::string(font.name));
  for (const TestRecord& test : font.tests) {
    const std::span one(&test, 1);
    // Why no test could be run is an error, whatever fails the run.
    const auto complaints = GroupFindings(
        one, choice_.fold, [&](const Message& message) { return test.ran ? Fails(message) : Counts(message); });
    const auto output =
        GroupFindings(one, choice_.fold, [&](const Message& message) { return test.ran && IsOutput(message); });
    suite.Add(test.identifier, test.ran, complaints, output);
  }
  return suite.Text();
}

std::string JUnitReport::FileSuite(const FileReport& report) const {
  Suite suite(report.path, report.path);
  // Where nothing was asked for but severities, the file was opened, for all that is known.
  const bool wasOpened = choice_.detail == Detail::kResults && !report.problem;
  if (!wasOpened && !report.problem && report.results.Empty()) {
    suite.Skip("open", "There are no fonts in it");
    return suite.Text();
  }
  const auto complaints = GroupFindingsOfFile(
      report, choice_.detail, [&](const Message& message) { return wasOpened ? Fails(message) : Counts(message); });
  const auto output = GroupFindingsOfFile(report, choice_.detail,
                                          [&](const Message& message) { return wasOpened && IsOutput(message); });
  suite.Add(wasOpened ? "all tests" : "open", wasOpened, complaints, output);
  return suite.Text();
}

}  // namespace tool
