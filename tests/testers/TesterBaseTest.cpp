#include <gmock/gmock.h>

#include <functional>
#include <initializer_list>
#include <new>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "Tests/VornFontTester.h"
#include "support/TestRun.h"

namespace {

using namespace test;

/// A test whose ExecuteTest is given by the unit test.
class Scripted : public VornFontTester {
 public:
  using Body = std::function<bool(const Scripted&)>;
  using VornFontTester::AppendMessage;
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override { return body(*this); }
  const char* GetStringTableName() const override { return table; }

  static inline Body body;
  static inline const char* table = "cmap";
};

Findings RunScript(Scripted::Body body, const RunOptions& options = {}) {
  Scripted::body = std::move(body);
  return test::Run(RunTester<Scripted, FTFont>, FTFont(), options);
}

TEST(TesterBase, SeveritiesAreASetInOrderOfReportAndMessagesAreAllKept) {
  const auto body = [](const Scripted& tester) {
    tester.ReportResult(kVornFontTestSeverityMinorError, "Entry %d", {1});
    tester.ReportResult(kVornFontTestSeverityFatalError, "Bad version 0x%08lX", {0x10000});
    tester.ReportResultFromTable("Instructions", kVornFontTestSeverityMinorError, "Entry %d", {2});
    tester.ReportResult(kVornFontTestSeverityMajorError, "%d and %d", {1});  // no text, but the severity stands
    return true;
  };
  for (const char* prefix : {"cmap: ", ""}) {
    Scripted::table = *prefix ? "cmap" : nullptr;
    const Findings full = RunScript(body);
    EXPECT_THAT(full.severities, testing::ElementsAre("MinorError", "FatalError", "MajorError"));
    ExpectMessages(full, {{"MinorError", prefix + std::string("Entry 1")},
                          {"FatalError", prefix + std::string("Bad version 0x00010000")},
                          {"MinorError", prefix + std::string("Entry 2")}});
    const Findings brief = RunScript(body, {.messages = false});
    EXPECT_EQ(brief.severities, full.severities);
    EXPECT_TRUE(brief.messages.empty());
  }
  Scripted::table = "cmap";
  EXPECT_FALSE(RunScript([&](const Scripted& tester) { return !body(tester); }).applies);
}

TEST(TesterBase, AnEscapedExceptionBecomesAFatalFindingAfterWhatWasFound) {
  const Findings findings = RunScript([](const Scripted& tester) -> bool {
    tester.ReportResult(kVornFontTestSeverityMinorError, "Before");
    throw FTException("a == b", -1, "It broke", "File", 7);
  });
  ExpectMessages(findings,
                 {{"MinorError", "cmap: Before"}, {"FatalError", "Error -1 (a == b) in file File, line 7 (It broke)"}});
  EXPECT_THAT(findings.severities, testing::ElementsAre("MinorError", "FatalError"));
  EXPECT_THROW(RunScript([](const Scripted&) -> bool { throw std::bad_alloc(); }), std::bad_alloc);
}

TEST(TesterBase, OptionsDecideWhichSeveritiesAreEnabled) {
  const auto enabled = [](const RunOptions& options) {
    std::string letters;
    RunScript(
        [&](const Scripted& tester) {
          letters += tester.ExecuteTestsWithSeverity(kVornFontTestSeverityMinorError) ? 'm' : '-';
          letters += tester.ExecuteTestsWithSeverity(kVornFontTestSeverityFatalError) ? 'f' : '-';
          letters += tester.CanBailOnFirstFailure() ? 'b' : '-';
          return true;
        },
        options);
    return letters;
  };
  EXPECT_EQ(enabled({.severities = {"FatalError"}}), "-f-");
  EXPECT_EQ(enabled({.messages = false, .severities = {"MinorError"}}), "m-b");
}

TEST(TesterBase, BrokenPreconditionsThrowWithTheirPlace) {
  const auto thrown = [](auto action) -> std::string {
    try {
      action();
    } catch (const FTException& exception) {
      return exception.GetDetailedMessage();
    }
    return "nothing";
  };
  const FTFont font;
  const auto options = Tova::Adopt(TovaDictionaryCreateMutable());
  EXPECT_EQ(thrown([&] { const Scripted tester(nullptr, nullptr, options.get()); }),
            "Error 0 (_fFont == NULL) in file Tests/VornFontTester, line 174");
  EXPECT_EQ(thrown([&] { const Scripted tester(&font, nullptr, nullptr); }),
            "Error 0 (_fOptions == NULL) in file Tests/VornFontTester, line 175");
  Scripted tester(&font, nullptr, options.get());
  std::string nested;
  Scripted::body = [&](const Scripted&) {
    nested = thrown([&] { tester.CreateTestResults(); });
    return true;
  };
  for (int run = 0; run < 2; ++run) {
    EXPECT_TRUE(tester.CreateTestResults()) << "another run is possible";
    EXPECT_EQ(nested, "Error 0 (_fResults != NULL) in file Tests/VornFontTester, line 228");
  }
  EXPECT_FALSE((RunTester<Scripted, FTFont_sfnt>(&font, nullptr, options.get()))) << "another kind of font";
  EXPECT_FALSE((RunTester<Scripted, FTFont>(nullptr, nullptr, options.get())));
}

TEST(TesterBase, HelpersFindBitsAndKeepOffsetsInOrder) {
  RunScript([](const Scripted& tester) {
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
    ExpectMessages(RunScript([p = platform, s = script, l = language](const Scripted& tester) {
                     tester.ValidatePlatformScriptLanguages(5, p, s, l);
                     return true;
                   }),
                   messages);
  }
}

}  // namespace
