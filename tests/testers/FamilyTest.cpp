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

constexpr VornFontTestEntry kFat = TestUsability_FOND_FAT, kOffsets = TestUsability_FOND_Offsets,
                            kStyles = TestUsability_FOND_Styles, kKerning = TestUsability_FOND_Kerning,
                            kBoundingBox = TestUsability_FOND_BoundingBox, kType1 = TestUsability_FOND_Type1;

class FamilyTests : public testing::Test {
 protected:
  /// Runs a test over the first font of a suitcase, or over a family alone.
  Findings RunOn(VornFontTestEntry entry, const SuitcaseBuilder& suitcase) {
    const std::string path = folder_.Write("suitcase", suitcase.Build());
    const auto container = FTFontContainer::FontContainerFromTovaURLRef(FileUrl(path).get(), true);
    return test::Run(entry, *container->GetIndFont(0));
  }
  Findings RunOn(VornFontTestEntry entry, const Bytes& family) {
    return RunOn(entry, SuitcaseBuilder().Add("FOND", 128, family, "Family"));
  }
  /// Expects just these messages, each "SEVERITY: TEXT" without the test's prefix.
  template <class Font>
  void Expect(VornFontTestEntry entry, const Font& font, const std::vector<std::string>& expected) {
    std::vector<std::string> found;
    for (const auto& [severity, text, place] : RunOn(entry, font).messages) {
      found.push_back(severity.substr(0, severity.find("Error")) + text.substr(text.find(": ")));
    }
    EXPECT_EQ(found, expected);
  }

  TemporaryFolder folder_;
};

FamilyBuilder Named(const std::vector<std::string>& strings) {
  FamilyBuilder family;
  family.strings = strings;
  return family;
}

TEST_F(FamilyTests, ASoundFamilyHasNothingToReport) {
  FamilyBuilder family = Named({"Base-Regular", "\x03", "Bold"});
  family.fat = {{9, 1, 301}, {0, 0, 301}};
  family.kerning = {{0, 2}, {1, 1}};
  family.hasWidths = true;
  for (const VornFontTestEntry entry : {kOffsets, kStyles, kKerning, kBoundingBox}) {
    EXPECT_TRUE(RunOn(entry, family.Build()).applies);
    Expect(entry, family.Build(), {});
    EXPECT_FALSE(test::Run(entry, GoodFont()).applies);
  }
  EXPECT_FALSE(RunOn(kType1, family.Build()).applies);
  EXPECT_FALSE(RunOn(kKerning, FamilyBuilder().Build()).applies);
}

TEST_F(FamilyTests, AssociatedFontsMustBeInTheSuitcase) {
  FamilyBuilder family;
  family.fat = {{12, 0, 300}, {0, 0, -5}, {9, 1, 301}};
  auto suitcase = SuitcaseBuilder().Add("FOND", 128, family.Build()).Add("NFNT", 301, Bytes(26));
  EXPECT_EQ(RunOn(kFat, suitcase).messages.at(1).place, "FOND offset 60");
  Expect(kFat, suitcase,
         {"Major: FAT entry 0 in the FOND points to a nonexistent resource of type 'NFNT' and ID 300",
          "Major: FAT entry 1 in the FOND points to a nonexistent resource of type 'sfnt' and ID -5"});
  family.fat = {{9, 1, 301}};
  suitcase = SuitcaseBuilder().Add("FOND", 128, family.Build()).Add("NFNT", 301, Bytes(26));
  Expect(kFat, suitcase, {"Fatal: The FOND resource refers to no outline data; it cannot be used on Corvane."});
  const std::string missing = "in the FOND points to a nonexistent resource of type 'sfnt' and ID ";
  const Bytes small = TableBuilder().Zeros(52).U16(1).Zeros(6);
  Expect(kFat, small,
         {"Fatal: The FOND resource has too many entries in its FAT; it has 2 but should have no more than 1",
          "Major: FAT entry 0 " + missing + "0", "Major: FAT entry 1 " + missing + "0"});
  Expect(kFat, Bytes(),
         {"Fatal: The FOND resource has too many entries in its FAT; it has 1 but should have no more than -9",
          "Major: FAT entry 0 " + missing + "0"});
  folder_.Write("Base", OneFile({}, OutlineFile().Build()));
  Expect(kFat, Named({"Base"}).Build(),
         {"Information: The FOND resource refers to both sfnt and LWFN outline data; this is probably not a good idea.",
          "Major: FAT entry 0 " + missing + "128"});
}

TEST_F(FamilyTests, OffsetsMustLeadIntoTheFamilyAndBehindItsAssociations) {
  const TableBuilder bare = FamilyBuilder().Build(), sound = Named({"Base"}).Build();
  Expect(kOffsets, bare.With("styleOffset", 0xFFFFFFFF).Patch("kernOffset", 80).Patch("widthOffset", 80).Data(),
         {"Major: The style mapping table offset (0xFFFFFFFF) is beyond the end of the FOND (0x00000050)",
          "Major: The kerning table offset (0x00000050) is beyond the end of the FOND (0x00000050)",
          "Major: The width table offset (0x00000050) is beyond the end of the FOND (0x00000050)"});
  Expect(kOffsets, sound.With("styleOffset", 58).Patch("kernOffset", 58).Patch("widthOffset", 59).Data(),
         {"Minor: The style mapping table offset (0x0000003A) is before the end of the FOND's FAT (0x0000003C)",
          "Minor: The kerning table offset (0x0000003A) is before the end of the FOND's FAT (0x0000003C)",
          "Minor: The width table offset (0x0000003B) is before the end of the FOND's FAT (0x0000003C)"});
  Expect(kOffsets, sound.With("glyphEncoding", 0x10000).Data(), {"Minor: The style mapping table is invalid"});
  Expect(kOffsets, TableBuilder(sound).Truncate(sound.Offset("styles") + 50).Data(),
         {"Major: The style mapping table header extends 8 bytes beyond the end of the FOND"});

  const Bytes bad = bare.With("kernOffset", 80);
  const std::string detail = "The 'FOND' resource has a bad kerning table offset";
  EXPECT_NE(RunOn(kFat, bad).messages.at(0).text.find(detail), std::string::npos);
  ExpectThrow(detail, [&] { RunOn(kKerning, bad); });
}

TEST_F(FamilyTests, TheOffsetTableIsReadWhereItLies) {
  FamilyBuilder family = Named({"Base"});
  family.hasOffsets = false;
  const TableBuilder sound = FamilyBuilder().Build();
  for (const Bytes& without : {Bytes(family.Build()), Bytes(TableBuilder(sound).Truncate(60))}) {
    Expect(kOffsets, without, {"Information: The FOND has no offset table."});
  }
  Expect(kOffsets, TableBuilder(sound).Truncate(62).Data(),
         {"Major: Offset table entry count extends beyond the end of the FOND"});
  Expect(kOffsets, sound.With("offsetCount", 100).Data(),
         {"Major: The offset table ends at 0x000001D2, which is beyond the end of the table (0x00000050)"});
  Expect(kOffsets, sound.With("offset.0", 0x50).Data(),
         {"Major: Offset 0 (0x00000050) is beyond the end of the table (0x00000050)"});
  Expect(kOffsets, sound.With("offsetCount", 0x7FFF).Data(), {});
}

TEST_F(FamilyTests, PostScriptNamesMustBeLegal) {
  Expect(kStyles, Named({std::string(63, 'x')}).Build(), {});
  const std::string tooLong(64, 'x');
  const Findings findings = RunOn(kStyles, Named({tooLong}).Build());
  ASSERT_EQ(findings.messages.size(), 48u) << "every style";
  EXPECT_EQ(findings.messages[47], (Message{kMajor,
                                            "FOND styles: PostScript name for style 47 ('" + tooLong +
                                                "') is too long (64 bytes; should be no more than 63 bytes).",
                                            "FOND (Style 47)"}));
  FamilyBuilder family = Named({"Base", "\x03\x04", "-", "B d\xC4%e"});
  family.indexes = {1, 2};
  const auto illegal = [](const std::string& character, int position) {
    return "Major: PostScript name for style 1 ('Base-B d\xC6\x92%e') has a character (" + character +
           ") in position " + std::to_string(position) + " which may not be used in a PostScript font name.";
  };
  Expect(kStyles, family.Build(), {illegal(" ", 6), illegal("\xC6\x92", 8), illegal("%", 9)});
  family.strings[3] = std::string("No\0thing", 8);
  const Findings cut = RunOn(kStyles, family.Build());
  EXPECT_NE(cut.messages.at(0).text.find("('Base-No')"), std::string::npos);
}

TEST_F(FamilyTests, PiecesOfNamesMustBeThere) {
  FamilyBuilder family = Named({"Base", "\x03\x04", "", "Bold"});
  family.indexes = {1, 2};
  Expect(kStyles, family.Build(),
         {"Fatal: While generating the PostScript name for style 1, a zero-length piece was encountered; the name is "
          "invalid"});
  family.strings[1] = "";
  Expect(kStyles, family.Build(), {});
  EXPECT_EQ(RunOn(kStyles, Named({""}).Build()).messages.size(), 48u) << "the base is a piece too";
  family.strings = {"Base", std::string(2, 3), std::string(200, 'x')};
  Expect(kStyles, family.Build(),
         {"Fatal: PostScript name for style 1 is far too long (more than 256 bytes; the maximum legal length is 63 "
          "bytes"});
  family.indexes = {1, 20, -3, 0, 21};
  Expect(kStyles, family.Build(),
         {"Fatal: The style name table entry 1 lies outside the 'FOND' resource boundaries",
          "Fatal: The style name table entry 4 lies outside the 'FOND' resource boundaries"});
}

TEST_F(FamilyTests, TheStyleMappingTableMustHoldItsStringsAndGlyphNames) {
  const std::string tooShort =
      "Fatal: The style mapping table is too short to hold the minimal amount of style mapping data.";
  const std::string exceeds = "Fatal: The style name data exceeds the style mapping table's limits.";
  const std::string beyond = "Fatal: The FOND's style table extends beyond the end of the FOND";
  FamilyBuilder family = Named({"Base", "Other"});
  family.kerning = {{0, 1}};
  const TableBuilder kerned = family.Build();
  const auto cut = [&](size_t length) -> Bytes { return kerned.With("kernOffset", kerned.Offset("styles") + length); };
  Expect(kStyles, cut(57), {tooShort});
  Expect(kStyles, cut(59), {exceeds, "Minor: The style names were bad"});
  Expect(kStyles, cut(64), {"Minor: The style names were bad"});
  Expect(kStyles, cut(65), {});
  Expect(kStyles, kerned.With("styleOffset", 0xFFFF).Data(), {tooShort});

  family = Named({"Base"});
  family.indexes.resize(12);
  const TableBuilder sound = family.Build();
  const size_t end = sound.Size() - sound.Offset("styles");
  const auto glyphs = [&](size_t offset, const Bytes& bytes) -> Bytes {
    return sound.With("glyphEncoding", offset).Append(bytes);
  };
  const Bytes one = TableBuilder().U16(1).U8('a').U8(2).Text("aa");
  Expect(kStyles, glyphs(end, one), {});
  Expect(kStyles, glyphs(20, {}), {exceeds, "Minor: The style mapping for glyph offset 20 is bad"});
  Expect(kStyles, glyphs(end + 6, one), {beyond});
  Expect(kStyles, glyphs(size_t(-1000), one), {beyond});
  Expect(kStyles, glyphs(end, TableBuilder().U16(2).U8('a').U8(3).Text("aa")),
         {"Minor: The glyph remapping table ends at offset 0x00000098, which is beyond the end of the table "
          "(0x00000097)",
          beyond});
  testing::internal::CaptureStderr();
  Expect(kStyles, glyphs(end, TableBuilder().U16(257).U8('a').U8(0)), {beyond});
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "##### ERROR (Family): Something is terribly wrong, tGlyphCount == 257\n");
}

TEST_F(FamilyTests, KerningAndBoxesMustFit) {
  FamilyBuilder family;
  family.kerning = {{0, 1}, {1, 2}};
  family.hasWidths = true;
  const TableBuilder sound = family.Build();
  Expect(kKerning, sound.With("widthOffset", sound.Offset("kernCount") + 9).Data(),
         {"Fatal: The kerning data ends at 0x00000058, which is beyond the end of the kerning subtable (0x00000057)",
          "Fatal: The kerning pair data ends at 0x00000064, which is beyond the end of the kerning subtable "
          "(0x00000057)"});
  Expect(kKerning, sound.With("kern.1.pairs", 5).Data(),
         {"Fatal: The kerning pair data ends at 0x00000070, which is beyond the end of the kerning subtable "
          "(0x00000064)"});
  Expect(kKerning, sound.With("kern.1.pairs", 0x8000).Data(), {});

  family.boxes = 5;
  const TableBuilder boxed = family.Build();
  Expect(kBoundingBox, boxed.Data(), {});
  Expect(kBoundingBox, boxed.With("boxCount", 9).Data(), {"Fatal: The bounding box data exceeds the resource limits."});
  Expect(kBoundingBox, boxed.With("boxCount", 500).Data(), {});
}

TEST_F(FamilyTests, PiecesOfOutlinesAreJudgedOneByOne) {
  const auto expect = [&](const std::vector<Bytes>& pieces, const std::string& type, const Bytes& data,
                          const std::vector<std::string>& expected) {
    folder_.Write("Base", OneFile(data, OutlineFile(pieces).Build(), type));
    Expect(kType1, Named({"Base"}).Build(), expected);
  };
  const auto piece = [](uint64_t kind, const std::string& text = "", uint64_t second = 0) -> Bytes {
    return TableBuilder().U8(kind).U8(second).Text(text);
  };
  const std::string start = "%!PS-AdobeFont-1.0: Base\n\t\v\f\r\xE4";
  const std::string header = "Fatal: The PostScript font data does not begin with a valid header.";
  expect(OutlinePieces(), "LWFN", {}, {});
  EXPECT_TRUE(RunOn(kType1, Named({"Base"}).Build()).applies);
  expect({piece(1, start), piece(2), piece(4)}, "", {'d'}, {});
  expect({piece(1, start), piece(2)}, "FFIL", {},
         {"Technical: The PostScript data is not found in a file of type 'LWFN'",
          "Technical: The PostScript data contains data after an end-of-data marker or datafork-data marker."});
  expect({piece(2, start), piece(6, "", 7), piece(5)}, "LWFN", {},
         {header, "Fatal: POST resource 502 starts with an illegal data type value (6); valid values are 1 through 5.",
          "Technical: POST resource 502 has an illegal second byte (7); it should be zero."});
  expect({piece(1, "%!FontType1-1.0\n"), piece(5)}, "LWFN", {}, {header});
  expect({piece(1, "%!FontType1-1.0\n\n"), piece(5)}, "LWFN", {}, {});
  expect({piece(1, start + "\x01"), piece(4)}, "LWFN", {},
         {"Major: POST resource 501 has a non-ASCII byte 0x01 at position 32.",
          "Major: POST resource 502 indicates that there is font data in the data-fork, but there is none."});
  folder_.Write("Base", OneFile({}, SuitcaseBuilder().Add("POST", 500, {}).Build(), "LWFN"));
  Expect(kType1, Named({"Base"}).Build(), {"Major: The PostScript data file contains no PostScript data."});
}

TEST(BitmapFonts, NeedAHeaderAndARangeOfCharacters) {
  const auto run = [](const Bytes& bytes) {
    const Tova::ByteView view(bytes.data(), bytes.size());
    return test::Run(TestUsability_NFNT, FTFont_NFNT(nullptr, view, FTTag("NFNT"), 1, {}));
  };
  ExpectMessages(run(TableBuilder().U16(0x9000).U16(0x20).U16(0xFF).Zeros(20)), {});
  ExpectMessages(run(Bytes(25)), {{kFatal, "NFNT: NFNT size (25 bytes) too small; it should be at least 26 bytes"}});
  ExpectMessages(run(TableBuilder().U16(0x9000).U16(0x41).S16(-1).Zeros(20)),
                 {{kMajor, "NFNT: First character (0x0041) is greater than last character (0xFFFFFFFF)"}});
  EXPECT_FALSE(test::Run(TestUsability_NFNT, GoodFont()).applies);
}

}  // namespace
