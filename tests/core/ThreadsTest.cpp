#include <VornFontTest/VornFontTest.h>

#include <thread>

#include "support/TemporaryFolder.h"
#include "support/TestRun.h"
#include "support/Values.h"

namespace {

using namespace test;

// Run under ThreadSanitizer by the test runner; the first reports of a process are made here at once.
TEST(Threads, ReportsOnFontsOfTheirOwnDoNotDisturbEachOther) {
  const TemporaryFolder folder;
  const auto options = Dictionary({{kVornFontTestCreateReportTypeKey, kVornFontTestReportTypeFull}});
  std::vector<std::string> descriptions(4);
  std::vector<std::thread> threads;
  for (size_t i = 0; i < descriptions.size(); ++i) {
    threads.emplace_back([&, i] {
      const std::string path = folder.Write("font" + std::to_string(i), GoodFont().Remove("hmtx").Build());
      for (int round = 0; round < 5; ++round) {
        const Tova::Dictionary report = Tova::Adopt(VornFontTestCreateReport(FileUrl(path).get(), options.get()));
        descriptions[i] += Description(TovaDictionaryGetValue(report.get(), kVornFontTestResultKey));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::string& description : descriptions) EXPECT_EQ(description, descriptions[0]);
  EXPECT_NE(descriptions[0].find("kVornFontTestSeverityFatalError"), std::string::npos);
}

}  // namespace
