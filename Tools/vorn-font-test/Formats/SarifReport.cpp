#include "Formats/SarifReport.h"

#include <array>
#include <cstdio>

#include "Formats/JsonStream.h"
#include "Report/Configuration.h"
#include "Report/Fingerprint.h"

namespace tool {
namespace {

std::string_view Level(Severity severity) {
  switch (AlertOf(severity)) {
    case Alert::kError:
      return "error";
    case Alert::kWarning:
      return "warning";
    case Alert::kNotice:
      break;
  }
  return "note";
}

/// The path as a URI reference; one from the root gets the scheme.
std::string Uri(std::string_view path) { return (path.starts_with('/') ? "file://" : "") + PercentEncoded(path); }

/// What a finding is from run to run, whatever the language of its words and the level it is given.
std::string FingerprintOf(const FontRecord& font, const TestRecord& test, const Message& message) {
  return Fingerprint()
      .Add(font.name)
      .Add(font.postScriptName)
      .Add(test.identifier)
      .Add(message.rule ? message.rule->name : Word(message.severity))
      .Add(message.format)
      .Add(message.part)
      .Add(static_cast<uint64_t>(message.glyph.value_or(-1)))
      .Add(message.arguments)
      .Text();
}

/// Writes the findings of a file.
class Results {
 public:
  Results(const std::string& path, bool hasBaseline, const TextSink& sink)
      : uri_(Uri(path)), hasBaseline_(hasBaseline), json_(sink) {}

  /// The font and the test are empty for a finding about the file.
  void Write(const FontRecord& font, const TestRecord& test, const Message& message);
  void Finish() { json_.Finish(); }

 private:
  void WriteStanding(const Message& message);
  void WritePlace(const FontRecord& font, const Message& message);
  void WriteProperties(const TestRecord& test, const Message& message);

  std::string uri_;
  bool hasBaseline_;
  JsonStream json_;
  bool any_ = false;
};

void Results::Write(const FontRecord& font, const TestRecord& test, const Message& message) {
  const Rule* rule = message.rule;
  if (any_) json_.Line();
  any_ = true;
  json_.Open('{');
  if (const auto name = rule ? rule->name : test.identifier; !name.empty()) json_.Field("ruleId", name);
  if (rule) json_.Key("ruleIndex").Number(rule - AllRules().data());
  WriteStanding(message);
  json_.Message("message", message.text);
  WritePlace(font, message);
  json_.Key("partialFingerprints").Open('{');
  json_.Field("finding/v1", FingerprintOf(font, test, message));
  json_.Close('}');
  WriteProperties(test, message);
  json_.Close('}');
}

void Results::WriteStanding(const Message& message) {
  const bool counts = message.standing != Standing::kHistoric;
  if (!counts) json_.Field("kind", "informational");  // which no level goes with
  json_.Field("level", counts ? Level(message.severity) : "none");
  if (hasBaseline_) json_.Field("baselineState", message.isKnown ? "unchanged" : "new");
  if (message.ignore) {
    json_.Key("suppressions").Open('[').Open('{').Field("kind", "external");
    json_.Field("justification", message.ignore->reason).Close('}').Close(']');
  }
}

void Results::WritePlace(const FontRecord& font, const Message& message) {
  json_.Key("locations").Open('[').Open('{').Key("physicalLocation").Open('{');
  json_.Key("artifactLocation").Open('{').Field("uri", uri_).Close('}').Close('}');
  std::string_view name = font.name.empty() ? font.postScriptName : font.name;
  if (!name.empty()) {
    std::string_view kind = "font";
    std::string path(name);
    std::string glyph;
    if (!message.table.empty()) {
      path.append("/").append(name = message.table);
      kind = "table";
    }
    if (message.glyph) {
      glyph = message.glyphName.empty() ? std::to_string(*message.glyph) : std::string(message.glyphName);
      path.append("/").append(name = glyph);
      kind = "glyph";
    }
    json_.Key("logicalLocations").Open('[').Open('{').Field("name", name).Field("fullyQualifiedName", path);
    json_.Field("kind", kind).Close('}').Close(']');
  }
  json_.Close('}').Close(']');
}

/// What has no place in the format. An offset counts from the start of the table, which stands somewhere in the file,
/// and so makes no region.
void Results::WriteProperties(const TestRecord& test, const Message& message) {
  json_.Key("properties").Open('{').Field("severity", Word(message.severity));
  if (!test.identifier.empty()) json_.Field("test", test.identifier);
  if (!message.table.empty()) json_.Field("table", message.table);
  if (message.glyph) json_.Key("glyph").Number(*message.glyph);
  if (message.offset) json_.Key("offsetInTable").Number(*message.offset);
  if (!message.part.empty()) json_.Field("part", message.part);
  json_.Close('}');
}

void WriteRule(const Rule& rule, JsonStream& json) {
  json.Line().Open('{').Field("id", rule.name);
  json.Message("shortDescription", rule.title).Message("fullDescription", rule.means);
  json.Message("help", std::string("Why: ")
                           .append(rule.why)
                           .append("\nFix: ")
                           .append(rule.fix)
                           .append("\nDocument: ")
                           .append(rule.document));
  json.Key("defaultConfiguration").Open('{').Field("level", Level(rule.severity)).Close('}');
  json.Key("properties").Open('{').Field("severity", Word(rule.severity)).Field("state", Word(rule.state));
  json.Key("tags").Open('[').Text(rule.Group()).Close(']').Close('}').Close('}');
}

void WriteTotals(const Totals& totals, JsonStream& json) {
  json.Key("properties").Open('{').Key("files").Number(totals.files).Key("fonts").Number(totals.fonts);
  json.Key("tests").Number(totals.tests).Key("notRead").Number(totals.unreadable);
  json.Key("notTested").Number(totals.failed).Key("findings").Open('{');
  for (const Severity severity : kGravestFirst) json.Key(Word(severity)).Number(totals.findings[severity]);
  json.Close('}').Close('}');
}

}  // namespace

std::string SarifReport::Head(const Totals&) const { return "{\"version\":\"2.1.0\",\"runs\":[{\"results\":[\n"; }

void SarifReport::WriteFile(const FileReport& report, const TextSink& sink) const {
  Results results(report.path, hasBaseline_, sink);
  for (const FontRecord& font : report.fonts) {
    for (const TestRecord& test : font.tests) {
      ForEachFinding(test, [&](const Message& message) { results.Write(font, test, message); });
    }
  }
  for (const Message& message : FindingsOfFile(report, detail_)) results.Write(FontRecord(), TestRecord(), message);
  results.Finish();
}

std::string_view SarifReport::Between(bool, bool) const { return ",\n"; }

std::string SarifReport::End(const Totals& totals) const {
  std::string text = "\n],";
  const TextSink append = [&text](std::string_view piece) { text += piece; };
  JsonStream json(append);
  json.Key("tool").Open('{').Key("driver").Open('{').Field("name", "vorn-font-test").Field("version", VORN_VERSION);
  json.Key("rules").Open('[');
  for (const Rule& rule : AllRules()) WriteRule(rule, json);
  json.Close(']').Close('}').Close('}').Line();
  json.Key("invocations").Open('[').Open('{').Key("executionSuccessful").Bool(totals.unreadable + totals.failed == 0);
  json.Close('}').Close(']').Line();
  WriteTotals(totals, json);
  json.Finish();
  return text + "}]}\n";
}

}  // namespace tool
