#include <functional>

#include "TableAccess/TableClasses/FTFontTable_glyf.h"
#include "support/GlyphBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

/// A font's glyphs by index, as the class wanted.
class Glyphs {
 public:
  explicit Glyphs(const FontBuilder& font) : font_(font.Build()) {}
  explicit Glyphs(const std::vector<Bytes>& glyphs) : Glyphs(OutlineFont(glyphs, false)) {}
  const FTFontTable_glyf& Table() const { return *font_->FindTable<FTFontTable_glyf>(); }
  FTSimpleTrueTypeGlyph Simple(uint16_t index) const { return FTSimpleTrueTypeGlyph(Table().GetGlyph(index)); }
  FTCompoundTrueTypeGlyph Compound(uint16_t index) const { return FTCompoundTrueTypeGlyph(Table().GetGlyph(index)); }

 private:
  MemoryFont font_;
};

constexpr char kSelfContained[] = "A compound glyph contains itself as a component";

TEST(SimpleGlyph, EveryPointEncodingGivesTheSamePoints) {
  Contour line;  // more points of one kind than a flag can repeat
  for (int i = 0; i < 300; ++i) line.push_back({i, 100});
  const std::vector<Contour> contours = {{{-300, 10, false}, {-300, 20}, {-45, -235}, {-46, -491}, {30000, 1}},
                                         {{-30000, 1}},  // a change of 60,000 wraps
                                         line};
  const Glyphs glyphs({SimpleGlyph(contours), SimpleGlyph(contours, {1, 2, 3}, PointEncoding::kWords)});
  for (const uint16_t index : std::initializer_list<uint16_t>{0, 1}) {
    const FTSimpleTrueTypeGlyph glyph = glyphs.Simple(index);
    ASSERT_EQ(glyph.GetPointCount(), 306);
    EXPECT_EQ(glyph.GetContourCount(), 3);
    EXPECT_EQ(glyph.GetInstructionByteCount(), index == 0 ? 0 : 3);
    EXPECT_EQ(glyph.GetInstructionData().Matches(0, "\x1\x2\x3"), index == 1);
    uint16_t point = 0;
    for (const Contour& contour : contours) {
      for (const GlyphPoint& expected : contour) {
        EXPECT_EQ(glyph.GetPoint(point), (FTPoint{int16_t(expected.y), int16_t(expected.x)})) << point;
        EXPECT_EQ(glyph.GetFlagData()[point++] & FTOutline::kOnCurve, expected.onCurve);
      }
    }
    EXPECT_EQ(glyph.GetPoint(306), FTPoint());
    EXPECT_EQ(glyph.ComputeBoundingBox(), (FTRect{.top = 100, .left = -30000, .bottom = -491, .right = 30000}));
    EXPECT_EQ(glyph.GetBounds(), glyph.ComputeBoundingBox());
  }
  // Glyphs share the room of their points: one may be asked again after another.
  EXPECT_EQ(glyphs.Simple(0).GetPoint(0), (FTPoint{.v = 10, .h = -300}));
  EXPECT_EQ(glyphs.Simple(0).GetFlagData().size(), 306u);
}

TEST(SimpleGlyph, ContoursCountFromTheEndPointBeforeThem) {
  const Glyphs glyphs(
      {SimpleGlyph({{{0, 0}, {1, 1}, {2, 2}}, {{3, 3}, {4, 4}}}),
       SimpleGlyph({{{0, 0}, {1, 1}, {2, 2}, {3, 3}}, {{4, 4}, {5, 5}}}).Patch("end0", 5).Patch("end1", 3),
       SquareGlyph(9).Patch("end0", 0xFFFF)});
  const FTSimpleTrueTypeGlyph glyph = glyphs.Simple(0);
  EXPECT_EQ(std::tuple(glyph.GetContourPointCount(0), glyph.GetContourPointCount(1), glyph.GetContourPointCount(2)),
            std::tuple(3, 2, 0));
  EXPECT_EQ(glyph.GetContourPoint(0, 2), (FTPoint{2, 2}));
  EXPECT_EQ(glyph.GetContourPoint(1, 0), (FTPoint{2, 2}));
  EXPECT_EQ(glyph.GetContourPoint(1, 2), (FTPoint{4, 4}));
  EXPECT_EQ(glyph.GetContourPoint(2, 0), FTPoint());

  EXPECT_EQ(glyphs.Simple(1).GetPointCount(), 6);
  EXPECT_EQ(glyphs.Simple(1).GetContourPointCount(1), 0xFFFE);
  EXPECT_EQ(glyphs.Simple(2).GetPointCount(), 0);  // 65536 points in 16 bits
  EXPECT_EQ(glyphs.Simple(2).ComputeBoundingBox(), FTRect());
}

TEST(SimpleGlyph, RecordsThatCannotHoldTheirPointsThrowOnceAndForAll) {
  const TableBuilder square = SimpleGlyph({{{0, 0}, {0, 9}, {9, 9}, {9, 0}}}, {}, PointEncoding::kWords);
  const size_t flags = square.Offset("flags");
  const struct {
    Bytes record;
    const char* message;
  } cases[] = {
      {TableBuilder(square).Truncate(9), "A glyph contains bad data"},
      {square.With("instructionLength", square.Size() - 3),
       "A glyph has more data than will fit in the space allocated"},
      {TableBuilder(square).Truncate(flags).U8(1).U8(1).U8(1), "Glyph data exceeded data limit when unzipping flags"},
      {TableBuilder(square).Truncate(flags).U8(0x01).U8(0x09).U8(3),
       "Flag data exceeded flag data limit when unzipping flags"}};
  for (const auto& [record, message] : cases) {
    const Glyphs glyphs({record, square});
    ExpectThrow(message, [&] { glyphs.Simple(0).GetPointCount(); });
    ExpectThrow(kSelfContained, [&] { glyphs.Simple(0).GetBounds(); });
    EXPECT_EQ(glyphs.Simple(1).GetPoint(1), (FTPoint{.v = 9, .h = 0}));
  }
  // Neither the byte of the last repeat nor the coordinates need to be in the record; beyond the table they are 0.
  const Glyphs glyphs({TableBuilder(square).Truncate(flags).U8(1).U8(1).U8(1).U8(9)});
  EXPECT_EQ(glyphs.Simple(0).GetPointCount(), 4);
  EXPECT_EQ(glyphs.Simple(0).ComputeBoundingBox(), FTRect());
}

TEST(CompoundGlyph, TotalsAreThoseOfAllGlyphsBeneath) {
  const Glyphs glyphs({SquareGlyph(9), Bytes(),
                       CompoundGlyph({{0x0001, 0}, {0x0008, 1}, {0x0049, 0}, {0x00C1, 0}, {0x0000, 0}}),
                       CompoundGlyph({{0, 2}, {0, 0}, {0x0080, 2}})});
  const FTCompoundTrueTypeGlyph outer = glyphs.Compound(3);
  EXPECT_EQ(outer.GetComponentID(0), 0xFFFF);  // before it was read
  EXPECT_EQ(std::tuple(outer.GetComponentCount(), outer.GetSubcomponentCount(), outer.GetComponentPointCount(),
                       outer.GetComponentContourCount(), outer.GetComponentDepth()),
            std::tuple(3, 3, 9 * 4, 9, 2));
  EXPECT_EQ(outer.RawComponentCount(), 0xFFFF);
  const FTCompoundTrueTypeGlyph inner = glyphs.Compound(2);
  EXPECT_EQ(inner.GetComponentDepth(), 1);
  ASSERT_EQ(inner.GetComponentCount(), 5);
  EXPECT_EQ(inner.GetComponentID(1), 1);
  EXPECT_EQ(inner.GetComponentFlags(3), 0x00E1);
  EXPECT_EQ(inner.GetComponentFlags(5), 0xFFFF);
}

TEST(CompoundGlyph, CyclesAndMissingGlyphsThrowForEveryGlyphOnTheWay) {
  const Glyphs glyphs({CompoundGlyph({{0, 0}}), CompoundGlyph({{0, 2}}), CompoundGlyph({{0, 1}}),
                       CompoundGlyph({{0, 4}, {0, 99}}), SquareGlyph(9), CompoundGlyph({{0, 4}, {0, 3}}),
                       TableBuilder(CompoundGlyph({{0, 4}})).Truncate(9)});
  ExpectThrow(kSelfContained, [&] { glyphs.Compound(0).GetComponentCount(); });
  ExpectThrow(kSelfContained, [&] { glyphs.Compound(1).GetComponentDepth(); });
  EXPECT_TRUE(glyphs.Compound(2).ReadingData());
  ExpectThrow("An attempt was made to access a glyph with an invalid index", [&] { glyphs.Compound(5).ReadData(); });
  for (const uint16_t index : std::initializer_list<uint16_t>{2, 3, 5})
    ExpectThrow(kSelfContained, [&] { glyphs.Compound(index).GetBounds(); });
  EXPECT_TRUE(glyphs.Simple(4).DataRead());
  ExpectThrow("A glyph contains bad data", [&] { glyphs.Compound(6).ReadData(); });
}

TEST(CompoundGlyph, ChainsOfAllGlyphsAndSharedTreesAreReadInLinearTime) {
  constexpr uint16_t kCount = 65535;
  std::vector<Bytes> records = {SquareGlyph(9)};
  for (uint16_t i = 1; i < kCount; ++i)
    records.push_back(CompoundGlyph({{0, static_cast<uint16_t>(i - 1)}, {0, static_cast<uint16_t>(i - 1)}}));
  const Glyphs glyphs(records);
  EXPECT_EQ(glyphs.Compound(kCount - 1).GetComponentDepth(), kCount - 1);
  EXPECT_EQ(glyphs.Compound(12).GetComponentPointCount(), 4 << 12);
  EXPECT_EQ(glyphs.Compound(14).GetComponentPointCount(), 0);  // 65536 in 16 bits
}

TEST(CompoundGlyph, AComponentRunThatComesBackToItselfEnds) {
  TableBuilder glyph = CompoundGlyph({});
  while (glyph.Size() < 70000) glyph.U16(0x0020).U16(0).U16(0);
  FTComponentRun run(Tova::ByteView(glyph.Data().data(), glyph.Size()), glyph.Size());
  size_t count = 0;
  while (run.Next()) ++count;
  EXPECT_EQ(count, 10922u);  // at 10, 16, ..., 65530, and at 0, whose size leads back to 16
}

TEST(GlyphTable, RecordsThatShareTheirBytesMayNotDecodeMoreThanTheBudget) {
  TableBuilder big = SquareGlyph(9).Patch("end0", 0xFFFE);
  big.Truncate(big.Offset("flags"));
  for (int i = 0; i < 256; ++i) big.U8(0x39).U8(i < 255 ? 255 : 254);
  big.Zeros(66000);
  FontBuilder font = OutlineFont({big});
  TableBuilder loca;
  constexpr uint16_t kCount = 600;
  for (int i = 0; i <= kCount; ++i) loca.U32(i % 2 == 0 ? 0 : font["glyf"].size());
  const Glyphs glyphs(font.Table("loca", loca).Table("maxp", MaxpTable(kCount)));
  const auto decodeAll = [&] {
    for (uint16_t i = 0; i < kCount; i += 2) ASSERT_EQ(glyphs.Simple(i).GetPointCount(), 0xFFFF);
  };
  try {
    decodeAll();
    FAIL() << "all were decoded";
  } catch (const FTException& exception) {
    EXPECT_STREQ(exception.GetDetailedMessage(),
                 "The examination was given up after 16777216 steps; parts of the font refer to the same bytes over "
                 "and over");
  }
  EXPECT_THROW(glyphs.Table().GetFont()->SpendWork(1), FTWorkBudgetEnd);
}

TEST(GlyphTable, GlyphsThatCannotBeMadeLeaveTheTableWithoutAny) {
  const struct {
    std::function<void(FontBuilder&)> damage;
    const char* message;
  } cases[] = {{[](FontBuilder& font) { font.Remove("loca"); }, "The required 'loca' table is missing"},
               {[](FontBuilder& font) { font.Remove("head"); }, "The required 'head' table is missing"},
               {[](FontBuilder& font) { font["loca"][2] = 1; },
                "The 'loca' table points to data outside the bounds of the 'glyf' table"},
               {[](FontBuilder& font) { font["glyf"][0] = 0xFE; }, "An error occurred allocating memory"}};
  for (const auto& [damage, message] : cases) {
    FontBuilder font = OutlineFont({SquareGlyph(9), SquareGlyph(9)});
    damage(font);
    const Glyphs glyphs(font);
    ExpectThrow(message, [&] { glyphs.Table().GetGlyph(0); });
    EXPECT_FALSE(glyphs.Table().GetGlyph(0));
  }
  const Glyphs good({SquareGlyph(9), Bytes()});
  EXPECT_EQ(good.Table().GetGlyphs().size(), 2u);
  EXPECT_TRUE(good.Table().GetGlyph(1).IsEmptyGlyph());
  EXPECT_EQ(good.Table().GetGlyph(1).GetBounds(), FTRect());
  EXPECT_FALSE(good.Table().GetGlyph(2));
  EXPECT_EQ(FTFontTable_glyf(good.Table()).GetGlyphs().size(), 2u);
}

}  // namespace
