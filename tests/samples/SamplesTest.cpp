#include <VornFontTest/VornFontTest.h>
#include <gmock/gmock.h>

#include <Tova/Tova.hpp>
#include <fstream>
#include <iterator>
#include <set>

#include "samples/Samples.h"

namespace test {
namespace {

std::string PathOf(const std::string& name) { return std::string(SAMPLES_FOLDER) + "/" + name; }

/// The severities that all tests together find in a sample, by their last words.
std::set<std::string> Severities(const std::string& name) {
  const auto types = Tova::Adopt(TovaArrayCreateMutable());
  for (const TovaStringRef type :
       {kVornFontTestCoreTest, kVornFontTestStructureTest, kVornFontTestConsistencyTest, kVornFontTestUsabilityTest}) {
    TovaArrayAppendValue(types.get(), type);
  }
  const auto severities = Tova::Adopt(TovaArrayCreateMutable());
  for (const TovaStringRef severity :
       {kVornFontTestSeverityInformation, kVornFontTestSeverityTechnicalError, kVornFontTestSeverityMinorError,
        kVornFontTestSeverityMajorError, kVornFontTestSeverityFatalError}) {
    TovaArrayAppendValue(severities.get(), severity);
  }
  const auto options = Tova::Adopt(TovaDictionaryCreateMutable());
  TovaDictionarySetValue(options.get(), kVornFontTestArrayKey,
                         Tova::Adopt(VornFontTestCopyAvailableTests(types.get())).get());
  TovaDictionarySetValue(options.get(), kVornFontTestSeverityKey, severities.get());
  TovaDictionarySetValue(options.get(), kVornFontTestSkipDuplicateFontTestOptionKey, kTovaBooleanTrue);
  const auto url = Tova::Adopt(TovaURLCreateWithFilePath(PathOf(name).c_str()));
  const auto report = Tova::Adopt(VornFontTestCreateReport(url.get(), options.get()));
  const TovaArrayRef results = Tova::AsArray(TovaDictionaryGetValue(report.get(), kVornFontTestResultKey));
  std::set<std::string> found;
  for (TovaIndex i = 0; i < TovaArrayGetCount(results); ++i) {
    const std::string_view text = Tova::Text(Tova::AsString(TovaArrayGetValueAtIndex(results, i)));
    found.emplace(text.substr(std::string_view("kVornFontTestSeverity").size()));
  }
  return found;
}

TEST(Samples, FilesAreWhatTheGeneratorMakes) {
  for (const auto& [name, bytes] : MakeSamples()) {
    std::ifstream file(PathOf(name), std::ios::binary);
    const Bytes shipped{std::istreambuf_iterator<char>(file), {}};
    EXPECT_TRUE(shipped == bytes) << name << ": build the target make-samples";
  }
}

TEST(Samples, GoodFontsAreGoodAndTheBrokenOneIsBroken) {
  EXPECT_EQ(Severities("Good.ttf"), std::set<std::string>{"Information"});
  EXPECT_EQ(Severities("Collection.ttc"), std::set<std::string>{"Information"});
  EXPECT_THAT(Severities("Broken.ttf"),
              testing::UnorderedElementsAre("Information", "TechnicalError", "MinorError", "MajorError", "FatalError"));
}

}  // namespace
}  // namespace test
