#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Report/Problem.h"
#include "Report/Severity.h"

namespace tool {

struct Ignore;
struct Rule;

/// Whether a finding counts for the run: is shown, and may fail it.
enum class Standing : uint8_t {
  kCounts,
  kHistoric,  ///< its rule is one of older systems, and the profile leaves those out
  kIgnored,   ///< the configuration says, with a reason, that it is to be ignored
  kKnown      ///< it stands in the baseline already
};

inline constexpr size_t kStandingCount = 4;

/// The word for a standing: "historic".
std::string_view Word(Standing standing);

/// What a finding comes to.
struct Judgement {
  Severity severity = Severity::kNonFont;  ///< as it counts
  Severity given = Severity::kNonFont;     ///< as the test gave it
  const Rule* rule = nullptr;              ///< that it breaks; null for one that is not in the catalogue
  Standing standing = Standing::kCounts;
  bool isKnown = false;            ///< whether it stands in the baseline, whatever else it comes to
  const Ignore* ignore = nullptr;  ///< for which it is ignored
};

/// A finding, with what the library tells about its place; texts that it does not tell are empty.
struct Message {
  Severity severity;
  std::string_view text;
  std::string_view format = text;  ///< names the rule: findings of one rule differ in their numbers and names only
  std::string_view table = {};     ///< a tag
  std::optional<int64_t> glyph = std::nullopt;
  std::string_view glyphName = {};
  std::optional<int64_t> character = std::nullopt;  ///< that leads to the glyph
  std::optional<int64_t> offset = std::nullopt;     ///< bytes from the start of the table
  std::string_view part = {};                       ///< of the table, in words
  TovaArrayRef arguments = nullptr;                 ///< that stand in the text; null for none
  const Rule* rule = nullptr;                       ///< see Judgement
  Standing standing = Standing::kCounts;
  bool isKnown = false;            ///< see Judgement
  const Ignore* ignore = nullptr;  ///< see Judgement
};

/// The messages of a test, read from the tree when asked for: there may be very many.
class MessageList {
 public:
  explicit MessageList(TovaArrayRef messages = nullptr) : messages_(messages) {}
  size_t size() const { return static_cast<size_t>(TovaArrayGetCount(messages_)); }
  Message operator[](size_t index) const;
  /// The same message as it stands in the tree.
  TovaDictionaryRef TreeAt(size_t index) const;
  /// Its untranslated format; its text where no format is told.
  TovaStringRef FormatAt(size_t index) const;
  /// What was set; without that, the severity that the test gave it.
  Judgement JudgementAt(size_t index) const;
  /// One for each message.
  void SetJudgements(std::vector<Judgement> judgements) { judgements_ = std::move(judgements); }

 private:
  TovaArrayRef messages_;
  std::vector<Judgement> judgements_;
};

/// What one test found in one font.
struct TestRecord {
  std::string_view identifier;
  std::string_view name;
  std::string_view target;  ///< constant of the table that it examines; empty for none or several
  bool ran = false;         ///< false for the record that says why a font could not be tested
  SeveritySet results;      ///< as the test gave them
  SeveritySet unexplained;  ///< those of them that no message explains, and that count
  MessageList messages;
};

struct FontRecord {
  std::string_view name;
  std::string_view postScriptName;
  std::string_view version;  ///< in its own words: "Version 2.37"
  std::string_view type;     ///< in words for people: "TrueType outlines"
  std::optional<int64_t> glyphCount;
  std::vector<std::string_view> tables;  ///< tags, in the order of the font's directory
  std::vector<TestRecord> tests;
};

/// The report of one file as plain values, which borrow the texts of the library's tree.
struct FileReport {
  std::string path;
  SeveritySet results;                  ///< as the tests gave them
  bool listsFonts = true;               ///< false where nothing but the severities was asked for
  size_t fixed = 0;                     ///< findings of the baseline that are not there any more, where messages tell
  std::vector<size_t> ignoresMet = {};  ///< findings that each ignore of the configuration is for
  bool isKnown = false;                 ///< that no font can be opened stands in the baseline
  bool fails = false;                   ///< whether something in it fails the run
  std::vector<FontRecord> fonts;
  TovaDictionaryRef tree = nullptr;  ///< borrowed
  std::string unopened = {};         ///< why no font of it could be opened, where none could
  Problem problem = {};              ///< why the file was not tested; nothing else is told then
};

FileReport ReadReport(const std::string& path, TovaDictionaryRef tree);
/// The tree of a file that was not tested: nothing was found.
Tova::Dictionary EmptyTree();

/// How many findings count: messages, and one for each severity that the results hold and no message explains.
SeverityCounts CountFindings(const TestRecord& test);

}  // namespace tool
