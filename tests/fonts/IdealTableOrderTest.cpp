#include <gmock/gmock.h>

#include <bit>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace test;

/// A tag's text as this host keeps it in preferences.
Tova::String Stored(std::string tag) {
  if (std::endian::native == std::endian::little) tag.assign(tag.rbegin(), tag.rend());
  return Tova::MakeString(tag);
}

TEST(IdealTableOrder, APreferenceOfStringsIsReadTagByTag) {
  const auto texts = Tova::Adopt(TovaArrayCreateMutable());
  const auto number = Tova::Adopt(TovaNumberCreateWithInteger(1));
  for (const Tova::Value& value :
       {Tova::Value(Stored("glyf")), Tova::Value(number), Tova::Value(Tova::MakeString("eightchr")),
        Tova::Value(Stored("head")), Tova::Value(Stored("????")), Tova::Value(Stored("cmap"))}) {
    TovaArrayAppendValue(texts.get(), value.get());
  }
  EXPECT_THAT(*FTTableOrderFromPreference(texts.get()), testing::ElementsAre(FTTag("glyf"), FTTag("head")));
  EXPECT_FALSE(FTTableOrderFromPreference(number.get()));
}

TEST(IdealTableOrder, TheDefaultIsWrittenAndServes) {
  const TemporaryFolder folder;
  setenv("XDG_CONFIG_HOME", folder.Path().c_str(), 1);
  EXPECT_EQ(FTFont_sfnt::TableTagToInt(FTTag("head")), 0u);
  EXPECT_EQ(FTFont_sfnt::TableTagToInt(FTTag("ENCO")), 45u);
  EXPECT_EQ(FTFont_sfnt::TableTagToInt(FTTag("Zapf")), FTTag("Zapf"));
  EXPECT_TRUE(std::filesystem::exists(folder.File("veltrin.fonts.Quillon.plist")));
  EXPECT_EQ(FTTableOrderFromPreference(FTPreferenceFromTableOrder(FTDefaultTableOrder()).get()), FTDefaultTableOrder());

  const FTSfntDirectoryEntry head{FTTag("head"), 0, 0, 0};
  const FTSfntDirectoryEntry cmap{FTTag("cmap"), 0, 0, 0};
  EXPECT_LT(FTFont_sfnt::TableEntryOffsetOrderCompareFunction(head, cmap), 0);
  EXPECT_GT(FTFont_sfnt::TableEntryAlphabeticalOrderCompareFunction(head, cmap), 0);
  EXPECT_EQ(FTFont_sfnt::TableEntryAlphabeticalOrderCompareFunction(head, head), 0);
}

}  // namespace
