#include "Formats/GithubReport.h"

#include "Formats/TextStyle.h"

namespace tool {
namespace {

std::string_view Command(Severity severity) {
  switch (AlertOf(severity)) {
    case Alert::kError:
      return "::error";
    case Alert::kWarning:
      return "::warning";
    case Alert::kNotice:
      break;
  }
  return "::notice";
}

/// The text with a percent sign and two digits in place of each character that the syntax of commands uses.
std::string Escaped(std::string_view text, std::string_view special) {
  std::string result;
  for (const char c : EscapeForTerminal(text)) {
    if (special.find(c) == std::string_view::npos) {
      result += c;
    } else {
      result.append(c == '%' ? "%25" : c == ':' ? "%3A" : "%2C");
    }
  }
  return result;
}

std::string EscapedProperty(std::string_view text) { return Escaped(text, "%:,"); }
std::string EscapedLine(std::string_view text) { return Escaped(text, "%"); }

constexpr std::string_view kNewLine = "%0A";

void WriteGroup(const std::string& path, std::string_view font, const RuleFindings& group, const TextSink& sink) {
  std::string title(Word(group.severity));
  if (group.rule) title.append(": ").append(group.rule->title).append(" (").append(group.name).append(")");
  std::string line(Command(group.severity));
  // A path is not text: what is no UTF-8 in it is shown as text is, and then names no file.
  line.append(" file=").append(EscapedProperty(path)).append(",title=").append(EscapedProperty(title)).append("::");
  if (!font.empty()) line.append(EscapedLine(font)).append(": ");
  line.append(Counted(group.count, "finding"));
  for (const Message& message : group.shown) line.append(kNewLine).append(EscapedLine(message.text));
  if (group.LeftOut() > 0) line.append(kNewLine).append("... and " + Grouped(group.LeftOut()) + " more like this");
  if (group.rule) {
    line.append(kNewLine).append("Why: ").append(EscapedLine(group.rule->why));
    line.append(kNewLine).append("Fix: ").append(EscapedLine(group.rule->fix));
  }
  sink(line + "\n");
}

}  // namespace

void GithubReport::WriteFile(const FileReport& report, const TextSink& sink) const {
  const auto shows = [this](const Message& message) { return choice_.Shows(message); };
  for (const FontRecord& font : report.fonts) {
    for (const RuleFindings& group : GroupFindings(font.tests, choice_.fold, shows)) {
      WriteGroup(report.path, font.name, group, sink);
    }
  }
  for (const RuleFindings& group : GroupFindingsOfFile(report, choice_.detail, shows)) {
    WriteGroup(report.path, {}, group, sink);
  }
}

}  // namespace tool
