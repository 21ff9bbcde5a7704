#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <memory>
#include <new>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "Tests/VornFontTester_sfnt.h"
#include "support/TestRun.h"

namespace {

using namespace test;

/// A test whose ExecuteTest is given by the unit test, with or without a name in its messages.
template <bool kNamed>
class Scripted : public VornFontTester {
 public:
  using FontClass = FTFont;
  static constexpr TestIdentity kIdentity = {
      .identifier = "scripted", .types = {TestType::kCore}, .prefix = kNamed ? "cmap" : nullptr};
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override { return body(*this); }

  static inline std::function<bool(const VornFontTester&)> body;
};

template <bool kNamed = true>
Findings RunScript(std::function<bool(const VornFontTester&)> body, const RunOptions& options = {}) {
  Scripted<kNamed>::body = std::move(body);
  return test::Run(RunTester<Scripted<kNamed>>, FTFont(), options);
}

TEST(TesterBase, SeveritiesAreASetInOrderOfReportAndMessagesAreAllKept) {
  const auto body = [](const VornFontTester& tester) {
    tester.ReportResult(Severity::kMinorError, "Entry %d", {1});
    tester.ReportResult(Severity::kFatalError, "Bad version 0x%08lX", {0x10000});
    tester.ReportResultFromTable("Instructions", Severity::kMinorError, "Entry %d", {2});
    return true;
  };
  const Findings full = RunScript(body);
  EXPECT_THAT(full.severities, testing::ElementsAre("MinorError", "FatalError"));
  ExpectMessages(full, {{"MinorError", "cmap: Entry 1"},
                        {"FatalError", "cmap: Bad version 0x00010000"},
                        {"MinorError", "cmap: Entry 2"}});
  ExpectMessage(RunScript<false>(body), {"MinorError", "Entry 2"});
  const Findings brief = RunScript(body, {.messages = false});
  EXPECT_EQ(brief.severities, full.severities);
  EXPECT_TRUE(brief.messages.empty());
  EXPECT_FALSE(RunScript([&](const VornFontTester& tester) { return !body(tester); }).applies);
}

TEST(TesterBase, FindingsSayWhereTheScopesAroundThemLook) {
  const auto report = [](const VornFontTester& tester, const char* text) {
    tester.ReportResult(Severity::kMinorError, text);
  };
  const Findings findings = RunScript([&](const VornFontTester& tester) -> bool {
    report(tester, "1");
    const At table(tester, {.table = FTTag("glyf")});
    for (const uint32_t glyph : {0u, 7u}) {
      const At here(tester, {.glyph = glyph});
      const At part(tester, {.offset = 12, .part = "Component 1"});
      report(tester, "2");
    }
    try {
      const At here(tester, {.glyph = 9});
      throw FTException();
    } catch (const FTException&) {
      report(tester, "3");
    }
    const At here(tester, {.glyph = 5});
    const At further(tester, {.offset = 8});
    throw FTException("a == b", -1, "It broke", "File", 7);
  });
  std::vector<std::string> places;
  for (const Message& message : findings.messages) places.push_back(message.place);
  EXPECT_THAT(places, testing::ElementsAre("", "glyf glyph 0 offset 12 (Component 1)",
                                           "glyf glyph 7 offset 12 (Component 1)", "glyf", "glyf glyph 5 offset 8"))
      << "an exception stands where it was thrown";
}

TEST(TesterBase, LimitsKeepFindingsOutButNotTheirSeverities) {
  const auto body = [](const VornFontTester& tester) {
    for (int i = 0; i < 20; ++i) tester.ReportResult(Severity::kMinorError, "%s", {"a text that the sink copies"});
    for (int i = 0; i < 20; ++i) tester.ReportResult(Severity::kMajorError, "Grave");
    tester.ReportResult(Severity::kFatalError, "Last");
    return true;
  };
  EXPECT_EQ(RunScript(body, {.limits = {.findings = 8}}).messages.size(), 8u);
  const Findings small = RunScript(body, {.limits = {.bytes = 8192, .bytesForGrave = 4096}});
  EXPECT_THAT(small.severities, testing::ElementsAre("MinorError", "MajorError", "FatalError"));
  EXPECT_LE(small.messages.size(), 21u);
  const auto isMinor = [](const Message& message) { return message.severity == "MinorError"; };
  EXPECT_LE(std::ranges::count_if(small.messages, isMinor), 10) << "half of the room is for grave findings";
  EXPECT_FALSE(isMinor(small.messages.back()));
  const Findings none = RunScript(body, {.limits = {.findings = 0}});
  EXPECT_TRUE(none.messages.empty());
  EXPECT_EQ(none.severities.size(), 3u);
}

TEST(TesterBase, AnEscapedExceptionBecomesAFatalFindingAfterWhatWasFound) {
  const Findings findings = RunScript([](const VornFontTester& tester) -> bool {
    tester.ReportResult(Severity::kMinorError, "Before");
    throw FTException("a == b", -1, "It broke", "File", 7);
  });
  ExpectMessages(findings,
                 {{"MinorError", "cmap: Before"}, {"FatalError", "Error -1 (a == b) in file File, line 7 (It broke)"}});
  EXPECT_THAT(findings.severities, testing::ElementsAre("MinorError", "FatalError"));
  EXPECT_THROW(RunScript([](const VornFontTester&) -> bool { throw std::bad_alloc(); }), std::bad_alloc);
}

TEST(TesterBase, OptionsDecideWhichSeveritiesAreEnabled) {
  const auto enabled = [](const RunOptions& options) {
    std::string letters;
    RunScript(
        [&](const VornFontTester& tester) {
          letters += tester.ExecuteTestsWithSeverity(Severity::kMinorError) ? 'm' : '-';
          letters += tester.ExecuteTestsWithSeverity(Severity::kFatalError) ? 'f' : '-';
          letters += tester.CanBailOnFirstFailure() ? 'b' : '-';
          return true;
        },
        options);
    return letters;
  };
  EXPECT_EQ(enabled({.severities = {"FatalError"}}), "-f-");
  EXPECT_EQ(enabled({.messages = false, .severities = {"MinorError"}}), "m-b");
}

TEST(TesterBase, RunsOnlyOverFontsOfItsKind) {
  FindingSink sink;
  const TestOptions options;
  EXPECT_FALSE(RunTester<VornFontTester_sfnt>(std::make_unique<FTFont>().get(), sink, &options));
  EXPECT_FALSE(RunTester<VornFontTester_sfnt>(nullptr, sink, &options));
}

TEST(TesterBase, HelpersFindBitsAndKeepOffsetsInOrder) {
  RunScript([](const VornFontTester& tester) {
    EXPECT_EQ(tester.FirstBit(0), 0xFFFFFFFF);
    EXPECT_EQ(tester.FirstBit(1), 0u);
    EXPECT_EQ(tester.FirstBit(0x80000001), 31u);
    std::vector<uint64_t> offsets = {9, 3, 7};
    tester.SortTableOffsets(offsets);
    EXPECT_THAT(offsets, testing::ElementsAre(3, 7, 9));
    EXPECT_EQ(tester.NextOffset(offsets, 3), 7u);
    EXPECT_EQ(tester.NextOffset(offsets, 9), 0u);
    std::vector<uint16_t> collection;
    for (const uint16_t offset : std::initializer_list<uint16_t>{5, 1, 5, 3})
      tester.AddOffsetToCollection(collection, offset);
    EXPECT_THAT(collection, testing::ElementsAre(1, 3, 5));
    return true;
  });
}

TEST(PlatformCodes, EachPlatformHasItsScriptsAndLanguages) {
  const std::string minor = "MinorError", technical = "TechnicalError";
  const struct {
    uint32_t platform, script, language;
    std::vector<Message> messages;  // without their beginning
  } cases[] = {
      {0, 3, 0, {}},
      {0, 3, 0xFFFFFFFF, {}},
      {0, 2, 1, {{technical, "script code (2) for the Unicode"}, {technical, "language code (1) for the Unicode"}}},
      {0, 6, 0, {{technical, "script code (6) for the Unicode"}}},
      {1, 0, 0, {}},
      {1, 0, 138, {}},
      {1, 8, 94, {}},
      {1,
       0,
       100,
       {{minor, "language code (100) for the Valdor"},
        {minor, "language code (100) for the Roman script on the Valdor"}}},
      {1, 2, 0, {{minor, "language code (0) for the traditonal Chinese script on the Valdor"}}},
      {1, 29, 38, {}},
      {1, 29, 29, {{minor, "language code (29) for the Slavic (central Europe Roman) script on the Valdor"}}},
      {1, 31, 62, {}},
      {1, 32, 95, {{minor, "script code (32) for the Valdor"}, {minor, "language code (95) for the Valdor"}}},
      {3, 10, 0x7FFF, {}},
      {3, 11, 0, {{"MajorError", "script code (11) for the Microsoft"}}},
      {2, 0, 0, {{technical, "platform code (2)"}}}};
  for (auto [platform, script, language, messages] : cases) {
    SCOPED_TRACE(testing::Message() << platform << ' ' << script << ' ' << language);
    for (Message& message : messages)
      message.text = "cmap: Entry 5 has a bad " + message.text + (platform == 2 ? "" : " platform");
    ExpectMessages(RunScript([p = platform, s = script, l = language](const VornFontTester& tester) {
                     tester.ValidatePlatformScriptLanguages(5, p, s, l);
                     return true;
                   }),
                   messages);
  }
}

}  // namespace
