#include <fstream>
#include <iterator>
#include <set>

#include "support/AllTests.h"
#include "support/Report.h"
#include "support/SuitcaseBuilder.h"

namespace {

using namespace test;

Bytes ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return Bytes{std::istreambuf_iterator<char>(file), {}};
}

Tova::Dictionary MakeReport(const std::string& path, TovaStringRef type = kVornFontTestReportTypeSummary) {
  return Tova::Adopt(VornFontTestCreateReport(FileUrl(path).get(), AllTests(type).get()));
}

std::string ResultsOf(const std::string& path) {
  return Description(TovaDictionaryGetValue(MakeReport(path).get(), kVornFontTestResultKey));
}

TEST(SampleSuitcases, OfAFontEditorAreReadWhateverForkTheyLieIn) {
  const std::string folder = std::string(SAMPLES_FOLDER) + "/";
  EXPECT_EQ(ResultsOf(folder + "Bitmaps.bmap.bin"), "{}");
  EXPECT_EQ(ResultsOf(folder + "VornSuiReg"), "{}");
  EXPECT_EQ(ResultsOf(folder + "Suitcase.dfont").find("Fatal"), std::string::npos);

  const TemporaryFolder copies;
  const Bytes fork = ReadFile(folder + "Suitcase.dfont");
  copies.Write("VornSuiReg", ReadFile(folder + "VornSuiReg"));
  copies.Write("._beside", Sidecar(fork, "FFIL"));
  std::set<std::string> reports;
  for (const auto& [name, bytes] : {std::pair<const char*, Bytes>{"datafork", fork},
                                    {"one", OneFile({}, fork, "FFIL")},
                                    {"header", HeaderForm({}, fork, "FFIL")},
                                    {"beside", {}}}) {
    const auto report = MakeReport(copies.Write(name, bytes), kVornFontTestReportTypeFull);
    std::string text = Description(report.get());
    for (size_t at; (at = text.find("kVornFontTestTimeStampKey")) != text.npos;)
      text.erase(at, text.find(',', at) - at);
    reports.insert(text);
  }
  EXPECT_EQ(reports.size(), 1u) << "all alike";
  EXPECT_NE(reports.begin()->find("veltrin.resource.FOND.Type1.usability"), std::string::npos);
}

}  // namespace
