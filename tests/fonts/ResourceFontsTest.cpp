#include "TableAccess/ContainerClasses/FTLWFNFontContainer.h"
#include "TableAccess/FontClasses/FTFont_FOND.h"
#include "TableAccess/FontClasses/FTFont_POST.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "support/SuitcaseBuilder.h"
#include "support/TemporaryFolder.h"
#include "support/TestRun.h"
#include "support/Values.h"

namespace {

using namespace test;

class Suitcases : public testing::Test {
 protected:
  /// The container of a file, which lives as long as the test.
  const FTFontContainer* Open(const Bytes& bytes, const std::string& name = "suitcase") {
    const auto url = FileUrl(folder_.Write(name, bytes));
    containers_.push_back(FTFontContainer::FontContainerFromTovaURLRef(url.get(), true));
    return containers_.back().get();
  }
  const FTFont_FOND& Family(const Bytes& bytes) {
    const auto* container = Open(SuitcaseBuilder().Add("FOND", 128, bytes, "Family").Build());
    return dynamic_cast<const FTFont_FOND&>(*container->GetIndFont(0));
  }

  TemporaryFolder folder_;
  std::vector<std::unique_ptr<FTFontContainer>> containers_;
};

std::string Name(const FTFont* font) { return std::string(Tova::Text(font->GetName())); }

TEST_F(Suitcases, ListOutlinesThenFamiliesThenBitmapsInWhateverForkTheyLie) {
  SuitcaseBuilder mixed;
  mixed.Add("NFNT", 256, Bytes(26)).Add("FOND", 128, FamilyBuilder().Build(), "Good").Add("FONT", 1, Bytes(26));
  const Bytes fork = mixed.Add("sfnt", 128, GoodFont().Build(), "Outline").Build();
  folder_.Write("._beside", Sidecar(fork));
  for (const auto& [name, bytes] : {std::pair<std::string, Bytes>{"datafork", fork},
                                    {"one", OneFile({}, fork)},
                                    {"header", HeaderForm({}, fork, "FFIL")},
                                    {"beside", GoodFont().Build()}}) {
    const auto& suitcase = dynamic_cast<const FTResourceFontContainer&>(*Open(bytes, name));
    std::string fonts;
    for (uint64_t i = 0; i < suitcase.GetFontCount(); ++i) {
      const FTFont* font = suitcase.GetIndFont(i);
      fonts += std::to_string(font->GetType()) + " " + Name(font) + " " + Description(font->GetIdentifier()) + "; ";
    }
    EXPECT_EQ(fonts, "3 Good Regular 1234ABCD|Good 1.0; 1 Good FOND|128|Good; 2 'NFNT' 256 NFNT|256|; ") << name;
    EXPECT_EQ(suitcase.IsDataforkSuitcase(), name == "datafork");
    EXPECT_EQ(suitcase.MaximumResourceSize(), static_cast<int64_t>(fork.size()));
    EXPECT_EQ(suitcase.GetFont(FTTag("FOND"), 128), suitcase.GetIndFont(1));
    EXPECT_EQ(suitcase.GetFont(FTTag("NFNT"), 128), nullptr);
  }
}

TEST_F(Suitcases, BitmapsAloneMakeNoFontFile) {
  const Bytes bitmaps = SuitcaseBuilder().Add("NFNT", 256, Bytes(26)).Build();
  EXPECT_FALSE(Open(bitmaps));
  EXPECT_EQ(Open(OneFile(GoodFont().Build(), bitmaps))->GetIndFont(0)->GetType(), 3u) << "of the data fork";
}

TEST_F(Suitcases, AResourceThatIsNotThereMakesTheFileCorrupt) {
  const auto* corrupt = Open(SuitcaseBuilder().Add("FOND", 1, {}).Build().Patch("FOND.1.length", 0xFFFFFF));
  ExpectThrow("A file's resource fork is corrupt", [&] { corrupt->GetFontCount(); });
  EXPECT_EQ(corrupt->GetFontCount(), 0u) << "it is not read a second time";
  const FTResourceFontContainer noSuitcase(FileUrl(folder_.Write("plain", Bytes(9))).get(), false, true);
  ExpectThrow("A file IO operation failed", [&] { noSuitcase.GetFontCount(); });
}

TEST_F(Suitcases, NamesAreInTheScriptOfTheId) {
  const struct {
    int id;
    std::string name;
    uint32_t script;
    std::string text;
  } cases[] = {{16383, "na\x95ve", 0, "na\xC3\xAFve"},
               {16384, "\x82\xA0", 1, "\xE3\x81\x82"},
               {16896, "\xA4\xA4", 2, "\xE4\xB8\xAD"},
               {-1, "no such encoding", 96, "'FOND' 65535"},
               {1, std::string("cut\0off", 7), 0, "cut"}};
  for (const auto& c : cases) {
    const auto* container = Open(SuitcaseBuilder().Add("FOND", c.id, {}, c.name).Build());
    const auto& family = dynamic_cast<const FTFont_resource&>(*container->GetIndFont(0));
    EXPECT_EQ(family.GetScript(), c.script) << c.id;
    EXPECT_EQ(Name(&family), c.text) << c.id;
  }
}

TEST_F(Suitcases, AnOutlineFontBelongsToTheFirstFamilyThatListsIt) {
  FamilyBuilder first, second;
  first.fat = {{12, 0, 200}};
  second.fat = {{12, 0, 128}, {0, 0, 200}, {0, 0, -1}};
  SuitcaseBuilder suitcase;
  suitcase.Add("FOND", 1, first.Build()).Add("FOND", 2, second.Build());
  for (const int id : {200, 128, -1}) suitcase.Add("sfnt", id, GoodFont().Build());
  const auto* container = Open(suitcase.Build());
  const auto family = [&](uint64_t i) { return dynamic_cast<const FTFont_sfnt&>(*container->GetIndFont(i)).GetFOND(); };
  EXPECT_EQ(family(0), container->GetIndFont(4));
  EXPECT_EQ(family(1), nullptr) << "listed as a bitmap";
  EXPECT_EQ(family(2), nullptr) << "a negative ID never matches";
}

TEST_F(Suitcases, AnOutlineFileIsPutTogetherUpToTheFirstMissingPiece) {
  const auto* container = Open(OneFile({}, OutlineFile().Add("POST", 505, Bytes(9)).Build(), "LWFN"));
  const auto& file = dynamic_cast<const FTLWFNFontContainer&>(*container);
  EXPECT_EQ(file.GetFontCount(), 4u);
  EXPECT_EQ(file.GetIndFont(0)->GetType(), 7u);
  EXPECT_EQ(file.GetPOST(501)->GetDataType(), 1);
  EXPECT_EQ(file.GetPOST(504), nullptr);
  Bytes expected;
  for (const Bytes& piece : OutlinePieces()) expected.insert(expected.end(), piece.begin(), piece.end());
  EXPECT_TRUE(file.GetType1Font()->Bytes() == Tova::ByteView(expected.data(), expected.size()));
  EXPECT_EQ(file.GetType1Font(), file.GetType1Font());
}

TEST_F(Suitcases, TablesOfFamiliesAreFoundWhereTheHeaderSaysOrAfterTheAssociations) {
  FamilyBuilder builder;
  builder.fat = {{12, 0, 1}, {0, 1, 2}};
  builder.strings = {"Base"};
  builder.kerning = {{0, 2}, {1, 1}};
  builder.hasWidths = true;
  const TableBuilder bytes = builder.Build();
  const FTFont_FOND& family = Family(bytes);
  const auto at = [&bytes](const char* label) { return static_cast<int64_t>(bytes.Offset(label)); };
  EXPECT_EQ(std::tuple(family.GetFATEntryCount(), family.GetFAT()[1].U16(4), family.GetBoundingBoxCount(),
                       family.GetIndKernPairCount(0)),
            std::tuple(2u, 2u, 1, 2));
  EXPECT_EQ(std::tuple(family.GetStyleMappingTable(), family.GetWidthTable(), family.GetOffsets(),
                       family.GetBoundingBoxes(), family.GetKernTable()),
            std::tuple(at("styles"), at("widths"), at("offset.0"), at("box.0"), at("kernCount")));
  EXPECT_EQ(family.GetIndKernPair(1, 0), at("kern.1.pairs") + 2);
  EXPECT_FALSE(family.GetIndKernPair(1, 1) || family.GetIndKernEntry(2));
}

TEST_F(Suitcases, WithoutRoomAFamilyHasNoOffsetsAndNoBoxes) {
  FamilyBuilder styled;
  styled.hasOffsets = false;
  styled.strings = {"Base"};
  EXPECT_FALSE(Family(styled.Build()).GetOffsets()) << "the style mapping table stands there";
  EXPECT_EQ(Family(styled.Build().Patch("styleOffset", 0)).GetOffsetCount(), 1) << "it is taken for offsets";
  const TableBuilder sound = FamilyBuilder().Build();
  EXPECT_EQ(Family(sound.With("offsetCount", 0x7FFF)).GetOffsetCount(), -32768);
  EXPECT_FALSE(Family(sound.With("offsetCount", 0x7FFE)).GetOffsets());
  const FTFont_FOND& tooMany = Family(sound.With("boxCount", 100));
  EXPECT_EQ(tooMany.GetBoundingBoxCount(), 101) << "kept";
  EXPECT_FALSE(tooMany.GetBoundingBoxes());
  EXPECT_EQ(Family(sound.With("fatCount", 0xFFFF)).GetFATEntryCount(), 65536u);
}

TEST_F(Suitcases, BadFamiliesThrowEachTime) {
  for (const auto& [label, table] :
       {std::pair{"styleOffset", "style mapping"}, {"kernOffset", "kerning"}, {"widthOffset", "width"}}) {
    const FTFont_FOND& family = Family(FamilyBuilder().Build().Patch(label, 1000));
    const std::string detail = std::string("The 'FOND' resource has a bad ") + table + " table offset";
    for (int i = 0; i < 2; ++i) ExpectThrow(detail, [&] { family.GetFATEntryCount(); });
    EXPECT_EQ(family.GetPostScriptName(), nullptr);
  }
  FamilyBuilder builder;
  builder.kerning = {{0, 1}, {1, 1}};
  for (const int pairs : {1000, -1000}) {
    const FTFont_FOND& family = Family(builder.Build().Patch("kern.0.pairs", static_cast<uint64_t>(pairs)));
    EXPECT_EQ(family.GetIndKernPair(0, 0).has_value(), pairs > 0);
    ExpectThrow("The 'FOND' resource contains more kerning data than it has room for",
                [&] { family.GetIndKernEntry(1); });
  }
}

TEST_F(Suitcases, PostScriptNamesAreMadeOfTheBaseAndTheStylesPieces) {
  FamilyBuilder builder;
  builder.strings = {"Base", "\x03\x04", "-", "Bold"};
  builder.indexes = {1, 2, 1};  // that of style 0 leads to that of style 1, and on to the list of strings 3 and 4
  const FTFont_FOND& family = Family(builder.Build());
  ASSERT_EQ(family.GetPostScriptNameCount(), 2u);
  EXPECT_EQ(Tova::Text(family.GetPostScriptName()), "Base-Bold");
  EXPECT_EQ(Tova::Text(family.GetIndPostScriptName(1)), "Base");
  builder.strings[3] = std::string(255, 'x');
  const FTFont_FOND& tooLong = Family(builder.Build());
  ExpectThrow("The 'FOND' resource has a corrupt PostScript name", [&] { tooLong.GetPostScriptNameCount(); });
  EXPECT_EQ(tooLong.GetPostScriptName(), nullptr);
  builder.strings = {"Base", "\x20"};
  const FTFont_FOND& outside = Family(builder.Build());
  ExpectThrow("The 'FOND' resource has bad data in its style name table", [&] { outside.GetPostScriptNameCount(); });
}

TEST_F(Suitcases, OutlineFilesAreFoundByTheirShortenedNamesAndShared) {
  const auto named = [](const char* name) {
    FamilyBuilder builder;
    builder.strings = {name};
    return builder.Build();
  };
  for (const auto& [name, file] : {std::pair{"Quorvane-BoldOblique", "QuorvBolObl"},
                                   {"ITC-Morlenby", "Morle"},
                                   {"ITC-", "ITC"},
                                   {"Plain_2Other", "Plain"},
                                   {"Some_OtherName", "SomeOthNam"},
                                   {"lowerUpperLong", "UpperLon"}}) {
    folder_.Write(file, OneFile({}, OutlineFile().Build(), "LWFN"));
    const FTFont_FOND& family = Family(named(name));
    EXPECT_EQ(family.GetType1FontCount(), 1u) << name;
    EXPECT_EQ(family.GetIndType1Font(0), Family(named(name)).GetIndType1Font(0)) << name << ": shared";
    std::filesystem::remove(folder_.File(file));
  }
  folder_.Write("Noout", GoodFont().Build());
  for (const char* name : {"Nooutlines", "suitcase", "Absent", "lowercase", "A/B"}) {
    EXPECT_EQ(Family(named(name)).GetType1FontCount(), 0u) << name;
  }
}

}  // namespace
