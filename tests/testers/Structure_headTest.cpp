#include "Tests/VornFontTesterStructure_head.h"
#include "support/GlyphBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

const std::string kHeader = "head: The header ('head'/'bhed') table ";
const std::string kNoFeatures = kHeader + "the default features flag (bit 7) set, but no default features";
const std::string kFeatures =
    kHeader + "the default features flag (bit 7) clear, but the font does in fact have default features";
const std::string kRequiresNone =
    kHeader + "flags indicate the font required layout, but they also indicate it has no default layout features";

Message Technical(const std::string& text) { return {kTechnical, kHeader + text}; }
Message Minor(const std::string& text) { return {kMinor, text}; }

/// A chain table in which one feature is on by default, or none is.
Bytes Chains(bool extended, bool on) {
  TableBuilder table;
  table.U32(0x00020000).U32(1).U32(1).U32(extended ? 28 : 24);
  if (extended) table.U32(1).U32(0);
  if (!extended) table.U16(1).U16(0);
  return table.U16(1).U16(0).U32(on ? 1 : 2).U32(0);
}

TEST(HeadStructure, TheSizeMayBePaddedToFourBytes) {
  const auto expect = [](size_t size, const std::vector<Message>& expected) {
    Expect(TestStructure_head, GoodFont().Truncate("head", size), expected);
  };
  for (const size_t size : {54u, 55u, 56u}) expect(size, {});
  expect(57, {Technical("is too big.  It is 57 bytes in size, but it should only be 54 bytes in size")});
  expect(53, {{kFatal, "head: The table is too small; it is only 53 bytes in size and should be at least 54"}});
}

TEST(HeadStructure, FieldsAreJudgedByTheirRanges) {
  const struct {
    const char* field;
    int64_t value;
    std::vector<Message> expected;
  } cases[] = {{"version", 0x00018000, {Technical("format should be 1.0 but is 1.500000 (0x00018000)")}},
               {"magicNumber", 0xABC, {Technical("magic number should be 0x5F0F3CF5 but is 0x00000ABC")}},
               {"unitsPerEm", 15, {Technical("units per em is 15, but it should be 16 or above")}},
               {"unitsPerEm", 16385, {Technical("units per em is 16385, but it should be 16384 or below")}},
               {"style", 128, {Technical("Valdour style field is 128; it should be 127 or below")}},
               {"lowestRecPPEM", 25, {Technical("lowest readable point size is 25, which seems suspiciously high")}},
               {"fontDirectionHint", -3, {Technical("direction hint value is -3; it should be -2, -1, 0, 1, or 2")}},
               {"fontDirectionHint", 3, {Technical("direction hint value is 3; it should be -2, -1, 0, 1, or 2")}},
               {"glyphDataFormat", -1, {Technical("glyph data format value is -1; it should be 0")}},
               {"indexToLocFormat", -1, {{kFatal, kHeader + "'loca' table format value is -1; it should be 0 or 1"}}}};
  for (const auto& [field, value, expected] : cases) {
    SCOPED_TRACE(field);
    const Bytes head = HeadTable().Patch(field, static_cast<uint64_t>(value));
    Expect(TestStructure_head, GoodFont().Table("head", head), expected);
  }
  for (const bool low : {true, false}) {
    TableBuilder limits = HeadTable().Patch("unitsPerEm", low ? 16 : 16384).Patch("style", low ? 0 : 127);
    limits.Patch("lowestRecPPEM", low ? 0 : 24).Patch("fontDirectionHint", low ? 0xFFFE : 2);
    Expect(TestStructure_head, GoodFont().Table("head", limits), {});
  }
  // Without technical errors the ranges are not judged.
  const Bytes head = HeadTable().Patch("unitsPerEm", 1).Patch("flags", 0x1000).Patch("magicNumber", 0);
  ExpectMessages(test::Run(TestStructure_head, GoodFont().Table("head", head), {.severities = {"FatalError"}}),
                 {Technical("has flag value 0x1000; the top four bits should all be clear")});
}

TEST(HeadStructure, FlagsAreHeldAgainstTheDefaultFeatures) {
  const struct {
    const char* table;
    bool on;
    uint16_t flags;
    std::vector<Message> expected;
  } cases[] = {{"", false, 0x0100, {Minor(kNoFeatures)}},
               {"", false, 0x0080, {Minor(kRequiresNone)}},
               {"morx", true, 0x0000, {Minor(kFeatures)}},
               {"mort", true, 0x0000, {Minor(kFeatures)}},
               {"morx", true, 0x0180, {}},
               {"morx",
                true,
                0xF0C0,
                {Technical("has flag value 0xF0C0; the top four bits should all be clear"), Minor(kFeatures),
                 Technical("flags field has bit 6 set; it should be clear"), Minor(kRequiresNone)}}};
  for (const auto& [table, on, flags, expected] : cases) {
    SCOPED_TRACE(testing::Message() << table << ' ' << flags);
    FontBuilder font = GoodFont().Table("head", HeadTable().Patch("flags", flags));
    const std::string tag = table;
    if (!tag.empty()) font.Table(tag, Chains(tag == "morx", on));
    Expect(TestStructure_head, font, expected);
  }
  // The extended table alone counts where there are both.
  FontBuilder both = GoodFont().Table("mort", Chains(false, true)).Table("morx", Chains(true, false));
  Expect(TestStructure_head, both, {});
}

TEST(HeadStructure, TheHeaderDependsOnTheKindOfFont) {
  FontBuilder bitmaps;
  bitmaps.Table("bloc", {1}).Table("bdat", {1}).Table("head", HeadTable());
  const Findings missing = test::Run(TestStructure_head, bitmaps);
  EXPECT_FALSE(missing.applies);
  ExpectMessages(missing, {{kMajor,
                            "head: The font is missing a 'bhed' table, required by the Veltrin TrueType spec for "
                            "bitmap-only fonts."}});
  Expect(TestStructure_head, bitmaps.Table("bhed", HeadTable().Patch("unitsPerEm", 3)),
         {Technical("units per em is 3, but it should be 16 or above")});
  Expect(TestStructure_head, GoodFont().Truncate("head", 0),
         {{kFatal, "head: The font is missing a 'head' table, required by the TrueType spec."}});
}

/// Checks the box, which the test itself does not.
struct BoxTester : VornFontTesterStructure_head {
  using VornFontTesterStructure_head::VornFontTesterStructure_head;
  bool ExecuteTest() const override {
    CheckBoundingBox();
    return true;
  }
};

TEST(HeadStructure, TheBoundingBoxIsThatOfTheGlyphsThatDraw) {
  FontBuilder font = OutlineFont({{}, SimpleGlyph({{{-20, 5}, {30, 400}}}), SimpleGlyph({{{1, 2}, {9, 9}}})});
  TableBuilder head = HeadTable();
  head.Patch("xMin", 0xFFFF - 19).Patch("yMin", 2).Patch("yMax", 400);
  Expect(RunTester<BoxTester>, font.Table("head", head), {});
  head.Patch("xMin", 0).Patch("yMin", 0).Patch("yMax", 700);
  Expect(RunTester<BoxTester>, font.Table("head", head),
         {Minor(kHeader + "minimum x-value (0) is incorrect; it should be -20"),
          Minor(kHeader + "minimum y-value (0) is incorrect; it should be 2"),
          Minor(kHeader + "maximum y-value (700) is incorrect; it should be 400")});
}

}  // namespace
