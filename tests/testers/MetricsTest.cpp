#include "TableAccess/FTLimits.h"
#include "Tests/VornFontTesterMetrics.h"
#include "Tests/VornFontTesterStructure_hdmx.h"
#include "Tests/VornFontTesterStructure_hmtx.h"
#include "Tests/VornFontTesterStructure_vmtx.h"
#include "support/TestRun.h"

namespace {

using namespace test;

const auto [Information, Technical, Minor, Major, Fatal] = MessagesOf("hmtx: ");

/// Runs the horizontal test, and the vertical one on the same values: its words and its severities of sizes differ.
void ExpectBoth(uint16_t glyphs, uint16_t longMetrics, const Bytes& table, std::vector<Message> expected,
                uint16_t em = 1000) {
  FontBuilder font;
  font.Table("head", HeadTable().Patch("unitsPerEm", em)).Table("maxp", MaxpTable(glyphs));
  font.Table("hhea", HheaTable(longMetrics)).Table("vhea", HheaTable(longMetrics));
  font.Table("hmtx", table).Table("vmtx", table);
  SCOPED_TRACE(table.size());
  Expect(TestUsability_hmtx, font, expected);
  const auto replace = [](std::string& text, std::string_view from, std::string_view to) {
    if (const size_t at = text.find(from); at != std::string::npos) text.replace(at, from.size(), to);
  };
  for (Message& message : expected) {
    replace(message.text, "hmtx", "vmtx");
    replace(message.text, "a width", "a height");
    replace(message.text, "horizontal", "vertical");
    if (message.text.find("metrics; it should") != std::string::npos ||
        message.text.find("small; it") != std::string::npos)
      message.severity = "MajorError";
  }
  Expect(TestUsability_vmtx, font, expected);
}

Bytes Metrics(const std::vector<std::pair<uint16_t, int16_t>>& metrics, size_t size) {
  return TableBuilder(MetricsTable(metrics)).Zeros(64).Truncate(size);
}

TEST(MetricsStructure, SizeFitsTheCounts) {
  const auto usual = [](size_t size) { return Metrics({{500, 0}, {0, 0}}, size); };
  ExpectBoth(3, 3, usual(12), {});
  ExpectBoth(3, 3, usual(40), {});
  ExpectBoth(3, 3, usual(10),
             {Fatal("The table is too small to accomodate the font's long horizontal metrics; it should be "
                    "at least 12 bytes in size but is only 10")});
  ExpectBoth(4, 2, usual(15), {});
  ExpectBoth(4, 2, usual(16),
             {Minor("The table is too large and may be corrupt; it should be 12 bytes in size but is 16")});
  ExpectBoth(4, 2, usual(11), {Fatal("The table is too small; it should be at least 12 bytes in size but is only 11")});
  ExpectBoth(2, 3, usual(12), {Minor("There are more long horizontal metrics in the font (3) than glyphs (2)")});
}

TEST(MetricsStructure, ValuesAreHeldAgainstTheEm) {
  ExpectBoth(
      3, 3, Metrics({{0, 400}, {1000, 401}, {1001, -500}}, 12),
      {Minor("Glyph 0 has a width of zero; since it is used for undisplayable characters, it should be non-zero."),
       Minor("Glyph 1 has a width of 1000; it should be zero"),
       Information(
           "Glyph 1 has a width of 401, which is greater than 40 percent of the font's em (that is, 400); this may "
           "be incorrect."),
       Information("Glyph 2 has a width of 1001, which is greater than the font's em (1000); this may be incorrect.")});
  // Twice an em of 16385 is negative in 16 bits.
  ExpectBoth(2, 2, Metrics({{9, -6552}, {0, -6553}}, 8),
             {Information("Glyph 0 has a width of -6552, which is greater than 40 percent of the font's em (that "
                          "is, -6553); this may be incorrect.")},
             16385);
}

TEST(HdmxStructure, HeaderFitsTheGlyphCount) {
  const auto run = [](uint16_t version, uint16_t records, uint32_t size, size_t length) {
    const auto table = TableBuilder().U16(version).U16(records).U32(size).Zeros(length - 8);
    return test::Run(TestStructure_hdmx, FontBuilder().Table("maxp", MaxpTable(3)).Table("hdmx", table));
  };
  ExpectMessages(run(0, 2, 8, 27), {});
  ExpectMessages(
      run(1, 2, 12, 32),
      {{kTechnical, "hdmx: The table version is 1; it should be 0."},
       {kMinor, "hdmx: The device records are too large and may be corrupt; they should be 8 bytes but are 12."}});
  ExpectMessages(
      run(0, 256, 6, 1543),
      {{kMinor, "hdmx: The table is too small; it is only 1543 bytes long but should be 1544."},
       {kMinor,
        "hdmx: The table has 256 device records, which is pointless since each device record must have a point size "
        "from 0 to 255."},
       {kMinor, "hdmx: The device records are 6 bytes in size; their size should be a multiple of four."},
       {kMinor, "hdmx: The device records are too small; they should be at least 8 bytes but are only 6."}});
  ExpectMessages(
      run(0, 0, 8, 12),
      {{kMinor, "hdmx: The table is too big and may be corrupt; it is 12 bytes long but should be only 8."}});
  // Sizes are 64-bit numbers; the message shows their low 32 bits.
  ExpectMessage(run(0, 0x8000, 0x20000, 8),
                {kMinor, "hdmx: The table is too small; it is only 8 bytes long but should be 8."});
}

FontBuilder DeviceFont(uint16_t em, const std::vector<uint16_t>& advances, const TableBuilder& hdmx) {
  const auto count = static_cast<uint16_t>(advances.size());
  TableBuilder hmtx;
  for (const uint16_t advance : advances) hmtx.U16(advance).U16(0);
  FontBuilder font;
  font.Table("head", HeadTable().Patch("unitsPerEm", em)).Table("maxp", MaxpTable(count));
  return font.Table("hhea", HheaTable(count)).Table("hmtx", hmtx).Table("hdmx", hdmx);
}

TEST(MetricsConsistency, DeviceWidthsAreTheScaledAdvances) {
  TableBuilder hdmx;
  hdmx.U16(0).U16(2).U32(8);
  hdmx.U8(12).U8(9).U8(6).U8(7).U8(8).U8(9).U16(0);  // 500 units are 6 pixels
  hdmx.U8(255).U8(0).U8(128).U8(128).U8(128).U8(128).U16(0);
  const std::string minor =
      "hdmx: Minor hmtx vs hdmx size mismatch for character glyph 2 at size 12: 6 (hmtx), 8 (hdmx)";
  const std::string significant =
      "hdmx: Significant hmtx vs hdmx size mismatch for character glyph 3 at size 12: 6 (hmtx), 9 (hdmx)";
  Expect(TestMetricsConsistency, DeviceFont(1000, {500, 500, 500, 500}, hdmx),
         {{kMinor, minor}, {kMinor, significant}});
  // A width of 6 + 256 pixels is compared modulo 256.
  ExpectMessage(test::Run(TestMetricsConsistency, DeviceFont(1000, {500, 500, 500, 21833}, hdmx)),
                {kMinor, significant});
  Expect(TestMetricsConsistency, DeviceFont(0, {500, 500, 500, 500}, hdmx), {});
  EXPECT_FALSE(test::Run(TestMetricsConsistency, DeviceFont(1000, {500}, hdmx).Remove("hmtx")).applies);
}

TEST(MetricsConsistency, OverlappingRecordsEnd) {
  const std::vector<uint16_t> advances(65535, 0);
  const auto hdmx = TableBuilder().U16(0).U16(65535).U32(0).U8(12).U8(9).Append(Bytes(65535, 9));
  const Findings findings =
      test::Run(TestMetricsConsistency, DeviceFont(1000, advances, hdmx), {.limits = {.findings = 8}});
  EXPECT_EQ(findings.messages.size(), 8u);
  EXPECT_EQ(findings.severities.back(), "FatalError") << "given up";
}

}  // namespace
