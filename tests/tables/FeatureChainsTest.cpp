#include "TableAccess/TableClasses/FTFontTable_mort.h"
#include "TableAccess/TableClasses/FTFontTable_morx.h"
#include "support/TestRun.h"

namespace {

using namespace test;

constexpr char kHeadOutside[] = "The chain head points beyond the end of the table";
constexpr char kEntryOutside[] = "The feature entry points beyond the end of the table";

uint64_t Count(const Bytes& table, bool extended) {
  const MemoryFont font(FontBuilder().Table(extended ? "morx" : "mort", table).Build());
  return extended ? font->FindTable<FTFontTable_morx>()->CountDefaultFeatures()
                  : font->FindTable<FTFontTable_mort>()->CountDefaultFeatures();
}

/// Two chains of these default flags and enable flags, with six bytes of subtables between them.
TableBuilder Chains(bool extended, uint32_t flags, const std::vector<uint32_t>& enableFlags) {
  TableBuilder table;
  table.U32(0x00020000).U32(2, "chainCount");
  for (const std::string chain : {"first", "second"}) {
    table.U32(flags).U32((extended ? 16 : 12) + 12 * enableFlags.size() + 6, chain + "Length");
    if (extended) table.U32(enableFlags.size(), chain + "Features").U32(1);
    if (!extended) table.U16(enableFlags.size(), chain + "Features").U16(1);
    for (const uint32_t enable : enableFlags) table.U16(1).U16(0).U32(enable).U32(0xFFFFFFFF);
    table.Zeros(6);
  }
  return table;
}

TEST(FeatureChains, AFeatureIsOnWhenAllItsFlagsAreDefaults) {
  for (const bool extended : {false, true}) {
    EXPECT_EQ(Count(Chains(extended, 0x80000005, {0, 1, 2, 4, 5, 7, 0x80000000}), extended), 8u);
    EXPECT_EQ(Count(Chains(extended, 0, {0, 1, 0xFFFFFFFF}), extended), 0u);
  }
}

TEST(FeatureChains, ChainsAndEntriesLieInsideTheTable) {
  for (const bool extended : {false, true}) {
    const TableBuilder good = Chains(extended, 1, {1, 1});
    const size_t second = 8 + (good.Size() - 8) / 2;
    const auto cut = [&](size_t size) { return Count(TableBuilder(good).Truncate(size), extended); };
    const size_t headSize = extended ? 16 : 12;
    EXPECT_EQ(cut(second + headSize + 24), 4u) << "subtables are not looked at";
    ExpectThrow(kEntryOutside, [&] { cut(second + headSize + 23); });
    ExpectThrow(kHeadOutside, [&] { cut(second + headSize - 1); });
    const auto patched = [&](const char* field, uint64_t value) {
      return Count(TableBuilder(good).Patch(field, value), extended);
    };
    ExpectThrow(kHeadOutside, [&] { patched("chainCount", 3); });
    ExpectThrow(kEntryOutside, [&] { patched("firstFeatures", extended ? 0xFFFFFFFF : 0xFFFF); });
    EXPECT_EQ(patched("secondLength", 0xFFFFFFFF), 4u) << "no chain follows the last";
  }
}

TEST(FeatureChains, OverlappingChainsEndWithTheBytes) {
  for (const bool extended : {false, true}) {
    TableBuilder standstill = Chains(extended, 1, {1});
    standstill.Patch("firstLength", 0);
    EXPECT_EQ(Count(standstill, extended), 2u) << "the first chain twice";
    const auto endless = [&] { Count(standstill.Patch("chainCount", 0xFFFFFFFF), extended); };
    ExpectThrow(extended ? kEntryOutside : kHeadOutside, endless);
  }
}

}  // namespace
