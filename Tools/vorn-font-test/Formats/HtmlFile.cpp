#include "Formats/HtmlFile.h"

#include <algorithm>
#include <map>
#include <set>

#include "Formats/FindingGroups.h"
#include "Formats/GlyphDrawing.h"
#include "Formats/HtmlText.h"
#include "Formats/TextStyle.h"

namespace tool {
namespace {

constexpr std::string_view kUnopened = "The file cannot be opened as a font.";

/// Bounds on what a file adds to the page. The rest is counted.
constexpr size_t kGlyphsPerGroup = 24;  ///< drawn of one rule in one font
constexpr size_t kDrawingsPerFile = 500;
constexpr size_t kPointsPerFile = 100'000;
constexpr size_t kPlainMessagesPerGroup = 5;  ///< in the plain list

std::string_view Word(Standing standing) {
  switch (standing) {
    case Standing::kHistoric:
      return "historic";
    case Standing::kIgnored:
      return "ignored";
    case Standing::kKnown:
      return "known";
    case Standing::kCounts:
      break;
  }
  return "counts";
}

/// Writes the part of one file.
class FileWriter {
 public:
  FileWriter(const FileReport& report, const TextSink& sink) : report_(report), sink_(sink) {
    for (const FontRecord& font : report.fonts) groups_.push_back(GroupFindings(font));
  }

  void Write() {
    WritePlainList();
    WriteData();
    GlyphDrawer drawer(report_.path, report_.fonts.size());
    for (size_t i = 0; i < report_.fonts.size(); ++i) WriteDrawings(drawer, i);
  }

 private:
  /// Hands on what has been written so far, when that is much or at the end.
  void Flush(size_t from = size_t{1} << 16) {
    if (out_.size() < from) return;
    sink_(out_);
    out_.clear();
  }

  void WritePlainList();
  void WritePlainGroup(const FindingGroup& group);
  void WriteData();
  void WriteRules(ScriptJson& json);
  void WriteFont(ScriptJson& json, size_t font);
  void WriteGroup(ScriptJson& json, const FindingGroup& group);
  std::vector<int64_t> GlyphsToDraw(size_t font) const;
  void WriteDrawings(GlyphDrawer& drawer, size_t font);
  void WriteDrawing(ScriptJson& json, const GlyphDrawing& drawing);

  const FileReport& report_;
  const TextSink& sink_;
  std::vector<std::vector<FindingGroup>> groups_;  ///< of each font
  std::map<const Rule*, int64_t> rules_;           ///< their places in the list that the data begins with
  size_t drawings_ = 0;
  size_t points_ = 0;
  std::string out_;
};

void FileWriter::WritePlainList() {
  out_ += "<noscript>\n<section>\n<h2>" + EscapeHtml(report_.path) + "</h2>\n";
  if (report_.fonts.empty() && report_.results.Has(Severity::kFatal)) {
    out_.append("<p>").append(kUnopened).append("</p>\n");
  }
  for (size_t i = 0; i < report_.fonts.size(); ++i) {
    const FontRecord& font = report_.fonts[i];
    out_ += "<h3>" + EscapeHtml(font.name) + "</h3>\n<p>" + EscapeHtml(font.type) +
            (groups_[i].empty() ? ": nothing found" : "") + "</p>\n";
    for (const FindingGroup& group : groups_[i]) WritePlainGroup(group);
  }
  out_ += "</section>\n</noscript>\n";
  Flush(1);
}

void FileWriter::WritePlainGroup(const FindingGroup& group) {
  const std::string severity(Word(group.severity));
  out_ += "<details><summary><b class=\"severity " + severity + "\">" + severity + "</b> " + Grouped(group.Count()) +
          " &times; " + EscapeHtml(group.Title());
  if (group.rule) out_ += " <code>" + EscapeHtml(group.rule->name) + "</code>";
  out_ += "</summary>\n";
  if (group.rule) {
    const Rule& rule = *group.rule;
    out_ += "<p>" + EscapeHtml(rule.means) + "</p>\n<ul><li>Why: " + EscapeHtml(rule.why) +
            "</li><li>Fix: " + EscapeHtml(rule.fix) + "</li><li>Document: " + EscapeHtml(rule.document) +
            "</li></ul>\n";
  }
  out_ += "<ol>\n";
  const size_t shown = std::min(group.messages.size(), kPlainMessagesPerGroup);
  for (size_t i = 0; i < shown; ++i) {
    out_ += "<li>" + EscapeHtml(group.test->messages[group.messages[i]].text) + "</li>\n";
  }
  out_ += "</ol>\n";
  if (group.messages.size() > shown) out_ += "<p>" + Grouped(group.messages.size() - shown) + " more</p>\n";
  out_ += "</details>\n";
  Flush();
}

void FileWriter::WriteData() {
  ScriptJson json(out_);
  out_ += "<script type=\"application/json\" class=\"file\">";
  json.Open('{');
  json.TextEntry("path", report_.path);
  WriteRules(json);
  json.Key("results");
  json.Open('[');
  for (Severity severity : kGravestFirst) {
    if (report_.results.Has(severity)) json.Text(Word(severity));
  }
  json.Close(']');
  json.Key("fonts");
  json.Open('[');
  for (size_t i = 0; i < report_.fonts.size(); ++i) WriteFont(json, i);
  json.Close(']');
  json.Close('}');
  out_ += "</script>\n";
  Flush(1);
}

/// The rules that the findings of the file break.
void FileWriter::WriteRules(ScriptJson& json) {
  json.Key("rules");
  json.Open('[');
  for (const auto& groups : groups_) {
    for (const FindingGroup& group : groups) {
      if (!group.rule || !rules_.try_emplace(group.rule, static_cast<int64_t>(rules_.size())).second) continue;
      const Rule& rule = *group.rule;
      json.Open('{');
      json.TextEntry("name", rule.name);
      json.TextEntry("state", Word(rule.state));
      json.TextEntry("title", rule.title);
      json.TextEntry("means", rule.means);
      json.TextEntry("why", rule.why);
      json.TextEntry("fix", rule.fix);
      json.TextEntry("document", rule.document);
      json.Close('}');
    }
  }
  json.Close(']');
}

void FileWriter::WriteFont(ScriptJson& json, size_t index) {
  const FontRecord& font = report_.fonts[index];
  json.Open('{');
  json.TextEntry("name", font.name);
  json.TextEntry("postScriptName", font.postScriptName);
  json.TextEntry("type", font.type);
  json.NumberEntry("testsRun", std::ranges::count_if(font.tests, &TestRecord::ran));
  json.Key("groups");
  json.Open('[');
  for (const FindingGroup& group : groups_[index]) WriteGroup(json, group);
  json.Close(']');
  json.Close('}');
}

void FileWriter::WriteGroup(ScriptJson& json, const FindingGroup& group) {
  json.Open('{');
  if (group.rule) {
    json.NumberEntry("rule", rules_[group.rule]);
  } else {
    json.TextEntry("title", group.Title());
  }
  json.TextEntry("test", group.test->identifier);
  json.TextEntry("testName", group.test->name);
  json.TextEntry("severity", Word(group.severity));
  if (group.standing != Standing::kCounts) json.TextEntry("standing", Word(group.standing));
  if (!group.table.empty()) json.TextEntry("table", group.table);
  json.Key("findings");  // each: text, glyph, its name, offset, part; what is not known is null, or left out at the end
  json.Open('[');
  const auto optionalNumber = [&](const std::optional<int64_t>& number) {
    number ? json.Number(*number) : json.Null();
  };
  for (size_t index : group.messages) {
    const Message message = group.test->messages[index];
    json.Open('[');
    json.Text(message.text);
    const bool hasPlace = message.offset || !message.part.empty();
    if (message.glyph || hasPlace) optionalNumber(message.glyph);
    if (!message.glyphName.empty() || hasPlace) json.Text(message.glyphName);
    if (hasPlace) optionalNumber(message.offset);
    if (!message.part.empty()) json.Text(message.part);
    json.Close(']');
    Flush();
  }
  json.Close(']');
  json.Close('}');
}

/// Glyphs that findings of a font name, each once, those of the gravest findings first.
std::vector<int64_t> FileWriter::GlyphsToDraw(size_t font) const {
  std::vector<int64_t> glyphs;
  std::set<int64_t> known;
  for (const FindingGroup& group : groups_[font]) {
    std::set<int64_t> ofGroup;
    for (size_t index : group.messages) {
      if (ofGroup.size() == kGlyphsPerGroup) break;
      const std::optional<int64_t> glyph = group.test->messages[index].glyph;
      if (glyph && ofGroup.insert(*glyph).second && known.insert(*glyph).second) glyphs.push_back(*glyph);
    }
  }
  return glyphs;
}

void FileWriter::WriteDrawings(GlyphDrawer& drawer, size_t index) {
  const std::vector<int64_t> glyphs = GlyphsToDraw(index);
  if (glyphs.empty()) return;
  const std::string& refusal = drawer.Open(index, report_.fonts[index].postScriptName);
  ScriptJson json(out_);
  out_ += "<script type=\"application/json\" class=\"glyphs\">";
  json.Open('{');
  json.NumberEntry("font", static_cast<int64_t>(index));
  json.NumberEntry("unitsPerEm", drawer.UnitsPerEm());
  json.TextEntry("refusal", refusal);
  json.Key("glyphs");
  json.Open('{');
  for (int64_t glyph : glyphs) {
    if (!refusal.empty() || drawings_ == kDrawingsPerFile || points_ >= kPointsPerFile) break;
    const GlyphDrawing drawing = drawer.Draw(glyph);
    ++drawings_;
    points_ += drawing.points.size();
    json.Key(std::to_string(glyph));
    WriteDrawing(json, drawing);
    Flush();
  }
  json.Close('}');
  json.Close('}');
  out_ += "</script>\n";
  Flush(1);
}

void FileWriter::WriteDrawing(ScriptJson& json, const GlyphDrawing& drawing) {
  const auto box = [&](std::string_view name, const std::optional<GlyphBox>& values) {
    if (!values) return;
    json.Key(name);
    json.Open('[');
    for (int32_t value : {values->xMin, values->yMin, values->xMax, values->yMax}) json.Number(value);
    json.Close(']');
  };
  json.Open('{');
  if (!drawing.refusal.empty()) json.TextEntry("refusal", drawing.refusal);
  if (drawing.advance) json.NumberEntry("advance", *drawing.advance);
  box("stored", drawing.stored);
  box("found", drawing.found);
  if (!drawing.points.empty()) {
    json.Key("points");  // x and y from the point before, and the kind
    json.Open('[');
    GlyphPoint last;
    for (const GlyphPoint& point : drawing.points) {
      json.Number(point.x - last.x), json.Number(point.y - last.y), json.Number(static_cast<int64_t>(point.kind));
      last = point;
    }
    json.Close(']');
    json.Key("ends");
    json.Open('[');
    for (size_t end : drawing.contourEnds) json.Number(static_cast<int64_t>(end));
    json.Close(']');
  }
  if (!drawing.components.empty()) json.Key("components"), json.Open('[');
  for (const GlyphComponent& component : drawing.components) {
    json.Open('{');
    json.NumberEntry("glyph", component.glyph);
    json.NumberEntry("x", component.x);
    json.NumberEntry("y", component.y);
    if (component.byPoints) json.NumberEntry("byPoints", 1);
    box("box", component.box);
    if (!component.refusal.empty()) json.TextEntry("refusal", component.refusal);
    json.Close('}');
  }
  if (!drawing.components.empty()) json.Close(']');
  json.Close('}');
}

}  // namespace

void WriteHtmlFile(const FileReport& report, const TextSink& sink) { FileWriter(report, sink).Write(); }

}  // namespace tool
