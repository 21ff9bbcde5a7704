#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "support/TemporaryFolder.h"
#include "support/TestRun.h"

namespace {

// Run under ThreadSanitizer by the test runner; the first reports of a process are made here at once.
TEST(Threads, ReportsOnFontsOfTheirOwnDoNotDisturbEachOther) {
  const test::TemporaryFolder folder;
  const auto options = Tova::Adopt(TovaDictionaryCreateMutable());
  TovaDictionarySetValue(options.get(), kVornFontTestCreateReportTypeKey, kVornFontTestReportTypeFull);
  std::vector<std::string> descriptions(4);
  std::vector<std::thread> threads;
  for (size_t i = 0; i < descriptions.size(); ++i) {
    threads.emplace_back([&, i] {
      const std::string path = folder.Write("font" + std::to_string(i), test::GoodFont().Remove("hmtx").Build());
      const auto url = Tova::Adopt(TovaURLCreateWithFilePath(path.c_str()));
      for (int round = 0; round < 5; ++round) {
        const Tova::Dictionary report = Tova::Adopt(VornFontTestCreateReport(url.get(), options.get()));
        const TovaTypeRef results = TovaDictionaryGetValue(report.get(), kVornFontTestResultKey);
        descriptions[i] += Tova::Text(Tova::Adopt(TovaCopyDescription(results)));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::string& description : descriptions) EXPECT_EQ(description, descriptions[0]);
  EXPECT_NE(descriptions[0].find("kVornFontTestSeverityFatalError"), std::string::npos);
}

}  // namespace
