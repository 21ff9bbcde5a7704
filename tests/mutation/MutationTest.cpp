#include <VornFontTest/VornFontTest.h>
#include <gtest/gtest.h>

#include <Tova/Tova.hpp>
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "support/TemporaryFolder.h"

namespace test {
namespace {

using Clock = std::chrono::steady_clock;

constexpr uint32_t kSeed = 20240229;
constexpr int kFonts = 2000;
#ifdef __SANITIZE_ADDRESS__
constexpr std::chrono::seconds kTimeForOneFont{5};  // a report of 262,144 messages takes ten times what it takes else
#else
constexpr std::chrono::seconds kTimeForOneFont{1};
#endif
constexpr std::chrono::seconds kTimeForAll{55};
constexpr size_t kDirectoryAt = 12;
constexpr size_t kEntrySize = 16;

// Hinted fonts of unlike makers; the last has device metrics and kerning. Those that are not installed are left out.
constexpr const char* kBaseFonts[] = {
    "/usr/share/fonts/truetype/liberation/LiberationMono-Regular.ttf",  // package fonts-liberation
    "/usr/share/fonts/truetype/dejavu/DejaVuSansMono-Bold.ttf",         // fonts-dejavu-core
    "/usr/share/fonts/truetype/gentium/Gentium-I.ttf",                  // fonts-sil-gentium
};

/// Damages fonts at random; the engine's numbers are the same everywhere.
class Mutator {
 public:
  explicit Mutator(uint32_t seed) : engine_(seed) {}

  Bytes Mutate(Bytes font) {
    switch (Below(8)) {
      case 0:
        font.resize(Below(font.size()));
        break;
      case 1:
      case 2:
        SwapTables(font);
        break;
      case 3:
        ChangeBytes(font, 0, kDirectoryAt + kEntrySize * TableCount(font), 1 + Below(4));
        break;
      default:
        ChangeTables(font);
    }
    return font;
  }
  size_t Below(size_t limit) { return limit == 0 ? 0 : engine_() % limit; }

 private:
  static size_t TableCount(const Bytes& font) { return size_t{font.at(4)} << 8 | font.at(5); }
  static size_t U32(const Bytes& font, size_t at) {
    return size_t{font[at]} << 24 | size_t{font[at + 1]} << 16 | size_t{font[at + 2]} << 8 | font[at + 3];
  }
  size_t RandomEntry(const Bytes& font) { return kDirectoryAt + kEntrySize * Below(TableCount(font)); }

  /// Exchanges offset and length of two entries, so that each tag gets the other's bytes.
  void SwapTables(Bytes& font) {
    const size_t first = RandomEntry(font), second = RandomEntry(font);
    if (first == second) return;
    std::swap_ranges(font.begin() + static_cast<ptrdiff_t>(first + 8),
                     font.begin() + static_cast<ptrdiff_t>(first + 16),
                     font.begin() + static_cast<ptrdiff_t>(second + 8));
  }
  /// Changes bytes of a few tables, mostly near their starts, where the counts and offsets are.
  void ChangeTables(Bytes& font) {
    for (size_t tables = 1 + Below(3); tables > 0; --tables) {
      const size_t entry = RandomEntry(font);
      const size_t length = U32(font, entry + 12);
      const size_t span = Below(2) == 0 ? std::min<size_t>(length, 64) : length;
      ChangeBytes(font, U32(font, entry + 8), span, 1 + Below(16));
    }
  }
  void ChangeBytes(Bytes& font, size_t start, size_t span, size_t count) {
    static constexpr uint8_t kExtremes[] = {0x00, 0x01, 0x7F, 0x80, 0xFF};
    for (; count > 0; --count) {
      const size_t at = start + Below(span);
      if (at < font.size()) font[at] = static_cast<uint8_t>(Below(2) == 0 ? engine_() : kExtremes[Below(5)]);
    }
  }

  std::mt19937 engine_;
};

std::vector<Bytes> ReadBaseFonts() {
  std::vector<Bytes> fonts;
  for (const char* path : kBaseFonts) {
    std::ifstream file(path, std::ios::binary);
    if (file) fonts.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  return fonts;
}

Tova::MutableDictionary Options(bool full) {
  const auto options = Tova::Adopt(TovaDictionaryCreateMutable());
  const auto severities = Tova::Adopt(TovaArrayCreateMutable());
  for (const TovaStringRef severity :
       {kVornFontTestSeverityNonFontError, kVornFontTestSeverityInformation, kVornFontTestSeverityTechnicalError,
        kVornFontTestSeverityMinorError, kVornFontTestSeverityMajorError, kVornFontTestSeverityFatalError})
    TovaArrayAppendValue(severities.get(), severity);
  TovaDictionarySetValue(options.get(), kVornFontTestSeverityKey, severities.get());
  const auto types = Tova::Adopt(TovaArrayCreateMutable());
  for (const TovaStringRef type : {kVornFontTestCoreTest, kVornFontTestStructureTest, kVornFontTestConsistencyTest,
                                   kVornFontTestUsabilityTest, kVornFontTestSpecificationTest})
    TovaArrayAppendValue(types.get(), type);
  const auto tests = Tova::Adopt(VornFontTestCopyAvailableTests(types.get()));
  TovaDictionarySetValue(options.get(), kVornFontTestArrayKey, tests.get());
  TovaDictionarySetValue(options.get(), kVornFontTestSkipDuplicateFontTestOptionKey, kTovaBooleanTrue);
  TovaDictionarySetValue(options.get(), kVornFontTestCreateReportTypeKey,
                         full ? kVornFontTestReportTypeFull : kVornFontTestReportTypeSummary);
  return options;
}

// What kills the program is the point of this test: the font that did it stays behind in the temporary folder.
TEST(Mutation, DamagedRealFontsAreReportedOnInTime) {
  const std::vector<Bytes> bases = ReadBaseFonts();
  if (bases.empty()) GTEST_SKIP() << "none of the fonts is installed";
  const TemporaryFolder folder;
  const std::string path = folder.File("mutated.ttf");
  const auto url = Tova::Adopt(TovaURLCreateWithFilePath(path.c_str()));
  const Tova::MutableDictionary full = Options(true), summary = Options(false);
  Mutator mutator(kSeed);
  const auto start = Clock::now();
  int done = 0;
  for (; done < kFonts && Clock::now() - start < kTimeForAll; ++done) {
    folder.Write("mutated.ttf", mutator.Mutate(bases[static_cast<size_t>(done) % bases.size()]));
    const auto begin = Clock::now();
    const auto report = Tova::Adopt(VornFontTestCreateReport(url.get(), (done % 4 == 0 ? full : summary).get()));
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
    ASSERT_TRUE(report) << "font " << done;
    EXPECT_LT(time, kTimeForOneFont) << "font " << done;
  }
  std::printf("%d fonts made from %zu\n", done, bases.size());
}

}  // namespace
}  // namespace test
