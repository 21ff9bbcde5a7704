#include <sys/stat.h>

#include <bit>
#include <filesystem>

#include "TableAccess/ContainerClasses/FTDiskBasedFontContainer.h"
#include "TableAccess/TableClasses/FTFontTable_glyf.h"
#include "support/GlyphBuilder.h"
#include "support/TemporaryFolder.h"
#include "support/TestRun.h"
#include "support/Values.h"

namespace {

using namespace test;

class Container : public testing::Test {
 protected:
  std::unique_ptr<FTFontContainer> Open(const std::string& name, const Bytes& bytes) {
    return OpenPath(folder_.Write(name, bytes));
  }
  static std::unique_ptr<FTFontContainer> OpenPath(const std::string& path) {
    return FTFontContainer::FontContainerFromTovaURLRef(FileUrl(path).get(), true);
  }
  static std::string Name(const FTFont* font) { return std::string(Tova::Text(font->GetName())); }

  TemporaryFolder folder_;
};

constexpr const char* kFileFailure = "A file IO operation failed";

TEST_F(Container, KindsAreRecognisedByTheFirstFourBytesThenByName) {
  const auto typeOf = [&](const std::string& name, const Bytes& bytes) {
    const auto container = Open(name, bytes);
    return container ? static_cast<int>(container->GetIndFont(0)->GetType()) : -1;
  };
  const Bytes rest(28);
  for (const uint32_t scaler : {0x00010000u, 0x74727565u, 0x4F54544Fu, 0xA56B6264u, 0xA56C7374u, 0x74797031u}) {
    EXPECT_EQ(typeOf("any.name", TableBuilder().U32(scaler).Append(rest)), 3) << std::hex << scaler;
  }
  EXPECT_EQ(typeOf("x", TableBuilder().U32(0x8001ABCD).Append(rest)), 6);
  for (const std::string name : {"x.sfont", "x.SFONT", "x.sfonts", "sfont", "x"}) {
    EXPECT_EQ(typeOf(name, TableBuilder().U32(0x12345678)), name == "x.sfont" ? 5 : -1) << name;
  }
  EXPECT_EQ(typeOf("x", TableBuilder().U24(0x000100)), -1) << "three bytes";
  EXPECT_EQ(typeOf("x", {}), -1);
}

TEST_F(Container, ACollectionHoldsAFontForEachOffset) {
  const auto container = Open("good.ttc", BuildCollection({GoodFont(), GoodFont().Remove("name")}));
  ASSERT_EQ(container->GetFontCount(), 2u);
  EXPECT_EQ(Name(container->GetIndFont(0)), "Good Regular");
  EXPECT_EQ(Name(container->GetIndFont(1)), "good.ttc") << "the file's name stands in";
  ExpectThrow("An attempt was made to access an array element outside of the array bounds",
              [&] { container->GetIndFont(2); });
}

TEST_F(Container, FontsOverTheSameTablesShareTheirGlyphsOneAfterTheOther) {
  TableBuilder collection;
  collection.Text("ttcf").U32(0x00010000).U32(2).U32(20).U32(20);
  collection.Append(OutlineFont({SquareGlyph(9), SquareGlyph(9).Truncate(9)}, false).Build(20));
  const auto container = Open("shared.ttc", collection);
  const auto glyph = [&](uint64_t font, uint16_t index) {
    return dynamic_cast<const FTFont_sfnt&>(*container->GetIndFont(font))
        .FindTable<FTFontTable_glyf>()
        ->GetGlyph(index);
  };
  glyph(0, 0).ReadData();
  EXPECT_FALSE(glyph(1, 0).DataRead()) << "lent to the first font";
  container->GetIndFont(0)->ForgetTables();
  container->GetIndFont(1)->ForgetTables();
  EXPECT_TRUE(glyph(0, 0).DataRead() || glyph(1, 0).DataRead());
  for (const uint64_t font : {0, 1}) {  // what is wrong with a glyph is said for each
    ExpectThrow("A glyph contains bad data", [&] { glyph(font, 1).ReadData(); });
    ExpectThrow("A compound glyph contains itself as a component", [&] { glyph(font, 1).ReadData(); });
    container->GetIndFont(font)->ForgetTables();
  }
}

TEST_F(Container, ACollectionsHeaderIsReadAsFarAsItGoes) {
  const auto header = [](uint64_t count) { return TableBuilder().Text("ttcf").U32(0x00010000).U32(count); };
  EXPECT_EQ(Open("none.ttc", header(0))->GetFontCount(), 0u);
  EXPECT_EQ(Open("far.ttc", header(1).U32(0xFFFFFFF0))->GetFontCount(), 1u) << "fonts judge their own offsets";
  TableBuilder shared = header(200);  // fonts with one directory of 60,000 entries
  for (int i = 0; i < 200; ++i) shared.U32(812);
  shared.U32(0x00010000).U16(60000).Zeros(6 + 16 * 60000);
  const auto many = [&](uint32_t count) {  // fonts of no tables each, in a file large enough for them
    TableBuilder collection = header(count);
    for (uint32_t i = 0; i < count; ++i) collection.U32(12 + 4 * count);
    return Bytes(collection.Zeros(1'000'000));
  };
  EXPECT_EQ(Open("many.ttc", many(65535))->GetFontCount(), 65535u);
  for (const Bytes& broken : {many(65536), Bytes(shared), Bytes(TableBuilder().Text("ttcf").U32(0)),
                              Bytes(header(2).U32(12)), Bytes(header(0xFFFFFFFF).Zeros(400000))}) {
    const auto container = Open("broken.ttc", broken);
    ExpectThrow(kFileFailure, [&] { container->GetFontCount(); });
  }
}

TEST_F(Container, WhatIsNoReadableFileGivesNoFont) {
  ExpectThrow(kFileFailure, [&] { OpenPath(folder_.File("missing.ttf")); });
  EXPECT_EQ(OpenPath(folder_.Path()), nullptr);
  ASSERT_EQ(mkfifo(folder_.File("pipe.ttf").c_str(), 0600), 0);
  EXPECT_EQ(OpenPath(folder_.File("pipe.ttf")), nullptr);
  // Their names let these through, to fail when they are read.
  ASSERT_EQ(mkfifo(folder_.File("pipe.sfont").c_str(), 0600), 0);
  std::filesystem::create_directory(folder_.File("folder.sfont"));
  folder_.Write("short.sfont", {1, 2});
  for (const char* name : {"pipe.sfont", "folder.sfont", "short.sfont"}) {
    const auto container = OpenPath(folder_.File(name));
    ASSERT_NE(container, nullptr) << name;
    ExpectThrow(kFileFailure, [&] { container->GetFontCount(); });
  }
}

TEST_F(Container, SplicedFontsAreNamedByTheirChecksum) {
  const auto container = Open("x.sfont", {1, 2, 3, 4, 5, 6, 7});
  const std::string expected = std::endian::native == std::endian::little ? "04030201" : "01020304";
  EXPECT_EQ(Name(container->GetIndFont(0)), expected);
}

TEST_F(Container, Type1FontsAreUsableWhateverTheyHold) {
  for (const Bytes& bytes :
       {Bytes(TableBuilder().U32(0x80010000).Text("%!only text")), Bytes(TableBuilder().U32(0x80010000)),
        Bytes(TableBuilder().U32(0x80010000).Text("%!text").U8(0x80).Text("more"))}) {
    const auto container = Open("x.pfb", bytes);
    EXPECT_NE(container->GetIndFont(0)->TestBasicUsability(), nullptr);
    EXPECT_EQ(Name(container->GetIndFont(0)), "x.pfb");
  }
}

}  // namespace
