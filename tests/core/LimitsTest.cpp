#include <gmock/gmock.h>

#include "TableAccess/AncillaryClasses/FTEncoding.h"
#include "TableAccess/AncillaryClasses/FTUnicodeMap.h"
#include "TableAccess/FTLimits.h"
#include "TableAccess/Glyphs/FTGlyphInk.h"
#include "TableAccess/Glyphs/FTGlyphSets.h"
#include "TableAccess/TableClasses/FTFontTable_morx.h"
#include "support/AllTests.h"
#include "support/BitmapBuilder.h"
#include "support/CmapBuilder.h"
#include "support/GlyphBuilder.h"
#include "support/LayoutBuilder.h"
#include "support/SuitcaseBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;
using testing::HasSubstr;
using testing::Not;

/// A full report by all tests of a file in memory, with a limit on messages unless that is 0, as a text.
std::string ReportOn(const Bytes& bytes, int messageLimit = 0) {
  const auto options = AllTests(kVornFontTestReportTypeFull);
  if (messageLimit != 0) {
    TovaDictionarySetValue(options.get(), kVornFontTestMessageLimitOptionKey,
                           Tova::Adopt(TovaNumberCreateWithInteger(messageLimit)).get());
  }
  const auto data = Tova::Adopt(TovaDataCreate(bytes.data(), bytes.size()));
  const auto url = Tova::Adopt(TovaURLCreateWithData(data.get(), nullptr));
  return Description(Tova::Adopt(VornFontTestCreateReport(url.get(), options.get())).get());
}

/// Fonts that share one directory.
Bytes Shared(uint32_t count) {
  TableBuilder collection;
  collection.Text("ttcf").U32(0x00010000).U32(count);
  for (uint32_t i = 0; i < count; ++i) collection.U32(12 + 4 * count);
  return collection.Append(GoodFont().Build(collection.Size()));
}

FontBuilder With(const std::string& tag, const Bytes& table) { return GoodFont().Table(tag, table); }

Bytes Suitcase(int fonts) {
  SuitcaseBuilder suitcase;
  for (int i = 0; i < fonts; ++i) suitcase.Add("FOND", i, FamilyBuilder().Build());
  return suitcase.Build();
}

/// A font with a finding for each of its glyphs.
Bytes ManyFindings() { return OutlineFont(std::vector<Bytes>(50, SquareGlyph(9).Truncate(9))).Build(); }

constexpr const char* kUnreadable = "FontsTestedKey: {}";

// Each bound of FTLimits, small enough for a small file to meet it, and what the report then says; without the bound it
// does not.
TEST(Limits, ThatAReportMeetsAreTold) {
  const Bytes good = GoodFont().Build();
  const Bytes morx = With("morx", ChainTable(StateTableWidth::kExtended, {{4, LookupFormat6({{1, 2}})}})).Build();
  const Bytes bitmaps = With("EBLC", BitmapLocationTable({{8, {{0, 2, BitmapIndex3(1, {0, 6, 12, 18})}}}}))
                            .Table("EBDT", BitmapDataTable(std::vector<Bytes>(3, Bytes(6))))
                            .Build();
  const Bytes longName = With("name", NameTable({{4, std::string(2000, 'n')}, {6, "N"}})).Build();
  const std::string steps = " steps; parts of the font refer to the same bytes over and over";
  const struct {
    FTLimits limits;
    Bytes file;
    std::string outcome;
    int messageLimit = 0;
  } cases[] = {
      {{.maxCollectionFonts = 1}, Shared(2), kUnreadable},
      {{.maxSuitcaseFonts = 1}, Suitcase(2), kUnreadable},
      {{.sharedDirectoryBytes = 0}, Shared(9), kUnreadable},
      {{.workAllowed = 7, .workAllowedPerByte = 0}, good, "given up after 7" + steps},
      {{.workAllowed = 5, .workAllowedPerByte = 1, .mostWorkAllowed = 9}, good, "given up after 9" + steps},
      {{.minReportBytes = 5000, .reportBytesPerByte = 0}, ManyFindings(), "further messages were not recorded"},
      {{.minReportBytes = 0, .reportBytesPerByte = 2}, ManyFindings(), "further messages were not recorded"},
      {{.maxReportBytes = 5000}, ManyFindings(), "further messages were not recorded"},
      {{.maxReportBytes = 5000}, Shared(2), "The report is full after 1 fonts; the others were not examined"},
      {{.minReportBytes = 0, .reportBytesPerMessageAllowed = 50}, ManyFindings(), "messages were not recorded", 100},
      {{.longNameBytes = 0}, longName, std::string(1024, 'n') + "..."},
      {{.longName = 9, .longNameBytes = 0}, good, "Good Regu..."},
      {{.layoutStepsAllowed = 3, .layoutStepsAllowedPerByte = 0}, morx, "given up after 3 steps; parts of the table"},
      {{.maxCmapChecks = 1}, good, "The font has an invalid 'cmap' table"},
      {{.nameTextBytes = 10}, good, "The font has no PostScript name"},
      {{.bitmapStepsAllowed = 1, .bitmapStepsAllowedPerByte = 0}, bitmaps, "the images from strike 0 on were not"}};
  for (const auto& c : cases) {
    EXPECT_THAT(ReportOn(c.file, c.messageLimit), Not(HasSubstr(c.outcome)));
    const FTLimits::Injection injection(c.limits);
    EXPECT_THAT(ReportOn(c.file, c.messageLimit), HasSubstr(c.outcome));
  }
}

TEST(Limits, OfEncodingsLeaveOutWhatIsPast) {
  const Bytes table = CmapTable({{3, 1, CmapFormat6('A', {1, 2})}, {0, 3, CmapFormat6('A', {1, 3})}});
  const Tova::ByteView bytes(table.data(), table.size());
  const FTLimits::Injection injection({.maxEncodingPairs = 1, .maxUnicodeEncodings = 1});
  FTWorkBudget budget;
  EXPECT_EQ(FTUnicodeMap(bytes, budget).Encodings().size(), 1u);
  const Bytes subtable = CmapFormat6('A', {1, 2});
  const FTEncoding encoding(Tova::ByteView(subtable.data(), subtable.size()), 3, 1);
  ExpectThrow("The font has an invalid 'cmap' table", [&] { encoding.GetMapping(); });
}

TEST(Limits, OfBlankGlyphsCountAsInk) {
  FontBuilder font = OutlineFont({CompoundGlyph({{3, 1}, {3, 1}}), CompoundGlyph({{3, 2}}), {}});
  const Bytes loca = font["loca"], glyf = font["glyf"];
  const FTGlyphLocations locations = {Tova::ByteView(loca.data(), loca.size()), true, 3};
  FTWorkBudget budget;
  const FTGlyphInk ink(Tova::ByteView(glyf.data(), glyf.size()), locations, budget);
  EXPECT_TRUE(ink.IsBlank(0));
  for (const FTLimits& limits : {FTLimits{.maxBlankComponents = 3}, FTLimits{.maxBlankDepth = 1}}) {
    const FTLimits::Injection injection(limits);
    EXPECT_FALSE(ink.IsBlank(0));
  }
}

TEST(Limits, OfGlyphSetsLetGoOfTheOldest) {
  const Bytes bytes(8);
  const auto locations = [&](uint16_t count) { return FTGlyphLocations{{bytes.data(), bytes.size()}, true, count}; };
  FTWorkBudget budget;
  FTGlyphSets sets;
  const auto keeps = [&] {
    const std::weak_ptr<FTGlyphSet> first = sets.Get({}, locations(1), budget, nullptr);
    sets.Get({}, locations(2), budget, nullptr);
    return !first.expired();
  };
  EXPECT_TRUE(keeps());
  const FTLimits::Injection injection({.keptGlyphSets = 1});
  sets = {};
  EXPECT_FALSE(keeps());
}

TEST(Limits, OfOverlappingChainsEndTheirEntries) {
  TableBuilder morx;  // every chain claims the entries that the heads of the others, and zeros, make
  morx.U16(2).U16(0).U32(20);
  for (int i = 0; i < 20; ++i) morx.U32(1).U32(16).U32(25).U32(0);
  const MemoryFont font(FontBuilder().Table("morx", morx.Zeros(300)).Build());
  const auto count = [&] { return font->FindTable<FTFontTable_morx>()->CountDefaultFeatures(); };
  count();
  const FTLimits::Injection injection({.overlappingChainBytes = 0});
  ExpectThrow("The feature entry points beyond the end of the table", count);
}

}  // namespace
