#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

#include "EscapedText.h"
#include "JsonValue.h"
#include "TextReport.h"
#include "support/TemporaryFolder.h"
#include "support/Values.h"

namespace tool {
namespace {

using namespace testing;

using test::Array;
using test::Dictionary;

Tova::MutableArray Constants(const std::vector<Severity>& severities) {
  const auto constants = Array({});
  for (const Severity severity : severities) TovaArrayAppendValue(constants.get(), Constant(severity));
  return constants;
}

Tova::Dictionary MakeTest(std::string_view name, const std::vector<Severity>& results,
                          const std::vector<Message>& messages, TovaStringRef severityKey = kVornFontTestResultKey) {
  const auto values = Array({});
  for (const auto& [severity, text, format] : messages) {
    const Tova::String string = Tova::MakeString(text);
    TovaArrayAppendValue(values.get(), Dictionary({{severityKey, Constant(severity)},
                                                   {kVornFontTestMessageTextKey, string.get()},
                                                   {kVornFontTestMessageFormatKey, Tova::MakeString(format).get()}})
                                           .get());
  }
  return Dictionary({{kVornFontTestNameKey, Tova::MakeString(name).get()},
                     {kVornFontTestIdentifierKey, Tova::MakeString("test.id").get()},
                     {kVornFontTestTimeStampKey, Tova::Adopt(TovaDateCreate(0)).get()},
                     {kVornFontTestResultKey, Constants(results).get()},
                     {kVornFontTestMessagesKey, values.get()}});
}

Tova::Dictionary MakeReport(const std::vector<Severity>& results, const std::vector<Tova::Dictionary>& tests) {
  const auto records = Array({});
  for (const Tova::Dictionary& test : tests) TovaArrayAppendValue(records.get(), test.get());
  const auto font = Dictionary({{kVornFontTestFontNameKey, Tova::MakeString("Good Regular").get()},
                                {kVornFontTestFontPostScriptNameKey, Tova::MakeString("Good").get()},
                                {kVornFontTestFontTypeKey, kVornFontTestTrueTypeFontData},
                                {kVornFontTestArrayKey, records.get()}});
  return Dictionary(
      {{kVornFontTestResultKey, Constants(results).get()}, {kVornFontTestFontsTestedKey, Array({font.get()}).get()}});
}

/// The text for reports of the files a.ttf, b.ttf, ..., without the line that holds the time.
std::string TextOf(const Options& options, const std::vector<Tova::Dictionary>& reports) {
  const test::TemporaryFolder folder;
  Output output(folder.File("report"));
  TextReport writer(options, output);
  std::string path = "a.ttf";
  for (const auto& report : reports) {
    writer.AddFile(path, report.get());
    ++path[0];
  }
  writer.End(0);
  output.Close();
  std::ifstream file(folder.File("report"));
  std::string text(std::istreambuf_iterator<char>(file), {});
  const size_t time = text.find(" in 0.");
  return text.erase(time, text.find('\n', time) - time);
}

constexpr Severity kInformation = Severity::kInformation, kTechnical = Severity::kTechnical, kMinor = Severity::kMinor,
                   kMajor = Severity::kMajor, kFatal = Severity::kFatal;

TEST(TextReport, ShowsTheGravestFirstAndCountsTheRest) {
  const auto clean = MakeReport({}, {MakeTest("Clean", {}, {})});
  const auto mild = MakeReport({kMinor}, {MakeTest("Mild", {kMinor}, {{kMinor, "m"}, {kMinor, "m"}})});
  const auto grave = MakeReport({kMajor, kFatal, kTechnical},
                                {MakeTest("Maps", {kMajor, kFatal, kTechnical},
                                          {{kMajor, "one"}, {kTechnical, "t"}, {kFatal, "two"}, {kMajor, "3"}}),
                                 MakeTest("Mute", {kMajor, kMinor}, {{kMinor, "n"}}),
                                 MakeTest("Untestable", {kFatal}, {{kFatal, "why"}}, kVornFontTestSeverityKey)});
  const auto unopened = Dictionary({{kVornFontTestResultKey, Constants({kFatal}).get()}});
  EXPECT_EQ(TextOf({}, {clean, mild, grave, unopened, clean}),
            R"(a.ttf: Good Regular (Good), TrueType font data: nothing found
b.ttf: Good Regular (Good), TrueType font data: nothing major or above, 2 below

c.ttf: Good Regular (Good), TrueType font data
  Maps  test.id
    fatal  two
    major  one
    major  3
  Mute  test.id
    major  (no further text)
  Untestable  test.id
    fatal  why

d.ttf
    fatal  The file cannot be opened as a font.

e.ttf: Good Regular (Good), TrueType font data: nothing found

5 files, 4 fonts, 6 tests run
Findings: 3 fatal, 3 major, 3 minor, 1 technical
4 more below major (use --show technical to see all)
)");

  Options summary;
  summary.detail = Detail::kSummary;
  summary.show = kMinor;
  EXPECT_THAT(TextOf(summary, {grave}), HasSubstr("\n  Mute  test.id: major, minor\n"));
  Options results;
  results.detail = Detail::kResults;
  EXPECT_THAT(TextOf(results, {clean, mild, unopened}),
              "a.ttf: nothing found\nb.ttf: nothing major or above, 1 below\nc.ttf: fatal\n\n3 files\nFindings: 1 "
              "fatal, 1 minor\n"
              "1 more below major (use --show minor to see all)\n");
}

TEST(TextReport, FoldsTheMessagesOfARule) {
  constexpr size_t kCount = 65'000;
  std::vector<std::string> texts(kCount);
  for (size_t i = 0; i < kCount; ++i) texts[i] = "glyph " + std::to_string(i) + " is empty";
  std::vector<Message> messages;
  for (const std::string& text : texts) messages.push_back({kInformation, text, "glyph %d is empty"});
  for (const char* text : {"offset -1", "offset 0x00FF", "offset A", "offset 2"})
    messages.push_back({kMinor, text, "offset %@"});
  const auto report = MakeReport({kInformation}, {MakeTest("Outlines", {kInformation, kMinor}, messages)});

  Options options;
  options.show = kInformation;
  const std::string folded = TextOf(options, {report});
  EXPECT_THAT(folded,
              HasSubstr("    minor        offset A\n    minor        offset 2\n"
                        "    information  glyph 0 is empty\n    information  glyph 1 is empty\n"
                        "    information  glyph 2 is empty\n                 ... and 64,997 more like this\n\n"));
  EXPECT_THAT(folded, HasSubstr("Findings: 4 minor, 65,000 information\n64,997 left out"));
  options.allMessages = true;
  EXPECT_THAT(TextOf(options, {report}), HasSubstr("glyph 64999 is empty\n\n1 file"));
}

TEST(EscapedText, ShowsWhatIsNoTextAsEscapes) {
  const struct {
    std::string text, escaped;
  } cases[] = {{"Grüße, 游明朝 𝔉", "Grüße, 游明朝 𝔉"},
               {std::string("\0\t\x7f", 3), "\\x00\\x09\\x7f"},
               {"\xC2\x9B\xE2\x81\xA6\xE2\x80\xA8", "\\u009b\\u2066\\u2028"},
               {"\xC0\x80 \xED\xA0\x80 \xF4\x90\x80\x80", "\\xc0\\x80 \\xed\\xa0\\x80 \\xf4\\x90\\x80\\x80"},
               {"cut \xE2\x80", "cut \\xe2\\x80"}};
  for (const auto& example : cases) EXPECT_EQ(EscapeForTerminal(example.text), example.escaped);
  EXPECT_EQ(ToJson(Array({Tova::MakeString("\"\x1b\x7f\xC2\x9Bü\n").get(), kTovaBooleanTrue}).get()),
            R"(["\"\u001b\u007f\u009bü\n",true])");
}

}  // namespace
}  // namespace tool
