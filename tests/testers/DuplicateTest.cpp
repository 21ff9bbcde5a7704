#include <VornFontTest/VornFontTest.h>
#include <gmock/gmock.h>

#include "TableAccess/ContainerClasses/FTDiskBasedFontContainer.h"
#include "Tests/VornFontTester_duplicate.h"
#include "support/MessagePorts.h"
#include "support/TestRun.h"
#include "support/Values.h"

namespace {

using namespace test;
using namespace testing;

/// A conduit that knows every name but "Unknown", and remembers what it was asked.
class Duplicates : public testing::Test {
 protected:
  /// Runs the test over the first font of a file with these bytes.
  Findings RunOnFile(const Bytes& bytes, const RunOptions& options = {}) {
    const FTDiskBasedFontContainer container(FileUrl(folder_.Write("font", bytes)).get(), true);
    return test::Run(TestForDuplicates, *container.GetIndFont(0), options);
  }
  static Bytes FontNamed(const std::string& name) { return GoodFont().Table("name", NameTable({{6, name}})).Build(); }

  const TemporaryFolder folder_;
  const RuntimeFolder runtime_;
  std::vector<std::string> asked_;
  const PortServer conduit_{
      "veltrin.Vorn.RundleConduit", [this](int32_t, std::string_view data) {
        const auto list = Tova::Adopt(TovaPropertyListCreateWithData(MakeData(data).get(), nullptr));
        asked_.push_back(Description(list.get()));
        const bool found = asked_.back().find("Unknown") == std::string::npos;
        return std::string("<plist><dict><key>Result</key>") + (found ? "<true/>" : "<false/>") + "</dict></plist>";
      }};
};

TEST_F(Duplicates, AreReportedWhateverSeveritiesAreWanted) {
  for (const RunOptions& options : {RunOptions{}, RunOptions{.severities = {"FatalError"}}}) {
    const Findings findings = RunOnFile(FontNamed("Some-Name"), options);
    ExpectMessages(findings, {{"MajorError",
                               "Duplicates: A font with the PostScript name Some-Name is already "
                               "installed."}});
    EXPECT_THAT(findings.severities, ElementsAre("MajorError"));
  }
  EXPECT_THAT(asked_.front(), AllOf(StartsWith("{FileURLKey: file://" + folder_.File("font")),
                                    HasSubstr("PostscritNameKey: Some-Name, WantsDupKey: false")));
  const Findings none = RunOnFile(FontNamed("Unknown"));
  EXPECT_TRUE(none.applies);
  ExpectMessages(none, {});
}

TEST_F(Duplicates, OnlySfntFontsWithANameFromAFileAreAskedAbout) {
  EXPECT_TRUE(test::Run(TestForDuplicates, *MemoryFont(FontNamed("Some-Name"))).applies);
  const Bytes bytes = FontNamed("Some-Name");
  const auto data = Tova::Adopt(TovaDataCreate(bytes.data(), bytes.size()));
  const auto url = Tova::Adopt(TovaURLCreateWithData(data.get(), nullptr));
  const FTDiskBasedFontContainer memory(url.get(), true);
  EXPECT_TRUE(test::Run(TestForDuplicates, *memory.GetIndFont(0)).applies);
  EXPECT_TRUE(RunOnFile(GoodFont().Remove("name").Build()).applies);
  EXPECT_TRUE(RunOnFile({0x80, 0x01, 0, 0, 0, 0, 0x80, 0x03}).applies) << "a Type 1 font";
  EXPECT_TRUE(RunOnFile(FontNamed("Some-Name"), {.skipDuplicateFontTest = true}).applies);
  EXPECT_THAT(asked_, IsEmpty());
}

TEST_F(Duplicates, AreNotLookedForWhereTheReportsOptionsSaySo) {
  const auto tests = Tova::Adopt(VornFontTestCopyAvailableTests(Array({kVornFontTestConsistencyTest}).get()));
  const auto url = FileUrl(folder_.Write("font", FontNamed("Some-Name")));
  for (const bool skip : {true, false}) {
    const auto options = Dictionary(
        {{kVornFontTestArrayKey, tests.get()}, {kVornFontTestSkipDuplicateFontTestOptionKey, Tova::Boolean(skip)}});
    const auto report = Tova::Adopt(VornFontTestCreateReport(url.get(), options.get()));
    EXPECT_EQ(Description(TovaDictionaryGetValue(report.get(), kVornFontTestResultKey)).find("MajorError") ==
                  std::string::npos,
              skip);
  }
  EXPECT_THAT(asked_, SizeIs(1));
}

}  // namespace
