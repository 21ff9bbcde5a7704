#include "Formats/HtmlFile.h"

#include <algorithm>
#include <map>
#include <set>

#include "Formats/Findings.h"
#include "Formats/GlyphDrawing.h"
#include "Formats/JsonStream.h"
#include "Formats/TextStyle.h"

namespace tool {
namespace {

/// Bounds on what a file adds to the page. The rest is counted.
constexpr size_t kGlyphsPerGroup = 24;  ///< drawn of one rule in one font
constexpr size_t kDrawingsPerFile = 500;
constexpr size_t kPointsPerFile = 100'000;
constexpr size_t kPlainFindingsPerGroup = 5;  ///< in the plain list

/// The findings of a test, by rule.
struct TestGroups {
  const TestRecord* test;  ///< null for a file about whose fonts nothing is told
  std::vector<RuleFindings> groups;
};

/// What is told of a font, or of a file about whose fonts nothing is.
struct FontPart {
  const FontRecord* font;  ///< null for such a file
  std::vector<TestGroups> tests;
};

std::vector<FontPart> PartsOf(const FileReport& report, Detail detail) {
  const auto all = [](const Message&) { return true; };
  std::vector<FontPart> parts;
  if (report.fonts.empty()) return {{nullptr, {{nullptr, GroupFindingsOfFile(report, detail, all)}}}};
  for (const FontRecord& font : report.fonts) {
    parts.push_back({&font, {}});
    for (const TestRecord& test : font.tests) {
      auto groups = GroupFindings(std::span(&test, 1), false, all);
      if (!groups.empty()) parts.back().tests.push_back({&test, std::move(groups)});
    }
  }
  return parts;
}

/// Glyphs that findings of a font name, each once, those of the gravest findings first.
std::vector<int64_t> GlyphsToDraw(const FontPart& part) {
  std::vector<int64_t> glyphs;
  std::set<int64_t> known;
  const auto add = [&](const RuleFindings& group) {
    std::set<int64_t> ofGroup;
    for (const Message& message : group.shown) {
      if (ofGroup.size() == kGlyphsPerGroup) return;
      if (!message.glyph || !ofGroup.insert(*message.glyph).second) continue;
      if (known.insert(*message.glyph).second) glyphs.push_back(*message.glyph);
    }
  };
  for (const Severity severity : kGravestFirst) {
    for (const TestGroups& test : part.tests) {
      for (const RuleFindings& group : test.groups) {
        if (group.severity == severity) add(group);
      }
    }
  }
  return glyphs;
}

/// Writes the part of one file.
class FileWriter {
 public:
  FileWriter(const FileReport& report, Detail detail, const TextSink& sink)
      : report_(report), parts_(PartsOf(report, detail)), sink_(sink) {}

  void Write() {
    WritePlainList();
    WriteData();
    GlyphDrawer drawer(report_.path, report_.fonts.size());
    for (size_t i = 0; i < parts_.size(); ++i) WriteDrawings(drawer, i);
  }

 private:
  void WritePlainList();
  void WritePlainGroup(const RuleFindings& group);
  void WriteData();
  void WriteRules(JsonStream& json);
  void WriteFont(JsonStream& json, const FontPart& part);
  void WriteGroup(JsonStream& json, const TestRecord* test, const RuleFindings& group);
  void WriteDrawings(GlyphDrawer& drawer, size_t font);
  void WriteScript(std::string_view kind, const std::function<void(JsonStream&)>& write);

  const FileReport& report_;
  std::vector<FontPart> parts_;
  const TextSink& sink_;
  std::map<const Rule*, size_t> rules_;  ///< their places in the list that the data begins with
  size_t drawings_ = 0;
  size_t points_ = 0;
};

void FileWriter::WritePlainList() {
  sink_("<noscript>\n<section>\n<h2>" + EscapeForMarkup(report_.path) + "</h2>\n");
  if (report_.problem) sink_("<p>Not tested: " + EscapeForMarkup(report_.problem.text) + "</p>\n");
  for (const FontPart& part : parts_) {
    if (part.font) {
      sink_("<h3>" + EscapeForMarkup(part.font->name) + "</h3>\n<p>" + EscapeForMarkup(part.font->type) +
            (part.tests.empty() ? ": nothing found" : "") + "</p>\n");
    }
    for (const Severity severity : kGravestFirst) {
      for (const TestGroups& test : part.tests) {
        for (const RuleFindings& group : test.groups) {
          if (group.severity == severity) WritePlainGroup(group);
        }
      }
    }
  }
  sink_("</section>\n</noscript>\n");
}

void FileWriter::WritePlainGroup(const RuleFindings& group) {
  const std::string severity(Word(group.severity));
  std::string text = "<details><summary><b class=\"severity " + severity + "\">" + severity + "</b> " +
                     Grouped(group.count) + " &times; " + EscapeForMarkup(group.rule ? group.rule->title : group.name);
  if (group.rule) text += " <code>" + EscapeForMarkup(group.name) + "</code>";
  if (group.standing != Standing::kCounts) text += " (" + std::string(Word(group.standing)) + ")";
  text += "</summary>\n";
  if (group.rule) {
    const Rule& rule = *group.rule;
    text += "<p>" + EscapeForMarkup(rule.means) + "</p>\n<ul><li>Why: " + EscapeForMarkup(rule.why) +
            "</li><li>Fix: " + EscapeForMarkup(rule.fix) + "</li><li>Document: " + EscapeForMarkup(rule.document) +
            "</li></ul>\n";
  }
  text += "<ol>\n";
  const size_t shown = std::min(group.shown.size(), kPlainFindingsPerGroup);
  for (const Message& message : std::span(group.shown).first(shown)) {
    text += "<li>" + EscapeForMarkup(message.text) + "</li>\n";
  }
  text += "</ol>\n";
  if (group.count > shown) text += "<p>" + Grouped(group.count - shown) + " more</p>\n";
  sink_(text + "</details>\n");
}

/// Writes data as an element that no browser runs. No "<" may stand in it: it could begin the end of the element.
void FileWriter::WriteScript(std::string_view kind, const std::function<void(JsonStream&)>& write) {
  sink_("<script type=\"application/json\" class=\"" + std::string(kind) + "\">");
  const TextSink escape = [this](std::string_view text) {
    for (size_t at; (at = text.find('<')) != text.npos; text.remove_prefix(at + 1)) {
      sink_(text.substr(0, at));
      sink_("\\u003c");
    }
    sink_(text);
  };
  JsonStream json(escape);
  write(json);
  json.Finish();
  sink_("</script>\n");
}

/// Text as it is to be seen: what would hide or reorder the line is escaped as for a terminal.
std::string Shown(std::string_view text) { return EscapeForTerminal(text); }

void FileWriter::WriteData() {
  WriteScript("file", [this](JsonStream& json) {
    json.Open('{').Field("path", Shown(report_.path));
    if (report_.problem) json.Field("problem", Shown(report_.problem.text));
    WriteRules(json);
    json.Key("fonts").Open('[');
    for (const FontPart& part : parts_) WriteFont(json, part);
    json.Close(']').Close('}');
  });
}

/// The rules that the findings of the file break.
void FileWriter::WriteRules(JsonStream& json) {
  json.Key("rules").Open('[');
  const auto add = [&](const Rule* rule) {
    if (!rule || !rules_.try_emplace(rule, rules_.size()).second) return;
    json.Open('{').Field("name", rule->name).Field("state", Word(rule->state)).Field("title", rule->title);
    json.Field("means", rule->means).Field("why", rule->why).Field("fix", rule->fix);
    json.Field("document", rule->document).Close('}');
  };
  for (const FontPart& part : parts_) {
    for (const TestGroups& test : part.tests) {
      for (const RuleFindings& group : test.groups) add(group.rule);
    }
  }
  json.Close(']');
}

void FileWriter::WriteFont(JsonStream& json, const FontPart& part) {
  json.Open('{');
  if (const FontRecord* font = part.font) {
    // Where there is no PostScript name the library says so in angle brackets, which such a name cannot have.
    const bool hasPostScriptName = !font->postScriptName.starts_with('<');
    json.Field("name", Shown(font->name));
    json.Field("postScriptName", hasPostScriptName ? Shown(font->postScriptName) : "");
    json.Field("type", Shown(font->type));
  }
  json.Key("groups").Open('[');
  for (const TestGroups& test : part.tests) {
    for (const RuleFindings& group : test.groups) WriteGroup(json, test.test, group);
  }
  json.Close(']').Close('}');
}

void FileWriter::WriteGroup(JsonStream& json, const TestRecord* test, const RuleFindings& group) {
  json.Open('{');
  if (group.rule) {
    json.Key("rule").Number(rules_[group.rule]);
  } else {
    json.Field("title", Shown(group.name));
  }
  if (test) json.Field("test", test->identifier).Field("testName", test->name);
  json.Field("severity", Word(group.severity));
  if (group.standing != Standing::kCounts) json.Field("standing", Word(group.standing));
  if (!group.shown.empty()) json.Field("table", Shown(group.shown.front().table));
  // Each finding: text, glyph, its name, offset, part; -1 is no number, and what is not known at the end is left out.
  json.Key("findings").Open('[');
  for (const Message& message : group.shown) {
    const bool hasPlace = message.offset || !message.part.empty();
    json.Open('[').Text(Shown(message.text));
    if (message.glyph || hasPlace) json.Number(message.glyph.value_or(-1));
    if (!message.glyphName.empty() || hasPlace) json.Text(Shown(message.glyphName));
    if (hasPlace) json.Number(message.offset.value_or(-1));
    if (!message.part.empty()) json.Text(Shown(message.part));
    json.Close(']');
  }
  json.Close(']').Close('}');
}

void WriteBox(JsonStream& json, std::string_view name, const std::optional<GlyphBox>& box) {
  if (!box) return;
  json.Key(name).Open('[').Number(box->xMin).Number(box->yMin).Number(box->xMax).Number(box->yMax).Close(']');
}

/// Each point: x and y from the point before, and the kind.
void WritePoints(JsonStream& json, const GlyphDrawing& drawing) {
  json.Key("points").Open('[');
  GlyphPoint last;
  for (const GlyphPoint& point : drawing.points) {
    json.Number(point.x - last.x).Number(point.y - last.y).Number(static_cast<int>(point.kind));
    last = point;
  }
  json.Close(']').Key("ends").Open('[');
  for (const size_t end : drawing.contourEnds) json.Number(end);
  json.Close(']');
}

void WriteComponents(JsonStream& json, const std::vector<GlyphComponent>& components) {
  json.Key("components").Open('[');
  for (const GlyphComponent& component : components) {
    json.Open('{').Key("glyph").Number(component.glyph).Key("x").Number(component.x).Key("y").Number(component.y);
    if (component.byPoints) json.Key("byPoints").Bool(true);
    WriteBox(json, "box", component.box);
    if (!component.refusal.empty()) json.Field("refusal", component.refusal);
    json.Close('}');
  }
  json.Close(']');
}

void WriteDrawing(JsonStream& json, const GlyphDrawing& drawing) {
  json.Open('{');
  if (!drawing.refusal.empty()) json.Field("refusal", drawing.refusal);
  if (drawing.advance) json.Key("advance").Number(*drawing.advance);
  WriteBox(json, "stored", drawing.stored);
  WriteBox(json, "found", drawing.found);
  if (!drawing.points.empty()) WritePoints(json, drawing);
  if (!drawing.components.empty()) WriteComponents(json, drawing.components);
  json.Close('}');
}

void FileWriter::WriteDrawings(GlyphDrawer& drawer, size_t index) {
  const std::vector<int64_t> glyphs = GlyphsToDraw(parts_[index]);
  if (glyphs.empty()) return;
  const std::string& refusal = drawer.Open(index, parts_[index].font->postScriptName);
  WriteScript("glyphs", [&](JsonStream& json) {
    json.Open('{').Key("font").Number(index).Key("unitsPerEm").Number(drawer.UnitsPerEm());
    json.Field("refusal", refusal).Key("glyphs").Open('{');
    for (const int64_t glyph : glyphs) {
      if (!refusal.empty() || drawings_ == kDrawingsPerFile || points_ >= kPointsPerFile) break;
      const GlyphDrawing drawing = drawer.Draw(glyph);
      ++drawings_;
      points_ += drawing.points.size();
      WriteDrawing(json.Key(std::to_string(glyph)), drawing);
    }
    json.Close('}').Close('}');
  });
}

}  // namespace

void WriteHtmlFile(const FileReport& report, Detail detail, const TextSink& sink) {
  FileWriter(report, detail, sink).Write();
}

}  // namespace tool
