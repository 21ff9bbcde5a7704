#include "Tests/VornFontTesterStructure_name.h"
#include "Tests/VornFontTesterUsability_name.h"
#include "support/MetadataBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

const auto [Information, Technical, Minor, Major, Fatal] = MessagesOf("name: ");

using Records = std::vector<NameRecord>;

void Expect(const Bytes& table, const std::vector<Message>& expected) {
  Expect(TestStructure_name, GoodFont().Table("name", table), expected);
}
void Expect(const Records& records, const std::vector<Message>& expected) {
  Expect(NameRecordsTable(records).Data(), expected);
}

TEST(NameStructure, TheHeaderIsJudged) {
  const Records two = {MicrosoftName(1, "A"), MicrosoftName(4, "B")};
  const TableBuilder table = NameRecordsTable(two);
  Expect(table.Data(), {});
  Expect(TableBuilder(table).Truncate(5), {Fatal("The table is 5 bytes long, too short for its header of 6 bytes")});
  Expect(table.With("format", 2), {Minor("The table has format 2; only formats 0 and 1 are defined")});
  Expect(Records{}, {Major("The table holds no names")});
  Expect(table.With("count", 1000), {Fatal("The header announces 1000 names, but the table has room for 2")});
  Expect(table.With("stringOffset", 28).Patch("offset0", 2).Patch("offset1", 4),
         {Minor("The string storage starts at byte 28, inside the name records, which end at byte 30")});
  Expect(table.With("stringOffset", 35),
         {Fatal("The string storage starts at byte 35, beyond the end of the table (34 bytes)")});
  EXPECT_FALSE(test::Run(TestStructure_name, GoodFont().Truncate("name", 0)).applies);
}

TEST(NameStructure, TextsLieInsideTheTable) {
  const TableBuilder table = NameRecordsTable({MicrosoftName(1, "A"), MicrosoftName(4, "B")});
  Expect(table.With("length1", 3), {Fatal("Entry 1 ends at byte 35, beyond the end of the table (34 bytes)")});
  Expect(table.With("offset1", 4), {Fatal("Entry 1 starts at byte 34, beyond the end of the table (34 bytes)")});
  const Message empty = Minor("Entry 1 (name code 4) is empty");
  Expect(table.With("offset1", 60000).Patch("length1", 0), {empty});
}

TEST(NameStructure, CodesAreJudged) {
  Expect({{0, 3, 0xFFFF, 1, Utf16(u"A")}}, {});
  Expect({{0, 3, 7, 1, Utf16(u"A")}}, {Technical("Entry 0 has a bad language code (7) for the Unicode platform")});
  Expect({{3, 1, 0, 5, Utf16(u"A")}, {3, 1, 0x8000, 5, Utf16(u"A")}},
         {Technical("Entry 0 has the language code 0x0000, which names no language"),
          Technical("Entry 1 has the language code 0x8000, which names no language")});
  Expect({MicrosoftName(15, "A"), MicrosoftName(25, "A"), MicrosoftName(26, "A"), MicrosoftName(256, "A")},
         {Technical("Entry 0 has the reserved name code 15"), Technical("Entry 2 has the reserved name code 26")});
  const Bytes unordered = NameRecordsTable({MicrosoftName(4, "A"), MicrosoftName(1, "B"), MicrosoftName(0, "C")});
  Expect(unordered, {Technical("Entry 1 is out of order; entries ascend by platform, script, language and name code")});
  ExpectMessages(test::Run(TestStructure_name, GoodFont().Table("name", unordered),
                           {.severities = {kMinor, "MajorError", "FatalError"}}),
                 {});
}

TEST(NameStructure, LanguageTagsAreJudged) {
  const Records records = {MicrosoftName(1, "A", 0x8000), MicrosoftName(1, "A", 0x8001)};
  Expect(NameRecordsTable(records, {"de-AT", "fr"}).Data(), {});
  Expect(NameRecordsTable(records, {"de"}).Data(), {Minor("Entry 1 uses language tag 1, but the table has 1")});
  Expect(NameRecordsTable(records, {"de_AT", ""}).Patch("tagOffset1", 0xFFFF),
         {Minor("Language tag 0 is not usable text inside the table"),
          Minor("Language tag 1 is not usable text inside the table")});
}

TEST(NameStructure, RepeatedNamesAreReported) {
  Expect({MicrosoftName(1, "A"), MicrosoftName(1, "A"), MicrosoftName(1, "B")},
         {Technical("Entries 0 and 1 give the same name twice"),
          Minor("Entries 0 and 2 give different texts for name code 1 in the same platform, script and language")});
}

TEST(NameStructure, TextsAreJudged) {
  const auto record = [](uint16_t code, const std::string& bytes) { return NameRecord{3, 1, 0x409, code, bytes}; };
  Expect({record(1, "A")}, {Major("Entry 0 is 1 bytes long; UTF-16 text has an even number of bytes")});
  Expect({record(1, "\xD8\x01")}, {Minor("The text of entry 0 (name code 1) cannot be converted to Unicode")});
  Expect({{1, 99, 0, 1, "A"}}, {Minor("Entry 0 has a bad script code (99) for the Valdor platform")});
  Expect({MicrosoftName(0, "A\tB\n"), MicrosoftName(1, "A\tB "), MicrosoftName(7, "A\x7F")},
         {Minor("The text of entry 1 (name code 1) contains the control character U+0009"),
          Technical("The text of entry 2 (name code 7) contains the control character U+007F")});
  Expect({MicrosoftName(1, " A"), MicrosoftName(3, " A"), record(4, Utf16(u"A\u3000"))},
         {Minor("The text of entry 0 (name code 1) begins or ends with white space"),
          Minor("The text of entry 2 (name code 4) begins or ends with white space")});
}

TEST(NameStructure, RecordsThatShareALongTextCostLittle) {
  Records records;
  for (uint16_t i = 0; i < 65; ++i)
    records.push_back({3, 1, 0x409, uint16_t(256 + i), i ? "" : std::string(65534, '\xD8')});
  TableBuilder table = NameRecordsTable(records);
  for (int i = 0; i < 65; ++i) {
    table.Patch("length" + std::to_string(i), 65534).Patch("offset" + std::to_string(i), 0);
  }
  EXPECT_EQ(test::Run(TestStructure_name, GoodFont().Table("name", table)).messages.size(), 64u);
}

/// What the usability test finds in a font with these names, besides what it finds in every font without some.
void ExpectUse(const Records& records, const std::vector<Message>& expected, uint16_t style = 0) {
  const FontBuilder font =
      GoodFont().Table("name", NameRecordsTable(records)).Table("head", HeadTable().Patch("style", style));
  Expect(TestUsability_name, font, expected);
}

/// A full set of names, with another text for one of them, and more records.
Records Names(uint16_t code = 0, const std::string& text = "", const Records& more = {}) {
  Records records;
  const std::string texts[] = {"Good", "Regular", "Good 1", "Good Regular", "Version 1.0", "Good-Regular"};
  for (uint16_t i = 1; i <= 6; ++i) records.push_back(MicrosoftName(i, i == code ? text : texts[i - 1]));
  records.insert(records.end(), more.begin(), more.end());
  return records;
}

TEST(NameUsability, NeededNamesAreThere) {
  ExpectUse(Names(), {});
  Expect(TestUsability_name, GoodFont().Remove("name"), {Fatal("The font has no 'name' table")});
  ExpectUse({MicrosoftName(4, "A"), {1, 0, 0, 3, "\x80\x81"}, {1, 1, 0, 6, "\xFF\xFF"}},
            {Major("The font has no family name (name code 1)"), Major("The font has no style name (name code 2)"),
             Minor("The font has no version name (name code 5)"),
             Minor("The names of platform 1 are incomplete: there is no family name (name code 1)"),
             Minor("The names of platform 3 are incomplete: there is no family name (name code 1)")});
  ExpectUse(Names(6, ""), {Fatal("The font has no PostScript name (name code 6)"),
                           Minor("The names of platform 3 are incomplete: there is no PostScript name (name code 6)")});
}

TEST(NameUsability, ThePostScriptNameIsUsable) {
  ExpectUse(Names(6, "My Font"),
            {Major("The PostScript name 'My Font' contains the character U+0020, which is not allowed")});
  ExpectUse(Names(6, std::string(63, 'x')), {});
  ExpectUse(Names(6, std::string(64, 'x')),
            {Major("The PostScript name '" + std::string(63, 'x') + "...' has 64 characters; it must have 1 to 63")});
}

TEST(NameUsability, ThereIsOnePostScriptName) {
  ExpectUse(Names(0, "", {MicrosoftName(6, "Good-Regular", 0x411)}),
            {Technical("The PostScript name is repeated for platform 3, language 1041; it must not be localised")});
  ExpectUse(Names(0, "", {MicrosoftName(6, "Gut", 0x407)}),
            {Major("The PostScript name is localised: platform 3, language 1031 gives 'Gut'")});
  ExpectUse(Names(0, "", {MicrosoftName(6, "Fine", 0x809)}),
            {Major("The font has two PostScript names: 'Good-Regular' on platform 3 and 'Fine' on platform 3")});
}

TEST(NameUsability, PlatformsAgree) {
  const auto valdor = [](const std::string& family, const std::string& full) {
    return Records{{1, 0, 0, 1, family}, {1, 0, 0, 2, "Regular"}, {1, 0, 0, 4, full}, {1, 0, 0, 6, "Good-Regular"}};
  };
  ExpectUse(Names(0, "", valdor("Good", "Good-Regular")), {});
  ExpectUse(Names(0, "", valdor("Other\x01", "Other Regular")),
            {Minor("The family name is 'Good' on the Microsoft platform, but 'Other\uFFFD' on the Valdor platform"),
             Information("The full name is 'Good Regular' on the Microsoft platform, but 'Other Regular' on the Valdor "
                         "platform")});
  Records typographic = valdor("Better", "Good Regular");
  typographic.push_back(MicrosoftName(16, "Better"));
  ExpectUse(Names(0, "", typographic), {});
  ExpectUse(Names(0, "", {MicrosoftName(17, "Bold")}),
            {Technical("Platform 3, language 1033 has a typographic style name but no typographic family name")});
  ExpectUse({{1, 0, 0, 1, "A"},
             {1, 0, 0, 2, "B"},
             {1, 0, 0, 3, "C"},
             {1, 0, 0, 4, "D"},
             {1, 0, 0, 5, "1.0"},
             {1, 0, 0, 6, "E"}},
            {Information("The font has no names for the Microsoft platform")});
}

TEST(NameUsability, TextsAgreeWithTheHeader) {
  ExpectUse(Names(1, std::string(32, 'x')), {Technical("The family name '" + std::string(32, 'x') +
                                                       "' has 32 characters; some programs keep only 31")});
  ExpectUse(Names(5, "Version 1"), {Technical("The version name 'Version 1' has no version number")});
  ExpectUse(Names(5, "v. 2 or 1.01"), {});
  ExpectUse(Names(5, "v1.02"), {Technical("The version name 'v1.02' does not agree with the font revision 1.000000")});
  ExpectUse(Names(2, "Semibold"), {}, 1);
  ExpectUse(Names(2, "BOLD Italic"), {}, 0x13);
  ExpectUse(Names(2, "Bold"),
            {Minor("The style name is 'Bold', but the header's style bits are 0x0010 (1 is bold, 2 is italic)")}, 0x10);
}

}  // namespace
