#include <VornFontTest/VornFontTest.h>

#include <thread>

#include "support/TemporaryFolder.h"
#include "support/TestRun.h"
#include "support/Values.h"

namespace {

using namespace test;

// Run under ThreadSanitizer by the test runner; the first reports of a process are made here at once.
TEST(Threads, ReportsOnOneFileDoNotDisturbEachOther) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("font.ttf", GoodFont().Remove("hmtx").Build());
  const auto options = Dictionary({{kVornFontTestCreateReportTypeKey, kVornFontTestReportTypeFull}});
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 5; ++round) {
        const auto report = Tova::Adopt(VornFontTestCreateReport(FileUrl(path).get(), options.get()));
        const std::string result = Description(TovaDictionaryGetValue(report.get(), kVornFontTestResultKey));
        EXPECT_TRUE(result.ends_with("kVornFontTestSeverityFatalError}")) << result;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
