#include "Report/Baseline.h"

#include <Tova/Tova.hpp>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>

#include "Options.h"
#include "Report/EscapedText.h"
#include "Report/Fingerprint.h"
#include "Report/Rules.h"

namespace tool {
namespace {

using nlohmann::json;

uint64_t HashOfTexts(std::string_view one, std::string_view other) { return Fingerprint().Add(one).Add(other).Value(); }

uint64_t Together(uint64_t font, std::string_view test, uint64_t message) {
  return Fingerprint().Add(font).Add(test).Add(message).Value();
}

/// What a message is within its test. Arguments have been put into a hash.
uint64_t HashOfMessage(std::string_view ruleOrText, std::string_view part, int64_t glyph,
                       const Fingerprint& arguments) {
  const auto number = static_cast<uint64_t>(glyph);
  return Fingerprint().Add(ruleOrText).Add(part).Add(number).Add(arguments.Value()).Value();
}

std::string_view TextAt(TovaDictionaryRef dictionary, TovaStringRef key) {
  return Tova::Text(Tova::AsString(TovaDictionaryGetValue(dictionary, key)));
}

std::string FileName(std::string_view path) { return std::string(path.substr(path.rfind('/') + 1)); }

/// How many bytes two texts have in common at their ends.
size_t CommonEnd(std::string_view one, std::string_view other) {
  const auto ends = std::mismatch(one.rbegin(), one.rend(), other.rbegin(), other.rend());
  return static_cast<size_t>(ends.first - one.rbegin());
}

}  // namespace

/// Reads a report, file by file; of a message only its hash is kept, in its place.
class Baseline::Reader {
 public:
  Reader(Baseline& baseline, const std::string& file) : baseline_(baseline), file_(file) {}

  void Read() {
    std::ifstream stream(file_, std::ios::binary);
    std::string line;
    if (!std::getline(stream, line))
      throw UsageError("--baseline: " + file_ + ": " + (errno ? std::strerror(errno) : "empty"));
    try {
      if (IsLineOfFile(line)) {
        do {
          if (!line.empty()) AddFile(json::parse(line, Callback(0)));
        } while (std::getline(stream, line));
      } else {
        stream.clear();
        stream.seekg(0);
        const json head = json::parse(stream, Callback(kDepthOfFileInDocument));
        if (!head.is_object() || !head.contains("files")) Fail("it is no report of this program");
        if (head.contains("options") && head["options"].contains("limitToShown"))
          Fail("it was made with --limit-to-shown");
      }
    } catch (const json::exception&) {
      Fail("it is no report of this program, or it was cut short");
    }
  }

 private:
  static constexpr int kDepthOfFileInDocument = 2;
  static constexpr int kDepthOfMessageInFile = 7;

  [[noreturn]] void Fail(const std::string& what) const { throw UsageError("--baseline: " + file_ + ": " + what); }

  static bool IsFile(const json& value) {
    return value.is_object() && value.contains("path") && value.contains("report");
  }

  /// Whether the report is one in JSON lines, as its first line tells.
  static bool IsLineOfFile(const std::string& line) { return IsFile(json::parse(line, nullptr, false)); }

  /// Turns messages into hashes, and takes files out of a document.
  json::parser_callback_t Callback(int depthOfFile) {
    return [this, depthOfFile](int depth, json::parse_event_t event, json& value) {
      if (event != json::parse_event_t::object_end) return true;
      if (depth == depthOfFile + kDepthOfMessageInFile) value = HashOfValue(value);
      if (depthOfFile == 0 || depth != depthOfFile || !IsFile(value)) return true;
      AddFile(value);
      return false;
    };
  }

  static std::string_view TextIn(const json& object, TovaStringRef key) { return TextIn(object, Tova::Text(key)); }
  static std::string_view TextIn(const json& object, std::string_view key) {
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? std::string_view(found->get_ref<const std::string&>()) : "";
  }
  static const json& ArrayIn(const json& object, TovaStringRef key) {
    static const json kNone = json::array();
    const auto found = object.find(Tova::Text(key));
    return found != object.end() && found->is_array() ? *found : kNone;
  }

  static uint64_t HashOfValue(const json& message) {
    const std::string_view format = TextIn(message, kVornFontTestMessageFormatKey);
    std::string_view name = TextIn(message, "rule");
    Fingerprint arguments;
    for (const json& argument : ArrayIn(message, kVornFontTestMessageArgumentsKey)) {
      if (argument.is_string()) arguments.Add(argument.get_ref<const std::string&>());
      if (argument.is_number_integer()) arguments.Add(static_cast<uint64_t>(argument.get<int64_t>()));
      if (argument.is_number_float()) arguments.Add(argument.get<double>());
    }
    if (name.empty()) name = format.empty() ? TextIn(message, kVornFontTestMessageTextKey) : format;
    const auto glyph = message.find(Tova::Text(kVornFontTestMessageGlyphKey));
    return HashOfMessage(name, TextIn(message, kVornFontTestMessagePartKey),
                         glyph != message.end() && glyph->is_number_integer() ? glyph->get<int64_t>() : -1, arguments);
  }

  void AddFile(const json& file) {
    if (!IsFile(file)) Fail("a line of it is no report of a file");
    if (file.contains("problem")) return;
    const json& report = file["report"];
    if (!report.is_object() ||
        TextIn(report, kVornFontTestCreateReportTypeKey) != Tova::Text(kVornFontTestReportTypeFull)) {
      Fail("it has no messages; a baseline is made with -r full");
    }
    Findings findings;
    const json& fonts = ArrayIn(report, kVornFontTestFontsTestedKey);
    if (fonts.empty() && !ArrayIn(report, kVornFontTestResultKey).empty()) {
      findings.push_back({.hash = HashOfUnopened(), .test = NumberOf({})});
    }
    for (const json& font : fonts) AddFont(font, findings);
    const std::string_view bytes = TextIn(file, "pathBytes");
    const std::string path = bytes.empty() ? std::string(TextIn(file, "path")) : PercentDecoded(bytes);
    auto& kept = baseline_.files_[path];
    if (kept.empty()) baseline_.paths_[FileName(path)].push_back(path);
    kept = std::move(findings);
    kept.shrink_to_fit();
  }

  void AddFont(const json& font, Findings& findings) {
    const uint64_t hash =
        HashOfTexts(TextIn(font, kVornFontTestFontPostScriptNameKey), TextIn(font, kVornFontTestFontNameKey));
    for (const json& test : ArrayIn(font, kVornFontTestArrayKey)) {
      const std::string_view identifier = TextIn(test, kVornFontTestIdentifierKey);
      for (const json& message : ArrayIn(test, kVornFontTestMessagesKey)) {
        if (!message.is_number()) continue;
        findings.push_back({.hash = Together(hash, identifier, message.get<uint64_t>()), .test = NumberOf(identifier)});
      }
    }
  }

  uint32_t NumberOf(std::string_view test) {
    const auto found = std::ranges::find(baseline_.tests_, test);
    if (found == baseline_.tests_.end()) baseline_.tests_.emplace_back(test);
    return static_cast<uint32_t>(std::ranges::find(baseline_.tests_, test) - baseline_.tests_.begin());
  }

  Baseline& baseline_;
  const std::string& file_;
};

Baseline::Baseline(const std::string& file) { Reader(*this, file).Read(); }

const Baseline::Findings* Baseline::FindingsOf(const std::string& path) const {
  if (const auto found = files_.find(path); found != files_.end()) return &found->second;
  const auto same = paths_.find(FileName(path));
  if (same == paths_.end()) return nullptr;
  const auto like =
      std::ranges::max_element(same->second, {}, [&](const std::string& other) { return CommonEnd(path, other); });
  return &files_.find(*like)->second;
}

uint64_t Baseline::HashOf(const FontRecord& font, const TestRecord& test, size_t index) {
  const TovaDictionaryRef message = test.messages.TreeAt(index);
  const Rule* rule = test.messages.JudgementAt(index).rule;
  const Fingerprint arguments =
      Fingerprint().Add(Tova::AsArray(TovaDictionaryGetValue(message, kVornFontTestMessageArgumentsKey)));
  const TovaNumberRef glyph = Tova::AsNumber(TovaDictionaryGetValue(message, kVornFontTestMessageGlyphKey));
  const uint64_t hash =
      HashOfMessage(rule ? rule->name : Tova::Text(test.messages.FormatAt(index)),
                    TextAt(message, kVornFontTestMessagePartKey), glyph ? TovaNumberGetInteger(glyph) : -1, arguments);
  return Together(HashOfTexts(font.postScriptName, font.name), test.identifier, hash);
}

uint64_t Baseline::HashOfUnopened() { return HashOfTexts("no font can be opened", {}); }

}  // namespace tool
