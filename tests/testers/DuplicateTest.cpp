#include <VornFontTest/VornFontTest.h>
#include <gmock/gmock.h>

#include "TableAccess/ContainerClasses/FTDiskBasedFontContainer.h"
#include "Tests/VornFontTester_duplicate.h"
#include "support/MessagePorts.h"
#include "support/SuitcaseBuilder.h"
#include "support/TestRun.h"
#include "support/Values.h"

namespace {

using namespace test;
using namespace testing;

/// A conduit that knows every name but "Unknown", and remembers what it was asked.
class Duplicates : public testing::Test {
 protected:
  std::string Answer(const std::string& request) {
    asked_.push_back(Description(Tova::Adopt(TovaPropertyListCreateWithData(MakeData(request).get(), nullptr)).get()));
    const bool known = asked_.back().find("Unknown") == std::string::npos;
    return std::string("<plist><dict><key>Result</key>") + (known ? "<true/>" : "<false/>") + "</dict></plist>";
  }
  /// Runs the test over the font of a URL.
  static Findings Test(const Tova::Url& url, const RunOptions& options = {}) {
    const FTDiskBasedFontContainer container(url.get(), true);
    return test::Run(TestForDuplicates, *container.GetIndFont(0), options);
  }
  Tova::Url Write(const Bytes& bytes) const { return FileUrl(folder_.Write("font", bytes)); }
  static Bytes FontNamed(const char* name) { return GoodFont().Table("name", NameTable({{6, name}})).Build(); }

  const TemporaryFolder folder_;
  const RuntimeFolder runtime_;
  std::vector<std::string> asked_;
  const PortServer conduit_{"veltrin.Vorn.RundleConduit", [this](int32_t, const std::string& r) { return Answer(r); }};
};

TEST_F(Duplicates, AreReportedWhateverSeveritiesAreWanted) {
  const Tova::Url url = Write(FontNamed("Some-Name"));
  ExpectMessages(Test(url, {.severities = {"FatalError"}}),
                 {{kMajor, "Duplicates: A font with the PostScript name Some-Name is already installed."}});
  EXPECT_THAT(asked_, ElementsAre("{FileURLKey: " + Description(url.get()) +
                                  ", PostscritNameKey: Some-Name, WantsDupKey: false}"));
  const Findings none = Test(Write(FontNamed("Unknown")));
  EXPECT_TRUE(none.applies && none.severities.empty());
}

TEST_F(Duplicates, OnlySfntFontsWithANameFromAFileAreAskedAbout) {
  const Bytes bytes = FontNamed("Some-Name");
  const auto data = Tova::Adopt(TovaDataCreate(bytes.data(), bytes.size()));
  EXPECT_TRUE(test::Run(TestForDuplicates, *MemoryFont(bytes)).applies) << "without a container";
  EXPECT_TRUE(Test(Tova::Adopt(TovaURLCreateWithData(data.get(), nullptr))).applies) << "in memory";
  EXPECT_TRUE(Test(Write(GoodFont().Remove("name").Build())).applies) << "without a name";
  EXPECT_TRUE(Test(Write({0x80, 0x01, 0, 0, 0, 0, 0x80, 0x03})).applies) << "a Type 1 font";
  EXPECT_THAT(asked_, IsEmpty());
}

TEST_F(Duplicates, AreNotLookedForWhereTheOptionsSaySo) {
  const auto tests = Tova::Adopt(VornFontTestCopyAvailableTests(Array({kVornFontTestUsabilityTest}).get()));
  const Tova::Url url = Write(FontNamed("Some-Name"));
  for (const bool skip : {true, false}) {
    const auto options = Dictionary(
        {{kVornFontTestArrayKey, tests.get()}, {kVornFontTestSkipDuplicateFontTestOptionKey, Tova::Boolean(skip)}});
    const auto report = Tova::Adopt(VornFontTestCreateReport(url.get(), options.get()));
    EXPECT_THAT(asked_, SizeIs(skip ? 0 : 1));
  }
}

TEST_F(Duplicates, OfAFamilyWithoutOutlineFontAreLookedForByEachOfItsNames) {
  FamilyBuilder family;
  family.strings = {"Base", "\x03", "-Bold"};
  family.indexes = {0, 2};
  const auto test = [&](int size) {
    family.fat = {{size, 0, 128}};
    const Tova::Url url = Write(SuitcaseBuilder().Add("FOND", 128, family.Build(), "Family").Build());
    const auto container = FTFontContainer::FontContainerFromTovaURLRef(url.get(), true);
    return test::Run(TestForDuplicates, *container->GetIndFont(0));
  };
  EXPECT_THAT(test(0).messages, IsEmpty()) << "it has an outline font";
  EXPECT_THAT(asked_, IsEmpty());
  ExpectMessage(test(12), {kMajor, "Duplicates: A font with the PostScript name Base is already installed."});
}

}  // namespace
