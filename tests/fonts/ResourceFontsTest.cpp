#include "TableAccess/ContainerClasses/FTLWFNFontContainer.h"
#include "TableAccess/FontClasses/FTFont_FOND.h"
#include "TableAccess/FontClasses/FTFont_POST.h"
#include "TableAccess/FontClasses/FTFont_sfntResource.h"
#include "support/SuitcaseBuilder.h"
#include "support/TemporaryFolder.h"
#include "support/TestRun.h"
#include "support/Values.h"

namespace {

using namespace test;

class Suitcases : public testing::Test {
 protected:
  std::unique_ptr<FTFontContainer> Open(const Bytes& bytes, const std::string& name = "suitcase") {
    return FTFontContainer::FontContainerFromTovaURLRef(FileUrl(folder_.Write(name, bytes)).get(), true);
  }
  static std::string Name(const FTFont* font) { return std::string(Tova::Text(font->GetName())); }
  static std::string Identifier(const FTFont* font) { return std::string(Tova::Text(font->GetIdentifier())); }

  TemporaryFolder folder_;
};

SuitcaseBuilder Mixed() {
  SuitcaseBuilder suitcase;
  suitcase.Add("NFNT", 256, Bytes(26)).Add("FOND", 128, FamilyBuilder().Build(), "Good");
  return suitcase.Add("FONT", 1, Bytes(26)).Add("sfnt", 128, GoodFont().Build(), "Outline");
}

TEST_F(Suitcases, ListOutlinesThenFamiliesThenBitmapsInWhateverForkTheyLie) {
  const Bytes fork = Mixed().Build(), data = GoodFont().Build();
  folder_.Write("._beside", Sidecar(fork));
  for (const auto& [name, bytes] : {std::pair<std::string, Bytes>{"datafork", fork},
                                    {"one", OneFile({}, fork)},
                                    {"header", HeaderForm({}, fork, "FFIL")},
                                    {"beside", {}},
                                    {"beside", data}}) {
    const auto container = Open(bytes, name);
    ASSERT_TRUE(container) << name;
    ASSERT_EQ(container->GetFontCount(), 3u) << name;
    EXPECT_EQ(container->GetIndFont(0)->GetType(), 3u);
    EXPECT_EQ(container->GetIndFont(1)->GetType(), 1u);
    EXPECT_EQ(container->GetIndFont(2)->GetType(), 2u);
    EXPECT_EQ(Name(container->GetIndFont(0)), "Good Regular") << name;
    EXPECT_EQ(Identifier(container->GetIndFont(1)), "FOND|128|Good");
    EXPECT_EQ(Name(container->GetIndFont(2)), "'NFNT' 256");
    EXPECT_EQ(Identifier(container->GetIndFont(2)), "NFNT|256|");
    const auto& suitcase = dynamic_cast<const FTResourceFontContainer&>(*container);
    EXPECT_EQ(suitcase.IsDataforkSuitcase(), name == "datafork");
    EXPECT_EQ(suitcase.MaximumResourceSize(), static_cast<int64_t>(fork.size()));
    EXPECT_EQ(suitcase.GetFont(FTTag("FOND"), 128), container->GetIndFont(1));
    EXPECT_EQ(suitcase.GetFont(FTTag("sfnt"), 128), container->GetIndFont(0));
    EXPECT_EQ(suitcase.GetFont(FTTag("NFNT"), 128), nullptr);
    EXPECT_EQ(dynamic_cast<const FTFont_sfnt&>(*container->GetIndFont(0)).GetFOND(), container->GetIndFont(1));
  }
}

TEST_F(Suitcases, BitmapsAloneMakeNoFontFile) {
  EXPECT_FALSE(Open(SuitcaseBuilder().Add("NFNT", 256, Bytes(26)).Build()));
  const auto both = OneFile(GoodFont().Build(), SuitcaseBuilder().Add("NFNT", 256, Bytes(26)).Build());
  EXPECT_EQ(Open(both)->GetIndFont(0)->GetType(), 3u) << "the data fork is looked at then";
  EXPECT_FALSE(Open(SuitcaseBuilder().Add("FOND", 128, {}).Build().Patch("mapLength", 29)));
}

TEST_F(Suitcases, AResourceThatIsNotThereMakesTheFileCorrupt) {
  const auto corrupt = Open(Mixed().Build().Patch("FOND.128.length", 0xFFFFFF));
  ExpectThrow("A file's resource fork is corrupt", [&] { corrupt->GetFontCount(); });
  EXPECT_EQ(corrupt->GetFontCount(), 0u) << "it is not read a second time";
  const FTResourceFontContainer noSuitcase(FileUrl(folder_.Write("plain", Bytes(9))).get(), false, true);
  ExpectThrow("A file IO operation failed", [&] { noSuitcase.GetFontCount(); });
}

TEST_F(Suitcases, NamesAreInTheScriptOfTheId) {
  const auto container = Open(SuitcaseBuilder()
                                  .Add("FOND", 16383, Bytes(60), "na\x95ve")
                                  .Add("FOND", 16384, Bytes(60), "\x82\xA0")
                                  .Add("FOND", 16896, Bytes(60), "\xA4\xA4")
                                  .Add("FOND", -1, Bytes(60), std::string("cut\0off", 7))
                                  .Build());
  const auto script = [&](uint64_t i) {
    return dynamic_cast<const FTFont_resource&>(*container->GetIndFont(i)).GetScript();
  };
  EXPECT_EQ(Name(container->GetIndFont(0)), "na\xC3\xAFve");
  EXPECT_EQ(script(0), 0u);
  EXPECT_EQ(Name(container->GetIndFont(1)), "\xE3\x81\x82");
  EXPECT_EQ(script(1), 1u);
  EXPECT_EQ(Name(container->GetIndFont(2)), "\xE4\xB8\xAD");
  EXPECT_EQ(script(2), 2u);
  EXPECT_EQ(script(3), 96u);
  EXPECT_EQ(Name(container->GetIndFont(3)), "'FOND' 65535") << "no such encoding";
}

TEST_F(Suitcases, AnOutlineFontBelongsToTheFirstFamilyThatListsIt) {
  FamilyBuilder first, second;
  first.fat = {{12, 0, 200}};
  second.fat = {{12, 0, 128}, {0, 0, 200}, {0, 0, -1}};
  const auto container = Open(SuitcaseBuilder()
                                  .Add("FOND", 1, first.Build())
                                  .Add("FOND", 2, second.Build())
                                  .Add("sfnt", 200, GoodFont().Build())
                                  .Add("sfnt", 128, GoodFont().Build())
                                  .Add("sfnt", -1, GoodFont().Build())
                                  .Build());
  const auto family = [&](uint64_t i) { return dynamic_cast<const FTFont_sfnt&>(*container->GetIndFont(i)).GetFOND(); };
  EXPECT_EQ(family(0), container->GetIndFont(4));
  EXPECT_EQ(family(1), nullptr) << "listed as a bitmap";
  EXPECT_EQ(family(2), nullptr) << "a negative ID never matches";
}

TEST_F(Suitcases, AnOutlineFileIsPutTogetherUpToTheFirstMissingPiece) {
  const auto container = Open(OneFile({}, OutlineFile().Add("POST", 505, Bytes(9)).Build(), "LWFN"));
  const auto& file = dynamic_cast<const FTLWFNFontContainer&>(*container);
  EXPECT_EQ(file.GetFontCount(), 4u);
  EXPECT_EQ(file.GetIndFont(0)->GetType(), 7u);
  EXPECT_EQ(file.GetPOST(501)->GetDataType(), 1);
  EXPECT_EQ(file.GetPOST(504), nullptr);
  Bytes expected;
  for (const Bytes& piece : OutlinePieces()) expected.insert(expected.end(), piece.begin(), piece.end());
  EXPECT_TRUE(file.GetType1Font()->Bytes() == Tova::ByteView(expected.data(), expected.size()));
  EXPECT_EQ(file.GetType1Font(), file.GetType1Font());
  EXPECT_EQ(file.GetType1Font()->GetContainer(), &file);
}

class Families : public Suitcases {
 protected:
  const FTFont_FOND& Family(const Bytes& bytes) {
    containers_.push_back(Open(SuitcaseBuilder().Add("FOND", 128, bytes, "Family").Build()));
    return dynamic_cast<const FTFont_FOND&>(*containers_.back()->GetIndFont(0));
  }
  std::vector<std::unique_ptr<FTFontContainer>> containers_;
};

TEST_F(Families, TablesAreFoundWhereTheHeaderSaysOrAfterTheAssociations) {
  FamilyBuilder builder;
  builder.fat = {{12, 0, 1}, {0, 1, 2}};
  builder.strings = {"Base"};
  builder.kerning = {{0, 2}, {1, 1}};
  builder.hasWidths = true;
  const TableBuilder bytes = builder.Build();
  const FTFont_FOND& family = Family(bytes);
  const auto at = [&bytes](const char* label) { return static_cast<int64_t>(bytes.Offset(label)); };
  EXPECT_EQ(family.GetFATEntryCount(), 2u);
  EXPECT_EQ(family.GetFAT()[1].U16(4), 2u);
  EXPECT_TRUE(family.HasOutlines_sfnt());
  EXPECT_FALSE(family.HasOutlines_LWFN());
  EXPECT_EQ(family.GetStyleMappingTable(), at("styles"));
  EXPECT_EQ(family.GetWidthTable(), at("widths"));
  EXPECT_EQ(family.GetOffsetCount(), 1);
  EXPECT_EQ(family.GetOffsets(), at("offset.0"));
  EXPECT_EQ(family.GetBoundingBoxCount(), 1);
  EXPECT_EQ(family.GetBoundingBoxes(), at("box.0"));
  EXPECT_EQ(family.GetKernTable(), at("kernCount"));
  EXPECT_EQ(family.GetKernEntryCount(), 2u);
  EXPECT_EQ(family.GetIndKernPairCount(0), 2);
  EXPECT_EQ(family.GetIndKernPair(1, 0), at("kern.1.pairs") + 2);
  EXPECT_FALSE(family.GetIndKernPair(1, 1));
  EXPECT_FALSE(family.GetIndKernEntry(2));
  EXPECT_EQ(family.GetIndKernPairCount(2), 0);
}

TEST_F(Families, WithoutRoomThereAreNoOffsetsAndNoBoxes) {
  FamilyBuilder builder;
  builder.hasOffsets = false;
  builder.strings = {"Base"};
  EXPECT_FALSE(Family(builder.Build()).GetOffsets()) << "the style mapping table stands there";
  EXPECT_EQ(Family(builder.Build().Patch("styleOffset", 0)).GetOffsetCount(), 1) << "it is taken for offsets";
  builder = FamilyBuilder();
  EXPECT_EQ(Family(builder.Build().Patch("offsetCount", 0x7FFF)).GetOffsetCount(), -32768);
  EXPECT_FALSE(Family(builder.Build().Patch("offsetCount", 0x7FFE)).GetOffsets());
  const FTFont_FOND& tooMany = Family(builder.Build().Patch("boxCount", 100));
  EXPECT_EQ(tooMany.GetBoundingBoxCount(), 101) << "kept";
  EXPECT_FALSE(tooMany.GetBoundingBoxes());
  EXPECT_EQ(Family(Bytes(60)).GetFATEntryCount(), 1u);
  EXPECT_EQ(Family(builder.Build().Patch("fatCount", 0xFFFF)).GetFATEntryCount(), 65536u);
}

TEST_F(Families, BadTableOffsetsThrowEachTime) {
  for (const auto& [label, table] :
       {std::pair{"styleOffset", "style mapping"}, {"kernOffset", "kerning"}, {"widthOffset", "width"}}) {
    const FTFont_FOND& family = Family(FamilyBuilder().Build().Patch(label, 1000));
    const std::string detail = std::string("The 'FOND' resource has a bad ") + table + " table offset";
    ExpectThrow(detail, [&] { family.GetFATEntryCount(); });
    ExpectThrow(detail, [&] { family.GetKernEntries(); });
    EXPECT_EQ(family.GetIndPostScriptName(0), nullptr);
  }
}

TEST_F(Families, KerningThatLeavesTheResourceThrows) {
  FamilyBuilder builder;
  builder.kerning = {{0, 1}, {1, 1}};
  for (const int pairs : {1000, -1000}) {
    const FTFont_FOND& family = Family(builder.Build().Patch("kern.0.pairs", static_cast<uint64_t>(pairs)));
    EXPECT_EQ(family.GetIndKernPairCount(0), pairs);
    EXPECT_EQ(family.GetIndKernPair(0, 0).has_value(), pairs > 0);
    ExpectThrow("The 'FOND' resource contains more kerning data than it has room for",
                [&] { family.GetIndKernEntry(1); });
  }
}

TEST_F(Families, PostScriptNamesAreMadeOfTheBaseAndTheStylesPieces) {
  FamilyBuilder builder;
  builder.strings = {"Base", "\x03\x04", "-", "Bold"};
  builder.indexes = {1, 2, 1};  // that of style 0 leads to that of style 1, and on to the list of strings 3 and 4
  const FTFont_FOND& family = Family(builder.Build());
  ASSERT_EQ(family.GetPostScriptNameCount(), 2u);
  EXPECT_EQ(Tova::Text(family.GetPostScriptName()), "Base-Bold");
  EXPECT_EQ(Tova::Text(family.GetIndPostScriptName(1)), "Base");
  EXPECT_EQ(family.GetIndPostScriptName(2), nullptr);
  EXPECT_EQ(Family(FamilyBuilder().Build()).GetPostScriptName(), nullptr);

  builder.strings[3] = std::string(255, 'x');
  const FTFont_FOND& tooLong = Family(builder.Build());
  ExpectThrow("The 'FOND' resource has a corrupt PostScript name", [&] { tooLong.GetPostScriptNameCount(); });
  EXPECT_EQ(tooLong.GetPostScriptName(), nullptr);
  builder.strings = {"Base", "\x20"};
  const FTFont_FOND& outside = Family(builder.Build());
  ExpectThrow("The 'FOND' resource has bad data in its style name table", [&] { outside.GetPostScriptNameCount(); });
}

TEST_F(Families, OutlineFilesAreFoundByTheirShortenedNamesAndShared) {
  const auto named = [&](const char* name) {
    FamilyBuilder builder;
    builder.strings = {name};
    return builder.Build();
  };
  const Bytes outlines = OneFile({}, OutlineFile().Build(), "LWFN");
  for (const auto& [name, file] : {std::pair{"Quorvane-BoldOblique", "QuorvBolObl"},
                                   {"ITC-Morlenby", "Morle"},
                                   {"ITC-", "ITC"},
                                   {"Plain_2Other", "Plain"},
                                   {"Some_OtherName", "SomeOthNam"},
                                   {"lowerUpperLong", "UpperLon"}}) {
    folder_.Write(file, outlines);
    const FTFont_FOND& family = Family(named(name));
    EXPECT_EQ(family.GetType1FontCount(), 1u) << name;
    EXPECT_TRUE(family.HasOutlines_LWFN()) << name;
    EXPECT_EQ(family.GetIndType1Font(1), nullptr);
    EXPECT_EQ(family.GetIndType1Font(0), Family(named(name)).GetIndType1Font(0)) << name << ": shared";
    std::filesystem::remove(folder_.File(file));
  }
  folder_.Write("Noout", GoodFont().Build());
  for (const char* name : {"Nooutlines", "suitcase", "Absent", "lowercase", "A/B"}) {
    EXPECT_EQ(Family(named(name)).GetType1FontCount(), 0u) << name;
  }
}

}  // namespace
