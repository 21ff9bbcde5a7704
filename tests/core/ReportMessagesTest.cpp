#include <gmock/gmock.h>

#include "Core/ReportTree.h"
#include "support/CmapBuilder.h"
#include "support/GlyphBuilder.h"
#include "support/Report.h"
#include "support/TestRun.h"

namespace {

using namespace test;
using testing::ElementsAre;
using testing::EndsWith;

/// Descriptions of the messages of a report's only record.
std::vector<std::string> Messages(const Report& report) {
  std::vector<std::string> messages;
  for (int i = 0; i < report.Count({kFonts, 0, kRecords, 0, kVornFontTestMessagesKey}); ++i) {
    messages.push_back(Description(report.At({kFonts, 0, kRecords, 0, kVornFontTestMessagesKey, i})));
  }
  return messages;
}

class ReportMessages : public ReportCreation {
 protected:
  void RunOnly(const char* identifier) {
    const auto test = Dictionary({{kVornFontTestIdentifierKey, Tova::MakeString(identifier).get()}});
    TovaDictionarySetValue(full_.get(), kVornFontTestArrayKey, Array({test.get()}).get());
    TovaDictionarySetValue(full_.get(), kVornFontTestSeverityKey, Array({kVornFontTestSeverityMajorError}).get());
  }
};

TEST_F(ReportMessages, HaveDetailsOnRequestAsFarAsTheyAreKnown) {
  FontBuilder font = OutlineFont({SquareGlyph(9, {0x7B}), CompoundGlyph({{0x1000, 0}})});
  font.Table("cmap", CmapTable({{3, 1, CmapFormat6(0x20, {})}}).Patch("version", 7));
  const auto details = [&](const char* test, bool wanted) {
    RunOnly(test);
    TovaDictionarySetValue(full_.get(), kVornFontTestMessageDetailsOptionKey, Tova::Boolean(wanted));
    std::vector<std::string> messages = Messages(Create(font.Build(), full_.get()));
    for (std::string& message : messages) {
      message.erase(0, message.find("TextKey") + 7);
      for (const std::string_view key : {"kVornFontTestMessage", "Key"}) {
        for (size_t at = 0; (at = message.find(key)) != message.npos;) message.erase(at, key.size());
      }
    }
    return messages;
  };
  EXPECT_THAT(
      details("veltrin.TrueType.cmap.structure", true),
      ElementsAre(
          ": cmap: Bad cmap version - 0x00000007, Format: Bad cmap version - 0x%08lX, Table: cmap, Arguments: {7}}",
          ": cmap: Encoding 0 (format 6), entryCount is 0, "
          "Format: Encoding %d (format 6), entryCount is 0, Table: cmap, Offset: 12, Part: Encoding 0, "
          "Arguments: {0}}"));
  EXPECT_THAT(
      details("veltrin.TrueType.glyf.instructions", true),
      ElementsAre(": glyf: Illegal opcode: 7B, Format: Illegal opcode: %02X, Table: glyf, Glyph: 0, Offset: 14, "
                  "Arguments: {123}}"));
  EXPECT_THAT(details("veltrin.TrueType.glyf.instructions", false), ElementsAre(": glyf: Illegal opcode: 7B}"));
}

TEST_F(ReportMessages, BeyondALimitAreCountedAndLeaveTheResultAsItIs) {
  RunOnly("veltrin.TrueType.glyf.usability");
  const Bytes font =
      OutlineFont({SquareGlyph(9), {}, {}, {}, {}, {}}).Table("maxp", MaxpTable(6).Patch("maxContours", 9)).Build();
  const Report whole = Create(font, full_.get());
  const auto limit = Tova::Adopt(TovaNumberCreateWithInteger(2));
  TovaDictionarySetValue(full_.get(), kVornFontTestMessageLimitOptionKey, limit.get());
  const Report limited = Create(font, full_.get());
  EXPECT_EQ(Messages(whole).size(), 6u);
  EXPECT_THAT(Messages(limited), ElementsAre(Messages(whole)[0], Messages(whole)[1],
                                             "{kVornFontTestResultKey: kVornFontTestSeverityInformation, "
                                             "kVornFontTestMessageTextKey: 4 further messages were not recorded}"));
  EXPECT_EQ(Description(limited.At({kResult})), "{kVornFontTestSeverityInformation, kVornFontTestSeverityMinorError}");
  EXPECT_EQ(Description(limited.At({kResult})), Description(whole.At({kResult})));
  EXPECT_EQ(Description(limited.At({kFonts, 0, kResult})), Description(whole.At({kResult})));
}

TEST_F(ReportMessages, LeaveRoomForGraveOnesOfLaterFonts) {
  ReportTree tree({.level = ReportLevel::kFull, .bytes = 200'000});
  const MemoryFont font(GoodFont().Build());
  const auto record = [&](Severity severity, int count) {
    EXPECT_TRUE(tree.HasRoomForFont());
    tree.MakeFont(*font);
    FindingSink sink = tree.MakeSink();
    for (int i = 0; i < count; ++i) sink.AppendMessage(severity, "head", nullptr, "A finding", {}, {});
    return Description(tree.MakeRecord(*font, Dictionary({}).get(), 0, sink).get());
  };
  std::string last;
  for (int i = 0; i < 20; ++i) last = record(Severity::kMinorError, 100);
  EXPECT_NE(last.find("TextKey: 100 further messages"), last.npos) << last;
  last = record(Severity::kFatalError, 1);
  EXPECT_NE(last.find("TextKey: head: A finding"), last.npos) << last;
}

TEST_F(ReportMessages, ALongNameOfManyFontsIsKeptOnceAndCutInTheEnd) {
  constexpr int kFontCount = 140;
  RunOnly("veltrin.Type1.usability");
  TableBuilder collection;
  collection.Text("ttcf").U32(0x00010000).U32(uint64_t{kFontCount});
  for (int i = 0; i < kFontCount; ++i) collection.U32(12 + 4 * kFontCount);
  const FontBuilder font = GoodFont().Table("name", NameTable({{4, std::string(32'000, 'n')}}));
  const Report report = Create(collection.Append(font.Build(collection.Size())), full_.get());
  ASSERT_EQ(report.Count({kFonts}), kFontCount);
  EXPECT_EQ(report.Text({kFonts, 0, kVornFontTestFontNameKey}).size(), 32'000u);
  EXPECT_EQ(report.At({kFonts, 0, kVornFontTestFontNameKey}), report.At({kFonts, 1, kVornFontTestFontNameKey}));
  EXPECT_EQ(report.Text({kFonts, kFontCount - 1, kVornFontTestFontNameKey}), std::string(1024, 'n') + "...");
}

// The translations stand in the bundle of this program; one of them does not fit its argument.
TEST_F(ReportMessages, ATranslationThatDoesNotFitItsArgumentsGivesWayToTheOriginal) {
  RunOnly("veltrin.TrueType.hdmx.structure");
  const Bytes hdmx = TableBuilder().U16(7).U16(1).U32(10).Zeros(10);
  EXPECT_THAT(Messages(Create(GoodFont().Table("hdmx", hdmx).Build(), full_.get())),
              ElementsAre(EndsWith(": hdmx: The table version is 7; it should be 0.}"),
                          EndsWith(": hdmx: 10 does not divide by four.}"), testing::_));
}

}  // namespace
