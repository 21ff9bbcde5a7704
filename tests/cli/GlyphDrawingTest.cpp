#include <gmock/gmock.h>

#include "Formats/GlyphDrawing.h"
#include "support/GlyphBuilder.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace testing;
using namespace test;
using tool::GlyphDrawer, tool::GlyphDrawing;

std::vector<int32_t> Sides(const std::optional<tool::GlyphBox>& box) {
  return box ? std::vector{box->xMin, box->yMin, box->xMax, box->yMax} : std::vector<int32_t>();
}

/// A composite glyph of components with an offset in words (or two numbers of points) and, with flag 8, a scale.
struct Part {
  uint16_t flags;
  uint16_t glyph;
  int first;
  int second;
  double scale = 1;
};
Bytes Composite(const std::vector<Part>& parts) {
  TableBuilder glyph;
  glyph.S16(-1).S16(1).S16(2).S16(3).S16(4);
  for (size_t i = 0; i < parts.size(); ++i) {
    const Part& part = parts[i];
    glyph.U16(part.flags | 1 | (i + 1 < parts.size() ? 0x20 : 0)).U16(part.glyph).S16(part.first).S16(part.second);
    if (part.flags & 8) glyph.S16(static_cast<int64_t>(part.scale * 0x4000));
  }
  return glyph;
}

class GlyphDrawings : public testing::Test {
 protected:
  GlyphDrawing Draw(const FontBuilder& font, int64_t glyph) {
    GlyphDrawer drawer(folder_.Write("font.ttf", font.Build()), 1);
    EXPECT_EQ(drawer.Open(0, ""), "");
    return drawer.Draw(glyph);
  }
  TemporaryFolder folder_;
};

TEST_F(GlyphDrawings, PointsLieWhereTheyAreStoredWhateverTheSideBearing) {
  const Bytes glyph = SimpleGlyph({{{-30, 5}, {70, 105, false}, {70, 5}}}).Patch("xMax", 99);
  const GlyphDrawing drawing = Draw(OutlineFont({glyph, {}}).Table("hmtx", MetricsTable({{640, 7}, {0, 0}})), 0);
  EXPECT_EQ(drawing.refusal, "");
  EXPECT_EQ(drawing.advance, 640);
  EXPECT_THAT(Sides(drawing.stored), ElementsAre(-30, 5, 99, 105));
  EXPECT_THAT(Sides(drawing.found), ElementsAre(-30, 5, 70, 105));
  EXPECT_THAT(drawing.contourEnds, ElementsAre(3));
  EXPECT_EQ(drawing.points.at(1).kind, tool::PointKind::kQuadratic);
  EXPECT_THAT(Sides(Draw(OutlineFont({glyph, {}}), 1).stored), IsEmpty()) << "a glyph without outline has no box";
}

TEST_F(GlyphDrawings, ComponentsLieWhereTheirOffsetsOrPointsPutThem) {
  constexpr uint16_t kOffset = 2, kScale = 8, kScaledOffset = 0x800;
  const auto font = OutlineFont({SquareGlyph(100),
                                 Composite({{kOffset, 0, 10, 20},
                                            {kOffset | kScale, 0, 200, 0, 0.5},
                                            {kOffset | kScale | kScaledOffset, 0, 200, 40, -0.5},
                                            {0, 0, 2, 0}}),
                                 Composite({{kOffset, 1, 1000, 0}, {kOffset, 3, 0, 0}}), Bytes(11, 0x7F)});
  const GlyphDrawing drawing = Draw(font, 1);
  EXPECT_EQ(drawing.refusal, "");
  ASSERT_EQ(drawing.components.size(), 4u);
  EXPECT_THAT(Sides(drawing.components[0].box), ElementsAre(10, 20, 110, 120));
  EXPECT_THAT(Sides(drawing.components[1].box), ElementsAre(200, 0, 250, 50));
  EXPECT_THAT(Sides(drawing.components[2].box), ElementsAre(50, -30, 100, 20));
  const auto& met = drawing.points.at(2);
  EXPECT_THAT(Sides(drawing.components[3].box), ElementsAre(met.x, met.y, met.x + 100, met.y + 100));
  EXPECT_TRUE(drawing.components[3].byPoints);
  EXPECT_THAT(Sides(drawing.stored), ElementsAre(1, 2, 3, 4));

  const GlyphDrawing nested = Draw(font, 2);
  EXPECT_THAT(nested.refusal, HasSubstr("FreeType: "));
  EXPECT_EQ(nested.components.at(0).refusal, "");
  EXPECT_EQ(nested.points.size(), drawing.points.size()) << "what can be drawn is";
  EXPECT_EQ(nested.points.at(0).x, drawing.points.at(0).x + 1000);
}

TEST_F(GlyphDrawings, HostileGlyphsAreRefusedInTime) {
  const std::vector<Part> twenty(20, Part{2, 0, 0, 0});
  std::vector<Bytes> glyphs = {SquareGlyph(10), Composite({{2, 1, 0, 0}})};
  for (uint16_t i = 0; i < 6; ++i) {  // each has twenty of the one before
    glyphs.push_back(Composite(std::vector(20, Part{2, static_cast<uint16_t>(i == 0 ? 0 : i + 1), 30'000, 30'000})));
  }
  glyphs.push_back(SimpleGlyph({Contour(6000, {1, 1})}));
  glyphs.push_back(Bytes(11, 0x7F));
  const FontBuilder font = OutlineFont(glyphs);
  EXPECT_THAT(Draw(font, 1).refusal, HasSubstr("too deep"));
  EXPECT_EQ(Draw(font, 2).refusal, "");
  EXPECT_THAT(Draw(font, 7).refusal, HasSubstr("too many components"));
  EXPECT_LE(Draw(font, 7).points.size(), tool::kMaximumDrawnPoints);
  EXPECT_THAT(Draw(font, 8).refusal, HasSubstr("too many to draw"));
  EXPECT_THAT(Draw(font, 9).refusal, HasSubstr("FreeType: "));
  EXPECT_THAT(Draw(font, 10).refusal, HasSubstr("there is no glyph 10"));
  EXPECT_THAT(Draw(font, int64_t{1} << 40).refusal, HasSubstr("there is no glyph"));
  EXPECT_THAT(Draw(FontBuilder(font).Truncate("loca", 6), 0).refusal, Not(IsEmpty()));
  EXPECT_THAT(Sides(Draw(FontBuilder(font).Truncate("glyf", 8), 0).stored), IsEmpty());
}

TEST_F(GlyphDrawings, EachFontOfAFileIsItsOwn) {
  const std::string path =
      folder_.Write("two.ttc", BuildCollection({OutlineFont({SquareGlyph(10)}), OutlineFont({SquareGlyph(20)})}));
  GlyphDrawer drawer(path, 2);
  for (const int32_t i : {0, 1}) {
    EXPECT_EQ(drawer.Open(static_cast<size_t>(i), ""), "");
    EXPECT_EQ(drawer.UnitsPerEm(), 1000);
    EXPECT_THAT(Sides(drawer.Draw(0).found), ElementsAre(0, 0, 10 + 10 * i, 10 + 10 * i));
  }
  EXPECT_THAT(GlyphDrawer(path, 3).Open(0, "None"), HasSubstr("no font of this name"));
  const std::string resources = std::string(SAMPLES_FOLDER) + "/Suitcase.dfont";
  EXPECT_EQ(GlyphDrawer(resources, 2).Open(1, "VornSuitcase-Regular"), "");
  GlyphDrawer none(folder_.Write("none.ttf", Bytes(40, 'n')), 1);
  EXPECT_THAT(none.Open(0, ""), HasSubstr("FreeType: "));
  EXPECT_EQ(none.Draw(0).refusal, none.Open(0, ""));
}

}  // namespace
