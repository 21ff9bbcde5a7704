#include "Formats/FontText.h"

#include <algorithm>
#include <limits>

#include "Formats/Findings.h"
#include "Formats/GlyphNames.h"
#include "Formats/LineWrapping.h"
#include "Report/FontTables.h"
#include "Report/Rules.h"
#include "Report/Totals.h"

namespace tool {
namespace {

/// How many findings of a rule are shown before the rest of them is counted.
constexpr size_t kExamples = 3;
constexpr size_t kExampleIndent = 5;
/// Columns between what stands on the left of a line and what stands at its right end.
constexpr size_t kGap = 2;

/// What a rule says that asks for no change.
constexpr std::string_view kNoFix = "nothing";

/// A word of at most five letters.
std::string_view ShortWord(Severity severity) {
  switch (severity) {
    case Severity::kNonFont:
      return "other";
    case Severity::kInformation:
      return "info";
    case Severity::kTechnical:
      return "tech";
    default:
      return Word(severity);
  }
}

/// "165 glyphs", "14 findings in 5 glyphs"; empty for a single finding that is about no glyph.
std::string HowMany(const FindingGroup& group) {
  const std::string glyphs = Counted(group.glyphs.size(), "glyph");
  if (group.glyphs.empty()) return group.count == 1 ? "" : Counted(group.count, "finding");
  return group.count == group.glyphs.size() ? glyphs : Counted(group.count, "finding") + " in " + glyphs;
}

/// Lines with a text at the right end of the last one, or in a line of its own where there is no room.
std::string WithTail(std::vector<std::string> lines, const std::string& tail, size_t tailColumns, size_t width) {
  const size_t columns = Columns(lines.back());
  if (tailColumns > 0 && columns + kGap + tailColumns <= width) {
    lines.back() += Spaces(width - columns - tailColumns) + tail;
  } else if (tailColumns > 0) {
    lines.push_back(Spaces(width > tailColumns ? width - tailColumns : 0) + tail);
  }
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks(" \t\r\n\0", 5);
  const size_t begin = text.find_first_not_of(kBlanks);
  return begin == text.npos ? "" : text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

std::string TagList(const std::vector<std::string_view>& tags) {
  std::string list;
  for (const std::string_view tag : tags) {
    list += (list.empty() ? "" : " ") + EscapeForTerminal(Trimmed(tag));
  }
  return list.empty() ? "none" : list;
}

}  // namespace

std::string SeverityMark(Severity severity, const TextStyle& style) {
  const std::string mark = severity > Severity::kInformation ? "x " : ". ";
  return " " + style.Of(severity, Padded(mark + std::string(ShortWord(severity)), kMarkColumns - 1));
}

FontText::FontText(const FontRecord& font, const TextChoices& choices, const TextStyle& style)
    : font_(font),
      choices_(choices),
      style_(style),
      groups_(GroupFindings(font, choices.fold ? kExamples + 1 : std::numeric_limits<size_t>::max())) {}

bool FontText::IsShown() const {
  return choices_.show <= Severity::kInformation ||
         std::ranges::any_of(groups_, [&](const FindingGroup& group) { return group.severity >= choices_.show; });
}

std::string FontText::Name() const { return EscapeForTerminal(font_.name); }

std::vector<std::string> FontText::Heading(const std::string& path) const {
  std::vector<std::string> parts;
  std::string name = path == font_.name || path.ends_with("/" + std::string(font_.name)) ? "" : std::string(font_.name);
  const std::string_view version = Trimmed(font_.version.substr(0, font_.version.find(';')));
  if (!version.empty()) name.append(name.empty() ? "" : ", ").append(version);
  if (!name.empty()) parts.push_back(EscapeForTerminal(name));
  std::string what = EscapeForTerminal(font_.type);
  if (font_.glyphCount) what += ", " + Counted(static_cast<size_t>(*font_.glyphCount), "glyph");
  parts.push_back(what);
  return parts;
}

std::string FontText::Body() const {
  if (choices_.detail == Detail::kSummary) return TestResults() + Tables();
  std::string text;
  for (const FindingGroup& group : groups_) {
    if (group.severity >= choices_.show) text += Group(group);
  }
  for (const Severity severity : kGravestFirst) {
    if (severity < choices_.show) text += MilderFindings(severity);
  }
  const std::string notes = Tables() + LeftOut();
  return text + (text.empty() || notes.empty() ? "" : "\n") + notes;
}

std::string FontText::Group(const FindingGroup& group) const {
  std::vector<std::string> lines;
  for (const std::string& line : WrappedLines(GroupTitle(group), choices_.width - kMarkColumns)) {
    lines.push_back(Spaces(kMarkColumns) + line);
  }
  const std::string tail = group.rule ? std::string(group.rule->name) : "";
  std::string text = WithTail(lines, style_.Dim(tail), tail.size(), choices_.width);
  text.replace(0, kMarkColumns, SeverityMark(group.severity, style_));
  text += Examples(group);
  return group.rule ? text + Advice(*group.rule) : text;
}

std::string FontText::GroupTitle(const FindingGroup& group) const {
  const std::string many = HowMany(group);
  if (group.rule) return many + (many.empty() ? "" : ": ") + std::string(group.rule->title);
  const std::string_view test = group.places.front().test->name;
  return many + (many.empty() ? "" : ": ") + (test.empty() ? "the font could not be tested" : EscapeForTerminal(test));
}

std::string FontText::Examples(const FindingGroup& group) const {
  const size_t width = choices_.width - kExampleIndent;
  if (group.areAlike && group.glyphs.size() > kExamples + 1 && choices_.fold) {
    return Spaces(kExampleIndent) + "glyphs " + Ranges(group.glyphs, width - 7) + "\n";
  }
  const size_t shown = group.places.size() == group.count ? group.count : kExamples;
  std::string text;
  std::string names;
  for (size_t i = 0; i < shown; ++i) {
    const FindingGroup::Place& place = group.places[i];
    if (group.areAlike && group.count > 1) {
      names += (i > 0 ? ", " : "") + GlyphLabel(place.test->messages[place.message]);
      if (i + 1 < shown) continue;
    }
    std::vector<std::string> lines;
    for (const std::string& line : WrappedLines(names.empty() ? Example(place) : names, width - kGap)) {
      lines.push_back(Spaces(kExampleIndent + (lines.empty() ? 0 : kGap)) + line);
    }
    const bool isLast = i + 1 == shown && shown < group.count;
    const std::string more = isLast ? "... " + Grouped(group.count - shown) + " more" : "";
    text += WithTail(lines, style_.Dim(more), more.size(), choices_.width);
  }
  return text;
}

std::string FontText::Example(const FindingGroup::Place& place) const {
  const MessageList& messages = place.test->messages;
  if (place.message >= messages.size()) return std::string(kNoText);
  const Message message = messages[place.message];
  const std::string words = EscapeForTerminal(Words(message));
  return message.glyph ? GlyphLabel(message) + "  " + words : words;
}

std::string FontText::Advice(const Rule& rule) const {
  const std::string indent = Spaces(kExampleIndent);
  const std::string why = "why  " + std::string(rule.why);
  const std::string fix = "fix  " + std::string(rule.fix);
  constexpr size_t kBetween = 6;
  if (rule.fix == kNoFix) return style_.DimLines(Labelled(indent + "why  ", rule.why, choices_.width));
  if (kExampleIndent + why.size() + kBetween + fix.size() <= choices_.width) {
    return indent + style_.Dim(why + Spaces(kBetween) + fix) + "\n";
  }
  return style_.DimLines(Labelled(indent + "why  ", rule.why, choices_.width) +
                         Labelled(indent + "fix  ", rule.fix, choices_.width));
}

void FontText::AddRulesShown(std::set<const Rule*>& rules) const {
  for (const FindingGroup& group : groups_) {
    if (group.severity >= choices_.show && group.rule) rules.insert(group.rule);
  }
}

/// A line about all findings of a severity that is not shown.
std::string FontText::MilderFindings(Severity severity) const {
  std::string list;
  for (const FindingGroup& group : groups_) {
    if (group.severity == severity) list += (list.empty() ? "" : "; ") + GroupTitle(group);
  }
  if (list.empty()) return {};
  std::string text = Labelled(Spaces(kMarkColumns), list, choices_.width);
  return text.replace(0, kMarkColumns, SeverityMark(severity, style_));
}

/// A line for each test that found something, with the severities alone.
std::string FontText::TestResults() const {
  std::string text;
  for (const TestRecord& test : font_.tests) {
    const std::string list = style_.List(test.results, choices_.show);
    if (!list.empty()) text += " " + EscapeForTerminal(test.identifier) + "  " + list + "\n";
  }
  return text;
}

/// What was looked at and what was not, so that "nothing found" does not pass for "all was examined".
std::string FontText::Tables() const {
  const FontTables tables = TablesOf(font_);
  if (font_.tables.empty()) {
    const auto ran = static_cast<size_t>(std::ranges::count_if(font_.tests, &TestRecord::ran));
    return Padded(" Tested", kLabelColumns) + Counted(ran, "test") + "; no more is looked at in a font of this kind\n";
  }
  if (choices_.show > Severity::kInformation) {
    if (tables.notTested.empty()) return {};
    return Padded(" Not tested", kLabelColumns) + Counted(tables.notTested.size(), "table") +
           " (--show information names them)\n";
  }
  return Labelled(Padded(" Tested", kLabelColumns), TagList(tables.tested), choices_.width) +
         Labelled(Padded(" Not tested", kLabelColumns), TagList(tables.notTested), choices_.width);
}

std::string FontText::LeftOut() const { return LeftOutLines(" ", TotalsOf(font_), choices_.width); }

std::string LeftOutLines(const std::string& indent, const Totals& totals, size_t width) {
  const struct {
    Standing standing;
    std::string_view label, words;
  } kinds[] = {{Standing::kHistoric, "Left out", " of older systems (--profile strict)"},
               {Standing::kIgnored, "Ignored", " that the configuration names"},
               {Standing::kKnown, "Known", " that stand in the baseline"}};
  std::string text;
  for (const auto& kind : kinds) {
    const size_t count = totals.Count(kind.standing);
    if (count == 0) continue;
    text += Labelled(
        Padded(indent + std::string(kind.label), indent.size() + kLabelColumns - 1),
        Counted(totals.CountRules(kind.standing), "rule") + ", " + Counted(count, "finding") + std::string(kind.words),
        width);
  }
  return text;
}

}  // namespace tool
