#include "support/AllTests.h"
#include "support/Report.h"

namespace {

using namespace test;

TEST(SampleSuitcases, OfAFontEditorAreReadWhateverForkTheyLieIn) {
  const auto results = [](const std::string& name) {
    const auto url = FileUrl(SAMPLES_FOLDER + ("/" + name));
    const auto report =
        Tova::Adopt(VornFontTestCreateReport(url.get(), AllTests(kVornFontTestReportTypeSummary).get()));
    return Description(TovaDictionaryGetValue(report.get(), kVornFontTestResultKey));
  };
  EXPECT_EQ(results("Bitmaps.bmap.bin"), "{}");
  EXPECT_EQ(results("VornSuiReg"), "{}");
  EXPECT_EQ(results("Suitcase.dfont").find("Fatal"), std::string::npos);
}

}  // namespace
