#include "TableAccess/TableClasses/FTFontTable_post.h"
#include "support/MetadataBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

/// The accessor of a 'post' table in a font of so many glyphs.
class Post {
 public:
  explicit Post(const Bytes& table, uint16_t glyphs = 3)
      : font_(FontBuilder().Table("post", table).Table("maxp", MaxpTable(glyphs)).Build()) {}
  const FTFontTable_post* operator->() const { return font_->FindTable<FTFontTable_post>(); }
  const FTFont_sfnt& Font() const { return *font_; }
  /// The names of all glyphs, each followed by a blank.
  std::string Names() const {
    std::string names;
    for (uint32_t i = 0; i < (*this)->GetGlyphCount(); ++i) names += (*this)->GetGlyphName(i).value_or("(none)") + " ";
    return names;
  }

 private:
  MemoryFont font_;
};

TEST(PostTable, StoredNamesFollowTheStandardOnes) {
  const Post post(StoredNamesTable({0, 36, 258, 259, 260, 257}, {"alpha", ""}));
  EXPECT_EQ(post.Names(), ".notdef A alpha  (none) dcroat ") << "the last but one is beyond the stored names";
  EXPECT_EQ(post.Font().GlyphName(2), "alpha");
  EXPECT_EQ(post.Font().GlyphName(3), std::nullopt) << "an empty name says nothing";
  EXPECT_EQ(post.Font().GlyphName(6), std::nullopt);
  EXPECT_EQ(Post(StoredNamesTable({258}, {"\xE4"})).Names(), "ä ") << "bytes are Latin-1";
}

TEST(PostTable, NamesEndWithTheTable) {
  TableBuilder table = StoredNamesTable({258, 259}, {"one", "abc"});
  const Post post(table.Patch("length1", 200));
  EXPECT_EQ(post->CountStoredNames(), 1u);
  EXPECT_EQ(post->StoredNamesEnd(), table.Offset("length1"));
  EXPECT_EQ(post.Names(), "one (none) ");
  EXPECT_EQ(ExpectThrow("An attempt was made to access an array element outside of the array bounds",
                        [&] { post->GetStoredName(1); }),
            "iIndex < CountStoredNames()");
  EXPECT_EQ(Post(StoredNamesTable({0, 0, 0}, {}).Truncate(37))->GetGlyphCount(), 1u) << "entries held, not claimed";
}

TEST(PostTable, OtherFormatsNameGlyphsInTheirOwnWays) {
  const Post offsets(NameOffsetsTable({0, 35, -3}));
  EXPECT_EQ(offsets.Names(), ".notdef A (none) ");
  EXPECT_EQ(offsets->GetNameIndex(2), -1);

  const Post standard(PostTable().Patch("version", 0x00010000));
  EXPECT_EQ(standard->GetGlyphCount(), 258u);
  EXPECT_EQ(standard->GetGlyphName(36), "A");

  const Post codes(PostTable().Patch("version", 0x00040000).U16(0x8888).U16(0xFFFF).U16(0x41));
  EXPECT_EQ(codes.Names(), "a8888 (none) a0041 ");
  EXPECT_EQ(codes.Font().GlyphName(0), std::nullopt) << "a code is no name";

  const Post none(PostTable());
  EXPECT_EQ(none->GetGlyphCount(), 0u);
  EXPECT_EQ(ExpectThrow("A reference was made to a non-existent glyph", [&] { none->GetGlyphName(0); }),
            "iGlyphID < GetGlyphCount()");
}

}  // namespace
