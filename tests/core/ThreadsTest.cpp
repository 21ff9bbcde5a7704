#include <VornFontTest/VornFontTest.h>

#include <thread>

#include "support/SuitcaseBuilder.h"
#include "support/TemporaryFolder.h"
#include "support/TestRun.h"
#include "support/Values.h"

namespace {

using namespace test;

/// Makes reports of a file of each thread's own, on several threads at once; what they all found.
std::string ReportOnThreads(const TemporaryFolder& folder, const Bytes& bytes) {
  const auto options = Dictionary({{kVornFontTestCreateReportTypeKey, kVornFontTestReportTypeFull},
                                   {kVornFontTestSkipDuplicateFontTestOptionKey, kTovaBooleanTrue}});
  std::vector<std::string> descriptions(4);
  std::vector<std::thread> threads;
  for (size_t i = 0; i < descriptions.size(); ++i) {
    threads.emplace_back([&, i] {
      const std::string path = folder.Write("font" + std::to_string(i), bytes);
      for (int round = 0; round < 5; ++round) {
        const auto report = Tova::Adopt(VornFontTestCreateReport(FileUrl(path).get(), options.get()));
        descriptions[i] += Description(TovaDictionaryGetValue(report.get(), kVornFontTestResultKey));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::string& description : descriptions) EXPECT_EQ(description, descriptions[0]);
  return descriptions[0];
}

// Run under ThreadSanitizer by the test runner; the first reports of a process are made here at once.
TEST(Threads, ReportsOnFontsOfTheirOwnDoNotDisturbEachOther) {
  const TemporaryFolder folder;
  EXPECT_NE(ReportOnThreads(folder, GoodFont().Remove("hmtx").Build()).find("FatalError"), std::string::npos);
}

TEST(Threads, FamiliesShareOutlineFilesAcrossReports) {
  const TemporaryFolder folder;
  FamilyBuilder family;
  family.strings = {"Base"};
  folder.Write("Base", OneFile({}, OutlineFile().Build(), "LWFN"));
  const Bytes suitcase = SuitcaseBuilder().Add("FOND", 128, family.Build()).Build();
  EXPECT_NE(ReportOnThreads(folder, suitcase).find("Information"), std::string::npos) << "outlines of two kinds";
}

}  // namespace
