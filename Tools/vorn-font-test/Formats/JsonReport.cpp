#include "Formats/JsonReport.h"

#include "Formats/JsonValue.h"
#include "Report/Configuration.h"
#include "Report/Rules.h"
#include "Run/Session.h"

namespace tool {
namespace {

/// Changes when readers of the format have to.
constexpr int64_t kFormatVersion = 1;

/// Writes the entries before "files".
class HeadWriter {
 public:
  HeadWriter(const Options& options, const Totals& totals, const TextSink& sink)
      : options_(options), totals_(totals), json_(sink) {}

  void Write() {
    json_.BeginDictionary();
    Number("formatVersion", kFormatVersion);
    Text("tool", "vorn-font-test");
    Text("toolVersion", VORN_VERSION);
    WriteExit();
    WriteOptions();
    WriteTotals();
    WriteRules();
    WriteIgnores();
  }

 private:
  void Text(std::string_view key, std::string_view text) {
    json_.Key(key);
    json_.Text(text);
  }
  void Number(std::string_view key, size_t number) {
    json_.Key(key);
    json_.Number(static_cast<int64_t>(number));
  }
  void Flag(std::string_view key, bool value) {
    if (!value) return;
    json_.Key(key);
    json_.Value(Tova::Boolean(true));
  }
  void Texts(std::string_view key, const std::vector<std::string>& texts) {
    if (texts.empty()) return;
    json_.Key(key);
    json_.BeginArray();
    for (const std::string& text : texts) json_.Text(text);
    json_.EndArray();
  }

  void WriteExit() {
    const int status = totals_.files + totals_.unreadable == 0 ? kUsageOrInput : StatusOf(totals_);
    json_.Key("exit");
    json_.BeginDictionary();
    Number("code", static_cast<size_t>(status));
    Text("reason", ReasonOf(status));
    json_.EndDictionary();
  }

  std::string ReasonOf(int status) const {
    const std::string level = options_.failOn ? std::string(Word(*options_.failOn)) + " or above" : "that fails a run";
    switch (status) {
      case kNothingFound:
        return "nothing " + level + " was found";
      case kSomethingFound:
        return "something " + level + " was found";
      case kUsageOrInput:
        return totals_.unreadable > 0 ? "a path could not be read" : "no font files given";
      default:
        return "a file could not be tested";
    }
  }

  /// Those that decide what stands in the report.
  void WriteOptions() {
    json_.Key("options");
    json_.BeginDictionary();
    Text("report", options_.detail == Detail::kFull      ? "full"
                   : options_.detail == Detail::kSummary ? "summary"
                                                         : "results");
    Text("profile", options_.profile == Profile::kStrict ? "strict" : "default");
    Text("failOn", options_.failOn ? Word(*options_.failOn) : "never");
    Text("show", Word(options_.show));
    Text("enable", Word(options_.enable));
    Number("maxMessages", options_.maxMessages);
    Texts("tests", options_.tests);
    Texts("excludes", options_.excludes);
    Texts("types", options_.types);
    Flag("duplicates", options_.duplicates);
    Flag("limitToShown", options_.limitToShown);
    Flag("noTimes", !options_.times);
    if (!options_.language.empty()) Text("language", options_.language);
    if (options_.configuration) Text("configuration", options_.configuration->file);
    if (options_.baseline) Text("baseline", *options_.baseline);
    json_.EndDictionary();
  }

  void WriteTotals() {
    json_.Key("totals");
    json_.BeginDictionary();
    Number("files", totals_.files);
    Number("fonts", totals_.fonts);
    Number("tests", totals_.tests);
    Number("failing", totals_.reached);
    Number("notTested", totals_.failed);
    Number("unreadable", totals_.unreadable);
    json_.Key("findings");
    json_.BeginDictionary();
    for (const Severity severity : kGravestFirst) Number(Word(severity), totals_.findings[severity]);
    json_.EndDictionary();
    for (const Standing standing : {Standing::kHistoric, Standing::kIgnored, Standing::kKnown}) {
      Number(Word(standing), totals_.Count(standing));
    }
    Number("fixed", totals_.fixed);
    json_.EndDictionary();
  }

  /// Those that were broken, with what there is to read about them.
  void WriteRules() {
    json_.Key("rules");
    json_.BeginArray();
    for (size_t i = 0; i < totals_.rules.size(); ++i) {
      if (totals_.rules[i] == StandingCounts{}) continue;
      const Rule& rule = AllRules()[i];
      json_.BeginDictionary();
      Text("rule", rule.name);
      Text("state", Word(rule.state));
      Text("severity", Word(rule.severity));
      Text("title", rule.title);
      Text("document", rule.document);
      Text("link", rule.Link());
      for (size_t standing = 0; standing < kStandingCount; ++standing) {
        const size_t count = totals_.rules[i][standing];
        if (count > 0) Number(Word(static_cast<Standing>(standing)), count);
      }
      json_.EndDictionary();
    }
    json_.EndArray();
  }

  void WriteIgnores() {
    if (!options_.configuration || options_.configuration->ignores.empty()) return;
    json_.Key("ignores");
    json_.BeginArray();
    for (size_t i = 0; i < options_.configuration->ignores.size(); ++i) {
      const Ignore& ignore = options_.configuration->ignores[i];
      json_.BeginDictionary();
      Text("place", ignore.place);
      Text("rule", ignore.rule);
      Text("font", ignore.font);
      Text("reason", ignore.reason);
      Number("findings", i < totals_.ignoresMet.size() ? totals_.ignoresMet[i] : 0);
      json_.EndDictionary();
    }
    json_.EndArray();
  }

  const Options& options_;
  const Totals& totals_;
  JsonWriter json_;
};

}  // namespace

std::string JsonReport::Head(const Totals& totals) const {
  std::string text;
  const TextSink sink = [&text](std::string_view piece) { text += piece; };
  HeadWriter(options_, totals, sink).Write();
  return text + ",\n\"files\": [\n";
}

void JsonReport::WriteFile(const FileReport& report, const TextSink& sink) const {
  JsonWriter writer(sink);
  WriteFileEntry(report, choices_, writer);
}

std::string_view JsonReport::Between(bool, bool) const { return ",\n"; }

std::string JsonReport::End(const Totals& totals) const { return totals.files == 0 ? "]}\n" : "\n]}\n"; }

void JsonLinesReport::WriteFile(const FileReport& report, const TextSink& sink) const {
  JsonWriter writer(sink);
  WriteFileEntry(report, choices_, writer);
  sink("\n");
}

}  // namespace tool
