#include "TableAccess/TableClasses/FTFontTable_name.h"
#include "support/TestRun.h"

namespace {

using namespace test;

/// A table of one record over the storage; the storage starts right after the record.
TableBuilder OneName(uint16_t platform, uint16_t script, uint16_t code, const std::string& storage, uint16_t length,
                     uint16_t offset = 0) {
  TableBuilder table;
  table.U16(0).U16(1, "count").U16(18, "storage");
  return table.U16(platform).U16(script).U16(0).U16(code).U16(length).U16(offset).Text(storage);
}

class Name {
 public:
  explicit Name(const TableBuilder& table) : font_(FontBuilder().Table("name", table).Build()) {}
  const FTFontTable_name* operator->() const { return font_->FindTable<FTFontTable_name>(); }
  /// The text of a record, "(none)" when it does not decode.
  std::string Text(uint64_t index = 0) const {
    const TovaStringRef text = (*this)->GetIndName(index)->GetNameString();
    return text ? std::string(Tova::Text(text)) : "(none)";
  }

 private:
  MemoryFont font_;
};

TEST(NameTable, RecordsMustLieInsideTheTable) {
  EXPECT_EQ(Name(OneName(1, 0, 4, "Font", 4)).Text(), "Font") << "up to the very end";
  const Name longer(OneName(1, 0, 4, "Font", 5));
  EXPECT_EQ(ExpectThrow("A name entry extends beyond the end of the 'name' table", [&] { longer->Names(); }),
            "tNameStart + tLength > tTableLimit");
  EXPECT_EQ(longer->NameCount(), 0u) << "read once, without names since";
  const Name beyond(OneName(1, 0, 4, "Font", 1, 4));
  EXPECT_EQ(ExpectThrow("A name entry starts beyond the end of the 'name' table", [&] { beyond->Names(); }),
            "tNameStart >= tTableLimit && tLength != 0");
  EXPECT_EQ(Name(OneName(1, 0, 4, "Font", 0, 9999)).Text(), "") << "an empty name may stand anywhere";
}

TEST(NameTable, PlatformAndScriptDecideTheEncoding) {
  struct Case {
    uint16_t platform, script;
    std::string bytes, text;
  };
  const std::string replacement = "\uFFFD";
  const Case cases[] = {{0, 9, std::string("\0A", 2), "A"},
                        {1, 7, "\x80", "А"},
                        {1, 99, "A", "(none)"},
                        {2, 0, "\xE4", "ä"},
                        {2, 1, std::string("\0A", 2), "A"},
                        {2, 3, "A", replacement},
                        {3, 0, std::string("\xF0\x41", 2), "\uF041"},
                        {3, 1, std::string("\xD8\x3D\xDE\x00", 4), "😀"},
                        {3, 1, std::string("\0", 1), "(none)"},
                        {3, 2, "\x83\x65", "テ"},
                        {3, 3, "\xD6\xD0", "中"},
                        {3, 4, "\xA4\xA4", "中"},
                        {3, 5, "\xB0\xA1", "가"},
                        {3, 7, "A", replacement},
                        {3, 10, std::string("\0A", 2), "A"},
                        {4, 0, "A", replacement}};
  for (const Case& one : cases) {
    const auto length = static_cast<uint16_t>(one.bytes.size());
    EXPECT_EQ(Name(OneName(one.platform, one.script, 4, one.bytes, length)).Text(), one.text)
        << one.platform << ' ' << one.script;
  }
}

TEST(NameTable, TheFirstMatchingRecordDecidesEvenWithoutAText) {
  TableBuilder table;
  table.U16(0).U16(2).U16(30);
  table.U16(3).U16(1).U16(0x409).U16(4).U16(1).U16(0);  // half a character
  table.U16(1).U16(0).U16(0).U16(4).U16(4).U16(1).Text("xFont");
  const MemoryFont font(FontBuilder().Table("name", table).Build());
  EXPECT_EQ(font->GetFullName(), nullptr);
  uint64_t index = 99;
  const auto* names = font->FindTable<FTFontTable_name>();
  EXPECT_EQ(names->FindName(4, 1, FTFont_sfnt::kAny, FTFont_sfnt::kAny, index), names->GetIndName(1));
  EXPECT_EQ(index, 1u);
  EXPECT_EQ(names->FindName(4, 1, 0, 5, index), nullptr);
}

TEST(NameTable, RecordsThatLieBeyondTheBytesAreNone) {
  TableBuilder table = OneName(1, 0, 4, "", 0);
  EXPECT_EQ(Name(table.Patch("count", 65535))->NameCount(), 1u);
  EXPECT_EQ(Name(TableBuilder())->NameCount(), 0u);
}

}  // namespace
