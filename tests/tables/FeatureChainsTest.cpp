#include "TableAccess/TableClasses/FTFontTable_mort.h"
#include "TableAccess/TableClasses/FTFontTable_morx.h"
#include "support/LayoutBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

constexpr char kHeadOutside[] = "The chain head points beyond the end of the table";
constexpr char kEntryOutside[] = "The feature entry points beyond the end of the table";
constexpr StateTableWidth kWidths[] = {StateTableWidth::kClassic, StateTableWidth::kExtended};

/// Asks the accessor of 'morx' or 'mort' over these bytes.
template <class Question>
auto Ask(StateTableWidth width, const Bytes& table, Question question) {
  const char* tag = width == StateTableWidth::kExtended ? "morx" : "mort";
  const MemoryFont font(FontBuilder().Table(tag, table).Build());
  return question(dynamic_cast<const FTFontTable_Chains&>(*font->GetIndTable(0)));
}
uint64_t Count(StateTableWidth width, const Bytes& table) {
  return Ask(width, table, [](const FTFontTable_Chains& chains) { return chains.CountDefaultFeatures(); });
}

/// A chain of features of type 3 with these enable flags, and of subtables that run for these flags.
TableBuilder Chain(StateTableWidth width, uint32_t defaults, const std::vector<uint32_t>& enable,
                   const std::vector<uint32_t>& subtables) {
  std::vector<ChainFeature> features = {{0, 0, 1}};
  std::vector<ChainSubtable> made;
  for (const uint32_t flags : enable) features.push_back({3, 0, flags});
  for (const uint32_t flags : subtables) made.push_back({4, LookupFormat6({}), flags});
  return ChainTable(width, made, features, defaults);
}

TEST(FeatureChains, AFeatureIsOnWhenAllItsFlagsAreDefaults) {
  for (const StateTableWidth width : kWidths) {
    EXPECT_EQ(Count(width, Chain(width, 0x80000005, {0, 1, 2, 4, 5, 7, 0x80000000}, {1})), 4u);
    EXPECT_EQ(Count(width, Chain(width, 5, {2}, {8, 4})), 1u) << "no feature is on, but a subtable runs";
    EXPECT_EQ(Count(width, Chain(width, 5, {2}, {8, 2})), 0u);
    EXPECT_EQ(Count(width, Chain(width, 5, {2}, {8, 4}).Patch("length0", 0)), 0u) << "the second is not found";
    EXPECT_EQ(Count(width, Chain(width, 5, {}, {}).Patch("chainCount", 0)), 0u);
  }
}

TEST(FeatureChains, EntriesAreFoundByChainAndIndex) {
  for (const StateTableWidth width : kWidths) {
    Ask(width, Chain(width, 1, {7, 8}, {1}), [](const FTFontTable_Chains& chains) {
      FTLayoutFeature feature;
      EXPECT_EQ(chains.GetChainCount(), 1u);
      EXPECT_EQ(chains.GetFeatureCount(0), 3u);
      EXPECT_EQ(chains.GetFeatureCount(1), 0u);
      EXPECT_TRUE(chains.GetIndFeature(0, 2, feature));
      EXPECT_EQ(feature.fType, 3);
      EXPECT_EQ(feature.fEnableFlags, 8u);
      EXPECT_EQ(feature.fDisableFlags, 0xFFFFFFFF);
      EXPECT_FALSE(chains.GetIndFeature(0, 3, feature) || chains.GetIndFeature(1, 0, feature));
    });
  }
}

TEST(FeatureChains, ChainsAndEntriesLieInsideTheTable) {
  for (const StateTableWidth width : kWidths) {
    const TableBuilder good = Chain(width, 1, {1}, {1});
    const size_t entries = good.Offset("type0");
    const auto patched = [&](const char* field, uint64_t value) { return Count(width, good.With(field, value)); };
    const auto cut = [&](size_t size) { return Count(width, good.With("chainLength", size - 8).Truncate(size)); };
    EXPECT_EQ(cut(entries + 24), 1u) << "subtables are not asked for";
    ExpectThrow(kEntryOutside, [&] { cut(entries + 23); });
    ExpectThrow(kEntryOutside, [&] { patched("featureCount", 0xFFFF); });
    EXPECT_EQ(ExpectThrow(kHeadOutside, [&] { cut(entries - 1); }), "tChain + tHeaderSize > tTableLimit");
    EXPECT_EQ(ExpectThrow(kHeadOutside, [&] { patched("chainCount", 2); }), "tChain + tHeaderSize > tTableLimit");
    for (const uint64_t length : {uint64_t{0}, entries - 9, good.Size() - 7, uint64_t{0xFFFFFFFF}}) {
      EXPECT_EQ(ExpectThrow(kHeadOutside, [&] { patched("chainLength", length); }), "tNextChain > tTableLimit");
    }
  }
}

TEST(FeatureChains, OverlappingEntriesEndWithTheBytes) {
  // Chains of a head's length that all claim the entries behind them: billions, were they all looked at.
  TableBuilder crawl;
  crawl.U32(0x00010000).U32(200000);
  for (int chain = 0; chain < 200000; ++chain) crawl.U32(1).U32(12).U16(0xFFFF).U16(0);
  ExpectThrow(kEntryOutside, [&] { Count(StateTableWidth::kClassic, crawl); });
}

}  // namespace
