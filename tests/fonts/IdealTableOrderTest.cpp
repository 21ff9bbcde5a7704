#include <gmock/gmock.h>

#include <bit>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "support/TemporaryFolder.h"
#include "support/Values.h"

namespace {

using namespace test;

/// A tag's text as this host keeps it in preferences.
Tova::String Stored(std::string tag) {
  if (std::endian::native == std::endian::little) tag.assign(tag.rbegin(), tag.rend());
  return Tova::MakeString(tag);
}

TEST(IdealTableOrder, APreferenceOfStringsIsReadTagByTagAndTheDefaultIsWritten) {
  const auto number = Tova::Adopt(TovaNumberCreateWithInteger(1));
  const auto texts = Array({Stored("glyf").get(), number.get(), Tova::MakeString("eightchr").get(),
                            Stored("head").get(), Stored("????").get(), Stored("cmap").get()});
  EXPECT_THAT(*FTTableOrderFromPreference(texts.get()), testing::ElementsAre(FTTag("glyf"), FTTag("head")));
  EXPECT_FALSE(FTTableOrderFromPreference(number.get()));

  const TemporaryFolder folder;
  setenv("XDG_CONFIG_HOME", folder.Path().c_str(), 1);
  EXPECT_EQ(FTFont_sfnt::TableTagToInt(FTTag("ENCO")), 45u);
  EXPECT_EQ(FTFont_sfnt::TableTagToInt(FTTag("Zapf")), FTTag("Zapf"));
  EXPECT_TRUE(std::filesystem::exists(folder.File("veltrin.fonts.Quillon.plist")));
  EXPECT_EQ(FTTableOrderFromPreference(FTPreferenceFromTableOrder(FTDefaultTableOrder()).get()), FTDefaultTableOrder());
}

}  // namespace
