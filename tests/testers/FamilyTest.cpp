#include "TableAccess/ContainerClasses/FTFontContainer.h"
#include "Tests/FOND/VornFontTester_FOND_FAT.h"
#include "Tests/FOND/VornFontTester_FOND_Type1.h"
#include "Tests/FOND/VornFontTester_FOND_boundingBox.h"
#include "Tests/FOND/VornFontTester_FOND_kerning.h"
#include "Tests/FOND/VornFontTester_FOND_offsets.h"
#include "Tests/FOND/VornFontTester_FOND_styles.h"
#include "Tests/VornFontTester_NFNT.h"
#include "support/SuitcaseBuilder.h"
#include "support/TemporaryFolder.h"
#include "support/TestRun.h"
#include "support/Values.h"

namespace {

using namespace test;

class FamilyTests : public testing::Test {
 protected:
  /// Runs a test over the first font of a suitcase.
  Findings Run(VornFontTestEntry entry, const SuitcaseBuilder& suitcase) {
    const std::string path = folder_.Write("suitcase", suitcase.Build());
    const auto container = FTFontContainer::FontContainerFromTovaURLRef(FileUrl(path).get(), true);
    return test::Run(entry, *container->GetIndFont(0));
  }
  Findings Run(VornFontTestEntry entry, const Bytes& family) {
    return Run(entry, SuitcaseBuilder().Add("FOND", 128, family, "Family"));
  }
  Findings Run(VornFontTestEntry entry, const FamilyBuilder& family) { return Run(entry, family.Build()); }

  TemporaryFolder folder_;
};

FamilyBuilder Named(const std::vector<std::string>& strings) {
  FamilyBuilder family;
  family.strings = strings;
  return family;
}

// The font association table.

TEST_F(FamilyTests, AssociatedFontsMustBeInTheSuitcase) {
  FamilyBuilder family;
  family.fat = {{12, 0, 300}, {0, 0, -5}, {9, 1, 301}};
  const auto suitcase = SuitcaseBuilder().Add("FOND", 128, family.Build()).Add("NFNT", 301, Bytes(26));
  ExpectMessages(
      Run(TestUsability_FOND_FAT, suitcase),
      {{"MajorError", "FOND FAT: FAT entry 0 in the FOND points to a nonexistent resource of type 'NFNT' and ID 300",
        "FOND offset 54"},
       {"MajorError", "FOND FAT: FAT entry 1 in the FOND points to a nonexistent resource of type 'sfnt' and ID -5",
        "FOND offset 60"}});
  family.fat = {{9, 1, 301}};
  ExpectMessages(
      Run(TestUsability_FOND_FAT, SuitcaseBuilder().Add("FOND", 128, family.Build()).Add("NFNT", 301, Bytes(26))),
      {{"FatalError", "FOND FAT: The FOND resource refers to no outline data; it cannot be used on Corvane."}});
}

TEST_F(FamilyTests, OutlinesOfTwoKindsAreNoGoodIdea) {
  folder_.Write("Base", OneFile({}, OutlineFile().Build()));
  ExpectMessages(Run(TestUsability_FOND_FAT, Named({"Base"})),
                 {{"Information",
                   "FOND FAT: The FOND resource refers to both sfnt and LWFN outline data; this is "
                   "probably not a good idea."},
                  {"MajorError",
                   "FOND FAT: FAT entry 0 in the FOND points to a nonexistent resource of type 'sfnt' "
                   "and ID 128"}});
}

TEST_F(FamilyTests, AssociationsMustFit) {
  const Bytes family = TableBuilder().Zeros(52).U16(1).Zeros(6);
  ExpectMessages(
      Run(TestUsability_FOND_FAT, family),
      {{"FatalError",
        "FOND FAT: The FOND resource has too many entries in its FAT; it has 2 but should have no more than 1"},
       {"MajorError", "FOND FAT: FAT entry 0 in the FOND points to a nonexistent resource of type 'sfnt' and ID 0"},
       {"MajorError", "FOND FAT: FAT entry 1 in the FOND points to a nonexistent resource of type 'sfnt' and ID 0"}});
  ExpectMessage(Run(TestUsability_FOND_FAT, Bytes()),
                {"FatalError",
                 "FOND FAT: The FOND resource has too many entries in its FAT; it has 1 but should have no more than "
                 "-9"});
}

// Table offsets.

TEST_F(FamilyTests, ASoundFamilyHasNothingToReport) {
  FamilyBuilder family = Named({"Base-Regular", "\x03", "Bold"});
  family.kerning = {{0, 2}, {1, 1}};
  family.hasWidths = true;
  const auto suitcase = SuitcaseBuilder().Add("FOND", 128, family.Build()).Add("sfnt", 128, {});
  const std::string path = folder_.Write("suitcase", suitcase.Build());
  const auto container = FTFontContainer::FontContainerFromTovaURLRef(FileUrl(path).get(), true);
  for (const VornFontTestEntry entry : {TestUsability_FOND_FAT, TestUsability_FOND_Offsets, TestUsability_FOND_Styles,
                                        TestUsability_FOND_Kerning, TestUsability_FOND_BoundingBox}) {
    const Findings findings = test::Run(entry, *container->GetIndFont(1));
    EXPECT_TRUE(findings.applies);
    ExpectMessages(findings, {});
    EXPECT_FALSE(test::Run(entry, GoodFont()).applies);
  }
  EXPECT_FALSE(test::Run(TestUsability_FOND_Type1, *container->GetIndFont(1)).applies);
}

TEST_F(FamilyTests, OffsetsBeyondTheEndAreReportedByTheOffsetsTestAlone) {
  FamilyBuilder family;
  const TableBuilder sound = family.Build();
  const size_t size = sound.Size();
  ExpectMessages(
      Run(TestUsability_FOND_Offsets,
          TableBuilder(sound).Patch("styleOffset", 0xFFFFFFFF).Patch("kernOffset", size).Patch("widthOffset", size)),
      {{"MajorError",
        "FOND offsets: The style mapping table offset (0xFFFFFFFF) is beyond the end of the FOND (0x00000050)"},
       {"MajorError", "FOND offsets: The kerning table offset (0x00000050) is beyond the end of the FOND (0x00000050)"},
       {"MajorError", "FOND offsets: The width table offset (0x00000050) is beyond the end of the FOND (0x00000050)"}});
  const Bytes bad = TableBuilder(sound).Patch("kernOffset", size);
  EXPECT_TRUE(Run(TestUsability_FOND_FAT, bad)
                  .messages.at(0)
                  .text.ends_with("(The 'FOND' resource has a bad kerning table offset)"));
  ExpectThrow("The 'FOND' resource has a bad kerning table offset", [&] { Run(TestUsability_FOND_Kerning, bad); });
}

TEST_F(FamilyTests, TablesInsideTheAssociationsAreReported) {
  FamilyBuilder family = Named({"Base"});
  const TableBuilder sound = family.Build();
  ExpectMessages(
      Run(TestUsability_FOND_Offsets,
          TableBuilder(sound).Patch("styleOffset", 58).Patch("kernOffset", 58).Patch("widthOffset", 59)),
      {{"MinorError",
        "FOND offsets: The style mapping table offset (0x0000003A) is before the end of the FOND's FAT (0x0000003C)"},
       {"MinorError",
        "FOND offsets: The kerning table offset (0x0000003A) is before the end of the FOND's FAT (0x0000003C)"},
       {"MinorError",
        "FOND offsets: The width table offset (0x0000003B) is before the end of the FOND's FAT (0x0000003C)"}});
  ExpectMessages(Run(TestUsability_FOND_Offsets, TableBuilder(sound).Patch("glyphEncoding", 0x10000)),
                 {{"MinorError", "FOND offsets: The style mapping table is invalid"}});
  ExpectMessages(
      Run(TestUsability_FOND_Offsets, TableBuilder(sound).Truncate(sound.Offset("styles") + 50)),
      {{"MajorError", "FOND offsets: The style mapping table header extends 8 bytes beyond the end of the FOND"}});
}

TEST_F(FamilyTests, TheOffsetTableIsReadWhereItLies) {
  FamilyBuilder family = Named({"Base"});
  family.hasOffsets = false;
  ExpectMessages(Run(TestUsability_FOND_Offsets, family),
                 {{"Information", "FOND offsets: The FOND has no offset table."}});
  const TableBuilder sound = FamilyBuilder().Build();
  ExpectMessages(Run(TestUsability_FOND_Offsets, TableBuilder(sound).Truncate(60)),
                 {{"Information", "FOND offsets: The FOND has no offset table."}});
  ExpectMessages(Run(TestUsability_FOND_Offsets, TableBuilder(sound).Truncate(62)),
                 {{"MajorError", "FOND offsets: Offset table entry count extends beyond the end of the FOND"}});
  ExpectMessages(
      Run(TestUsability_FOND_Offsets, TableBuilder(sound).Patch("offsetCount", 100)),
      {{"MajorError",
        "FOND offsets: The offset table ends at 0x000001D2, which is beyond the end of the table (0x00000050)"}});
  ExpectMessages(Run(TestUsability_FOND_Offsets, TableBuilder(sound).Patch("offset.0", 0x50)),
                 {{"MajorError", "FOND offsets: Offset 0 (0x00000050) is beyond the end of the table (0x00000050)",
                   "FOND offset 62"}});
  ExpectMessages(Run(TestUsability_FOND_Offsets, TableBuilder(sound).Patch("offsetCount", 0x7FFF)), {});
}

// Style names.

TEST_F(FamilyTests, PostScriptNamesMustBeLegal) {
  EXPECT_TRUE(Run(TestUsability_FOND_Styles, Named({std::string(63, 'x')})).messages.empty());
  const std::string tooLong(64, 'x');
  const Findings findings = Run(TestUsability_FOND_Styles, Named({tooLong}));
  ASSERT_EQ(findings.messages.size(), 48u) << "every style";
  EXPECT_EQ(findings.messages[47], (Message{"MajorError",
                                            "FOND styles: PostScript name for style 47 ('" + tooLong +
                                                "') is too long (64 bytes; should be no more than 63 bytes).",
                                            "FOND (Style 47)"}));

  FamilyBuilder family = Named({"Base", "\x03\x04", "-",
                                "B d\xC4%\x01"
                                "e"});
  family.indexes = {1, 2};
  const auto illegal = [](const char* character, int position) {
    return Message{"MajorError", std::string("FOND styles: PostScript name for style 1 ('Base-B d\xC6\x92%\x01"
                                             "e') has a character (") +
                                     character + ") in position " + std::to_string(position) +
                                     " which may not be used in a PostScript font name."};
  };
  ExpectMessages(Run(TestUsability_FOND_Styles, family),
                 {illegal(" ", 6), illegal("\xC6\x92", 8), illegal("%", 9), illegal("\x01", 10)});
  family.strings[3] = std::string("No\0thing", 8);
  EXPECT_NE(Run(TestUsability_FOND_Styles, family).messages.at(0).text.find("('Base-No')"), std::string::npos);
}

TEST_F(FamilyTests, PiecesOfNamesMustBeThere) {
  const std::string empty =
      "FOND styles: While generating the PostScript name for style 1, a zero-length piece was "
      "encountered; the name is invalid";
  FamilyBuilder family = Named({"Base", "\x03\x04", "", "Bold"});
  family.indexes = {1, 2};
  ExpectMessages(Run(TestUsability_FOND_Styles, family), {{"FatalError", empty}});
  family.strings[1] = "";
  ExpectMessages(Run(TestUsability_FOND_Styles, family), {});
  EXPECT_EQ(Run(TestUsability_FOND_Styles, Named({""})).messages.size(), 48u) << "the base is a piece too";
  family.strings = {"Base", std::string(2, 3), std::string(200, 'x')};
  ExpectMessages(Run(TestUsability_FOND_Styles, family),
                 {{"FatalError",
                   "FOND styles: PostScript name for style 1 is far too long (more than 256 bytes; the "
                   "maximum legal length is 63 bytes"}});
  family.indexes = {1, 20, -3, 0, 21};
  ExpectMessages(
      Run(TestUsability_FOND_Styles, family),
      {{"FatalError", "FOND styles: The style name table entry 1 lies outside the 'FOND' resource boundaries"},
       {"FatalError", "FOND styles: The style name table entry 4 lies outside the 'FOND' resource boundaries"}});
}

TEST_F(FamilyTests, TheStyleMappingTableMustHoldItsStrings) {
  FamilyBuilder family = Named({"Base", "Other"});
  family.kerning = {{0, 1}};
  const TableBuilder sound = family.Build();
  const size_t styles = sound.Offset("styles");
  const auto cut = [&](size_t length) {
    return Run(TestUsability_FOND_Styles, TableBuilder(sound).Patch("kernOffset", styles + length));
  };
  ExpectMessages(Run(TestUsability_FOND_Styles, FamilyBuilder()), {});
  ExpectMessages(cut(57), {{"FatalError",
                            "FOND styles: The style mapping table is too short to hold the minimal amount "
                            "of style mapping data."}});
  ExpectMessages(cut(59), {{"FatalError", "FOND styles: The style name data exceeds the style mapping table's limits."},
                           {"MinorError", "FOND styles: The style names were bad"}});
  ExpectMessages(cut(64), {{"MinorError", "FOND styles: The style names were bad"}});
  ExpectMessages(cut(65), {});
  ExpectMessages(Run(TestUsability_FOND_Styles, TableBuilder(sound).Patch("styleOffset", 0xFFFF)),
                 {{"FatalError",
                   "FOND styles: The style mapping table is too short to hold the minimal amount of style mapping "
                   "data."}});
}

TEST_F(FamilyTests, GlyphNamesMustEndWithTheTable) {
  FamilyBuilder family = Named({"Base"});
  const TableBuilder sound = family.Build();
  const auto withGlyphs = [&](int64_t offset, const Bytes& glyphs) {
    return Run(TestUsability_FOND_Styles,
               TableBuilder(sound).Patch("glyphEncoding", static_cast<uint64_t>(offset)).Append(glyphs));
  };
  const auto end = static_cast<int64_t>(sound.Size() - sound.Offset("styles"));
  const Bytes glyphs = TableBuilder().U16(1).U8('a').U8(2).Text("aa");
  ExpectMessages(withGlyphs(end, glyphs), {});
  family.indexes.resize(12);  // the bytes that count as no glyph names below
  ExpectMessages(Run(TestUsability_FOND_Styles, family.Build().Patch("glyphEncoding", 20)),
                 {{"FatalError", "FOND styles: The style name data exceeds the style mapping table's limits."},
                  {"MinorError", "FOND styles: The style mapping for glyph offset 20 is bad"}});
  const std::string beyond = "FOND styles: The FOND's style table extends beyond the end of the FOND";
  ExpectMessages(withGlyphs(end + 6, glyphs), {{"FatalError", beyond}});
  ExpectMessages(withGlyphs(-1000, glyphs), {{"FatalError", beyond}});
  ExpectMessages(withGlyphs(end, TableBuilder().U16(2).U8('a').U8(3).Text("aa")),
                 {{"MinorError",
                   "FOND styles: The glyph remapping table ends at offset 0x00000098, which is beyond the "
                   "end of the table (0x00000097)"},
                  {"FatalError", beyond}});
  // Before the table: its end is the start of the table. The offsets and boxes read as such names.
  ExpectMessages(withGlyphs(-2, {}), {});
  testing::internal::CaptureStderr();
  const Findings findings = withGlyphs(end, TableBuilder().U16(257).U8('a').U8(0));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "##### ERROR (Family): Something is terribly wrong, tGlyphCount == 257\n");
  ExpectMessages(findings, {{"FatalError", beyond}});
}

// Kerning and boxes.

TEST_F(FamilyTests, KerningMustEndBeforeTheNextTable) {
  FamilyBuilder family;
  family.kerning = {{0, 1}, {1, 2}};
  family.hasWidths = true;
  const TableBuilder sound = family.Build();
  const size_t kerning = sound.Offset("kernCount");
  ExpectMessages(Run(TestUsability_FOND_Kerning, sound), {});
  ExpectMessages(Run(TestUsability_FOND_Kerning, TableBuilder(sound).Patch("widthOffset", kerning + 9)),
                 {{"FatalError",
                   "FOND kerning: The kerning data ends at 0x00000058, which is beyond the end of the kerning "
                   "subtable (0x00000057)"},
                  {"FatalError",
                   "FOND kerning: The kerning pair data ends at 0x00000064, which is beyond the end of the kerning "
                   "subtable (0x00000057)"}});
  ExpectMessages(Run(TestUsability_FOND_Kerning, TableBuilder(sound).Patch("kern.1.pairs", 5)),
                 {{"FatalError",
                   "FOND kerning: The kerning pair data ends at 0x00000070, which is beyond the end of "
                   "the kerning subtable (0x00000064)"}});
  ExpectMessages(Run(TestUsability_FOND_Kerning, TableBuilder(sound).Patch("kern.1.pairs", 0x8000)), {});
  const Findings tooMany = Run(TestUsability_FOND_Kerning, TableBuilder(sound).Patch("kern.0.pairs", 100));
  ASSERT_EQ(tooMany.messages.size(), 1u);
  EXPECT_TRUE(
      tooMany.messages[0].text.ends_with("(The 'FOND' resource contains more kerning data than it has room for)"));
  EXPECT_FALSE(Run(TestUsability_FOND_Kerning, FamilyBuilder()).applies);
}

TEST_F(FamilyTests, BoxesMustFit) {
  FamilyBuilder family;
  family.boxes = 5;
  const TableBuilder sound = family.Build();
  ExpectMessages(Run(TestUsability_FOND_BoundingBox, sound), {});
  ExpectMessages(Run(TestUsability_FOND_BoundingBox, TableBuilder(sound).Patch("boxCount", 5)),
                 {{"FatalError", "FOND bounding boxes: The bounding box data exceeds the resource limits."}});
  ExpectMessages(Run(TestUsability_FOND_BoundingBox, TableBuilder(sound).Patch("boxCount", 500)), {});
}

// Outline files.

class OutlineFiles : public FamilyTests {
 protected:
  Findings RunOn(const std::vector<Bytes>& pieces, const std::string& type = "LWFN", const Bytes& data = {}) {
    folder_.Write("Base", OneFile(data, OutlineFile(pieces).Build(), type));
    return Run(TestUsability_FOND_Type1, Named({"Base"}));
  }
  static Bytes Piece(int kind, const std::string& text = "", int second = 0) {
    return TableBuilder().U8(static_cast<uint64_t>(kind)).U8(static_cast<uint64_t>(second)).Text(text);
  }
  const std::string start_ = "%!PS-AdobeFont-1.0: Base\n\t\v\f\r\xE4";
};

TEST_F(OutlineFiles, SoundOnesPass) {
  const Findings findings = RunOn(OutlinePieces());
  EXPECT_TRUE(findings.applies);
  ExpectMessages(findings, {});
  ExpectMessages(RunOn({Piece(1, start_), Piece(2), Piece(4)}, "", {'d'}), {});
  EXPECT_FALSE(Run(TestUsability_FOND_Type1, Named({"Other"})).applies);
}

TEST_F(OutlineFiles, PiecesAreJudgedOneByOne) {
  const std::string header = "FOND Type1: The PostScript font data does not begin with a valid header.";
  const std::string after =
      "FOND Type1: The PostScript data contains data after an end-of-data marker or datafork-data marker.";
  ExpectMessages(RunOn({Piece(1, start_), Piece(2)}, "FFIL"),
                 {{"TechnicalError", "FOND Type1: The PostScript data is not found in a file of type 'LWFN'"},
                  {"TechnicalError", after}});
  ExpectMessages(
      RunOn({Piece(2, start_), Piece(6, "", 7), Piece(5)}),
      {{"FatalError", header, "POST (Resource 501)"},
       {"FatalError",
        "FOND Type1: POST resource 502 starts with an illegal data type value (6); valid values are 1 through 5."},
       {"TechnicalError", "FOND Type1: POST resource 502 has an illegal second byte (7); it should be zero."}});
  ExpectMessages(RunOn({Piece(1, "%!FontType1-1.0\n"), Piece(5)}), {{"FatalError", header}});
  ExpectMessages(RunOn({Piece(1, "%!FontType1-1.0\n\n"), Piece(5)}), {});
  ExpectMessages(RunOn({Piece(1, start_ + "\x01"), Piece(4)}),
                 {{"MajorError", "FOND Type1: POST resource 501 has a non-ASCII byte 0x01 at position 32.",
                   "POST offset 32 (Resource 501)"},
                  {"MajorError",
                   "FOND Type1: POST resource 502 indicates that there is font data in the data-fork, "
                   "but there is none."}});
  folder_.Write("Base", OneFile({}, SuitcaseBuilder().Add("POST", 500, {}).Build(), "LWFN"));
  ExpectMessages(Run(TestUsability_FOND_Type1, Named({"Base"})),
                 {{"MajorError", "FOND Type1: The PostScript data file contains no PostScript data."}});
}

// Bitmap fonts.

TEST_F(FamilyTests, BitmapFontsNeedAHeaderAndARangeOfCharacters) {
  const auto run = [](const Bytes& bytes) {
    return test::Run(TestUsability_NFNT,
                     FTFont_NFNT(nullptr, Tova::ByteView(bytes.data(), bytes.size()), FTTag("NFNT"), 1, {}));
  };
  ExpectMessages(run(TableBuilder().U16(0x9000).U16(0x20).U16(0xFF).Zeros(20)), {});
  ExpectMessages(run(Bytes(25)),
                 {{"FatalError", "NFNT: NFNT size (25 bytes) too small; it should be at least 26 bytes"}});
  ExpectMessages(run(TableBuilder().U16(0x9000).U16(0x41).S16(-1).Zeros(20)),
                 {{"MajorError", "NFNT: First character (0x0041) is greater than last character (0xFFFFFFFF)"}});
  EXPECT_FALSE(test::Run(TestUsability_NFNT, GoodFont()).applies);
}

}  // namespace
