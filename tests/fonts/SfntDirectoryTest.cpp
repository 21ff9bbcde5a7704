#include <algorithm>
#include <random>

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TableAccess/FontClasses/FTSfntDirectory.h"
#include "support/TestRun.h"

namespace {

using namespace test;

struct Range {
  uint32_t offset, length;
};

Bytes Directory(const std::vector<Range>& ranges, size_t fileSize) {
  TableBuilder file;
  file.U32(0x00010000).U16(ranges.size()).Zeros(6);
  for (const Range& range : ranges) file.Text("abcd").U32(0).U32(range.offset).U32(range.length);
  Bytes bytes = file;
  bytes.resize(fileSize);
  return bytes;
}

std::string Fault(const Bytes& bytes) {
  const char* detail = FTSfntDirectory(Tova::ByteView(bytes.data(), bytes.size()), 0).Validate().detail;
  return detail ? detail : "";
}

constexpr const char* kOffset = "The font's directory contains an invalid table offset";
constexpr const char* kLength = "The font's directory contains an invalid table length";
constexpr const char* kOverlap = "The font contains two tables which overlap";
constexpr const char* kTooMuch = "The font's tables contain more data than can physically fit into the font";

/// The rules one pair at a time, for comparison.
std::string FaultByPairs(const std::vector<Range>& ranges, uint64_t size) {
  uint32_t total = static_cast<uint32_t>(12 + 16 * ranges.size());
  for (size_t i = 0; i < ranges.size(); ++i) {
    const uint32_t start = ranges[i].offset;
    const uint32_t end = start + ranges[i].length;
    if (start > size) return kOffset;
    if (end > size) return kLength;
    bool counted = true;
    for (size_t j = i + 1; j < ranges.size() && counted; ++j) {
      const uint32_t overlapStart = std::max(start, ranges[j].offset);
      const uint32_t overlapEnd = std::min(end, ranges[j].offset + ranges[j].length);
      const bool partial = overlapStart != start || overlapEnd != end;
      if (overlapEnd > overlapStart && partial) return kOverlap;
      if (!partial) counted = false;
    }
    if (counted) total += ranges[i].length;
  }
  return total > size ? kTooMuch : "";
}

TEST(SfntDirectory, AgreesWithThePairwiseRulesOnRandomDirectories) {
  EXPECT_EQ(Fault(Directory({}, 11)), "The font's directory is invalid");
  EXPECT_EQ(Fault(Directory({}, 12)), "");
  EXPECT_EQ(Fault(Directory({{28, 0}}, 28)), "") << "an empty table at the end";
  EXPECT_EQ(Fault(Directory({{40, 0xFFFFFFF0}}, 64)), "") << "an end that wraps below the start";
  std::mt19937 random(20260101);
  const auto below = [&random](uint32_t limit) { return static_cast<uint32_t>(random() % limit); };
  for (int round = 0; round < 20000; ++round) {
    std::vector<Range> ranges(1 + below(7));
    const uint32_t span = 1 + below(60);
    for (Range& range : ranges) {
      range = {below(span), below(span / 2 + 1)};
      if (below(12) == 0) range.length = 0U - below(span);
    }
    const size_t size = 12 + 16 * ranges.size() + below(60);
    ASSERT_EQ(Fault(Directory(ranges, size)), FaultByPairs(ranges, size)) << "round " << round;
  }
}

TEST(SfntDirectory, AFaultIsThrownAtEveryUse) {
  const MemoryFont font(Directory({{44, 20}, {50, 4}}, 64));
  for (int use = 0; use < 2; ++use) ExpectThrow(kOverlap, [&] { font->HasTaggedTable(FTTag("head")); });
}

}  // namespace
