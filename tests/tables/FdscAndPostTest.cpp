#include "TableAccess/TableClasses/FTFontTable_fdsc.h"
#include "TableAccess/TableClasses/FTFontTable_post.h"
#include "support/TestRun.h"

namespace {

using namespace test;

TEST(Fdsc, TheAngleIsTheValueOfTheFirstSlantDescriptor) {
  const auto angle = [](uint32_t count, size_t size) {
    TableBuilder fdsc;
    fdsc.U32(0x00010000).U32(count).Text("wght").U32(7).Text("slnt").S32(-12 << 16).Text("slnt").S32(3);
    const MemoryFont font(FontBuilder().Table("fdsc", fdsc.Truncate(size)).Build());
    return font->FindTable<FTFontTable_fdsc>()->GetAngle();
  };
  EXPECT_EQ(angle(3, 32), -12 << 16);
  EXPECT_EQ(angle(0xFFFFFFFF, 32), -12 << 16);
  EXPECT_EQ(angle(1, 32), 0) << "only the weight is counted";
  EXPECT_EQ(angle(2, 23), 0) << "the value is cut off";
  EXPECT_EQ(angle(0xFFFFFFFF, 16), 0);
}

TEST(Post, TheItalicAngleIsSigned) {
  const Bytes post = PostTable().Patch("italicAngle", 0xFFF48000);
  const MemoryFont font(FontBuilder().Table("post", post).Build());
  EXPECT_EQ(font->FindTable<FTFontTable_post>()->GetItalicAngle(), -753664) << "-11.5 degrees";
}

}  // namespace
