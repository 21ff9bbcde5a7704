#include <gmock/gmock.h>

#include <functional>
#include <new>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "Tests/VornFontTester.h"
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
  ExpectMessages(full,
                 {{kMinor, "cmap: Entry 1"}, {kFatal, "cmap: Bad version 0x00010000"}, {kMinor, "cmap: Entry 2"}});
  ExpectMessage(RunScript<false>(body), {kMinor, "Entry 2"});
  EXPECT_EQ(RunScript(body, {.messages = false}).severities, full.severities);
  EXPECT_FALSE(RunScript([&](const VornFontTester& tester) { return !body(tester); }).applies);
}

TEST(TesterBase, FindingsSayWhereTheScopesAroundThemLook) {
  const Findings findings = RunScript([&](const VornFontTester& tester) -> bool {
    tester.ReportResult(Severity::kMinorError, "1");
    const At table(tester, {.table = FTTag("glyf")});
    try {
      const At here(tester, {.glyph = 9});
      const At part(tester, {.offset = 12, .part = "Component 1"});
      tester.ReportResult(Severity::kMinorError, "2");
      throw FTException();
    } catch (const FTException&) {
      tester.ReportResult(Severity::kMinorError, "3");
    }
    const At here(tester, {.glyph = 5});
    throw FTException("a == b", -1, "It broke", "File", 7);
  });
  std::vector<std::string> places;
  for (const Message& message : findings.messages) places.push_back(message.place);
  EXPECT_THAT(places, testing::ElementsAre("", "glyf glyph 9 offset 12 (Component 1)", "glyf", "glyf glyph 5"))
      << "an exception stands where it was thrown";
}

TEST(TesterBase, AnEscapedExceptionBecomesAFatalFindingAfterWhatWasFound) {
  const Findings findings = RunScript([](const VornFontTester& tester) -> bool {
    tester.ReportResult(Severity::kMinorError, "Before");
    throw FTException("a == b", -1, "It broke", "File", 7);
  });
  ExpectMessages(findings, {{kMinor, "cmap: Before"}, {kFatal, "Error -1 (a == b) in file File, line 7 (It broke)"}});
  EXPECT_THAT(findings.severities, testing::ElementsAre("MinorError", "FatalError"));
  EXPECT_THROW(RunScript([](const VornFontTester&) -> bool { throw std::bad_alloc(); }), std::bad_alloc);
}

TEST(TesterBase, OptionsDecideWhichSeveritiesAreEnabled) {
  const auto expect = [](const RunOptions& options, bool minor, bool fatal, bool bail) {
    RunScript(
        [&](const VornFontTester& tester) {
          EXPECT_EQ(tester.ExecuteTestsWithSeverity(Severity::kMinorError), minor);
          EXPECT_EQ(tester.ExecuteTestsWithSeverity(Severity::kFatalError), fatal);
          EXPECT_EQ(tester.CanBailOnFirstFailure(), bail);
          return true;
        },
        options);
  };
  expect({.severities = {"FatalError"}}, false, true, false);
  expect({.messages = false, .severities = {"MinorError"}}, true, false, true);
}

TEST(TesterBase, OffsetsAreCollectedInOrderEachOnce) {
  std::vector<uint16_t> collection;
  for (const int offset : {5, 1, 5, 3}) {
    VornFontTester::AddOffsetToCollection(collection, static_cast<uint16_t>(offset));
  }
  EXPECT_THAT(collection, testing::ElementsAre(1, 3, 5));
  EXPECT_EQ(VornFontTester::NextOffset({1, 3, 5}, 3), 5u);
  EXPECT_EQ(VornFontTester::NextOffset({1, 3, 5}, 5), 0u);
  EXPECT_EQ(VornFontTester::FirstBit(0), 0xFFFFFFFF);
  EXPECT_EQ(VornFontTester::FirstBit(0x80000001), 31u);
}

TEST(PlatformCodes, EachPlatformHasItsScriptsAndLanguages) {
  const std::string minor = "MinorError", technical = "TechnicalError";
  const struct {
    uint32_t platform, script, language;
    std::vector<Message> messages;  // without their beginning
  } cases[] = {
      {0, 3, 0, {}},
      {0, 2, 1, {{technical, "script code (2) for the Unicode"}, {technical, "language code (1) for the Unicode"}}},
      {1, 8, 94, {}},
      {1,
       0,
       100,
       {{minor, "language code (100) for the Valdor"},
        {minor, "language code (100) for the Roman script on the Valdor"}}},
      {1, 2, 0, {{minor, "language code (0) for the traditonal Chinese script on the Valdor"}}},
      {1, 29, 29, {{minor, "language code (29) for the Slavic (central Europe Roman) script on the Valdor"}}},
      {1, 32, 95, {{minor, "script code (32) for the Valdor"}, {minor, "language code (95) for the Valdor"}}},
      {3, 10, 0x7FFF, {}},
      {3, 11, 0, {{kMajor, "script code (11) for the Microsoft"}}},
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
