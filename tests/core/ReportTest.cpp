#include "Core/ReportConsolidation.h"
#include "support/MetadataBuilder.h"
#include "support/Report.h"
#include "support/SuitcaseBuilder.h"
#include "support/TestRun.h"

namespace {

using namespace test;

TEST_F(ReportCreation, WithoutOptionsThereAreTheSeveritiesOfTheUsabilityTestsAlone) {
  const Report report = Create(GoodFont().Table("name", NameTable({})).Build());
  EXPECT_EQ(report.Keys(), 1);
  EXPECT_TRUE(TovaArrayContainsValue(Tova::AsArray(report.At({kResult})), kVornFontTestSeverityFatalError))
      << "no PostScript name";
}

TEST_F(ReportCreation, AFullReportTellsOfFontsTestsAndMessages) {
  const std::string expected =
      "{kVornFontTestFontNameKey: Good Regular, kVornFontTestFontPostScriptNameKey: Good-Regular, "
      "kVornFontTestFontIdentifierKey: 1234ABCD|Good 1.0, kVornFontTestFontTypeKey: kVornFontTestTrueTypeFontData, ";
  TovaDictionarySetValue(full_.get(), kVornFontTestForceTestExecutionKey, kTovaBooleanTrue);
  for (const bool full : {true, false}) {
    const Report report = Create(GoodFont().Remove("hmtx").Build(), (full ? full_ : summary_).get());
    EXPECT_TRUE(Description(report.At({kFonts, 0})).starts_with(expected)) << Description(report.At({kFonts, 0}));
    EXPECT_EQ(report.At({kVornFontTestForceTestExecutionKey}), full ? kTovaBooleanTrue : kTovaBooleanFalse);
    EXPECT_EQ(report.At({kVornFontTestUseSandboxOptionKey}), kTovaBooleanFalse);
    int at = static_cast<int>(report.Count({kFonts, 0, kRecords})) - 1;
    while (report.Text({kFonts, 0, kRecords, at, kVornFontTestIdentifierKey}) > "veltrin.TrueType.usability") --at;
    EXPECT_EQ(report.Text({kFonts, 0, kRecords, at, kVornFontTestNameKey}), "Required tables");
    EXPECT_EQ(TovaGetTypeID(report.At({kFonts, 0, kRecords, at, kVornFontTestTimeStampKey})), kTovaTypeDate);
    EXPECT_EQ(full ? Description(report.At({kFonts, 0, kRecords, at, kVornFontTestMessagesKey, 0})) : "",
              full ? "{kVornFontTestResultKey: kVornFontTestSeverityFatalError, kVornFontTestMessageTextKey: sfnt: The "
                     "font is missing a horizontal metrics ('htmx') table (required by the TrueType specification).}"
                   : "");
    EXPECT_EQ(report.Count({kFonts, 0, kRecords, at, kVornFontTestMessagesKey}), full ? 1 : 0);
  }
}

TEST_F(ReportCreation, DetailsTellAGlyphByItsName) {
  TovaDictionarySetValue(full_.get(), kVornFontTestMessageDetailsOptionKey, kTovaBooleanTrue);
  const FontBuilder font = GoodFont().Table("post", StoredNamesTable({0, 258, 258}, {"alpha"}));
  const Report report = Create(font.Build(), full_.get());
  bool found = false;
  for (int i = 0; i < report.Count({kFonts, 0, kRecords}); ++i) {
    if (report.Text({kFonts, 0, kRecords, i, kVornFontTestIdentifierKey}) != "veltrin.TrueType.post.usability")
      continue;
    found = true;
    EXPECT_EQ(
        Description(report.At({kFonts, 0, kRecords, i, kVornFontTestMessagesKey, 0, kVornFontTestMessageGlyphKey})),
        "2");
    EXPECT_EQ(report.Text({kFonts, 0, kRecords, i, kVornFontTestMessagesKey, 0, kVornFontTestMessageGlyphNameKey}),
              "alpha");
  }
  EXPECT_TRUE(found);
}

TEST_F(ReportCreation, RequestedTestsRunInOrderAndUnknownOnesNotAtAll) {
  const auto description = [](const char* identifier) {
    return Dictionary({{kVornFontTestIdentifierKey, Tova::MakeString(identifier).get()},
                       {kVornFontTestTargetKey, Tova::MakeString("kept").get()}});
  };
  const auto tests = Array({description("veltrin.none").get(), description("veltrin.TrueType.usability").get(),
                            description("veltrin.Type1.usability").get(), kVornFontTestNameKey,
                            description("veltrin.TrueType.usability").get()});
  const auto options = Dictionary(
      {{kVornFontTestCreateReportTypeKey, kVornFontTestReportTypeSummary}, {kVornFontTestArrayKey, tests.get()}});
  const Report report = Create(GoodFont().Build(), options.get());
  EXPECT_EQ(report.Count({kFonts, 0, kRecords}), 2) << "unknown, inapplicable and malformed ones leave no record";
  EXPECT_EQ(report.Text({kFonts, 0, kRecords, 1, kVornFontTestTargetKey}), "kept");

  TovaDictionarySetValue(summary_.get(), kVornFontTestArrayKey, Array({}).get());
  const Report empty = Create(GoodFont().Build(), summary_.get());
  EXPECT_EQ(empty.Count({kResult}), 0);
  EXPECT_EQ(empty.Count({kFonts}), 1);
}

TEST_F(ReportCreation, AFileThatIsNoFontEndsInAFatalResult) {
  for (const Bytes& bytes : {Bytes(), Bytes(11), Bytes(100, 'x')}) {
    const Report report = Create(bytes, full_.get(), "file");
    EXPECT_EQ(report.At({kResult, 0}), kVornFontTestSeverityFatalError);
    EXPECT_EQ(report.Count({kFonts}), 0);
  }
  EXPECT_EQ(CreateAt(folder_.File("missing"), full_.get()).Count({kResult}), 1);
  EXPECT_EQ(Report(VornFontTestCreateReport(nullptr, nullptr)).Count({kResult}), 1);
}

TEST_F(ReportCreation, ABrokenFontLeavesAFatalRecordAfterTheFontsBeforeIt) {
  FontBuilder broken = GoodFont();
  broken.Entry("over", 0, 0xFFFF);
  const Report report = Create(BuildCollection({GoodFont(), broken, GoodFont()}), full_.get());
  ASSERT_EQ(report.Count({kFonts}), 2) << "the run ends there";
  EXPECT_EQ(report.Text({kFonts, 1, kVornFontTestFontNameKey}), "<corrupt font name>");
  EXPECT_EQ(report.At({kFonts, 1, kVornFontTestFontPostScriptNameKey}), nullptr);
  EXPECT_EQ(report.Text({kFonts, 1, kRecords, 0, kVornFontTestIdentifierKey}), "veltrin.alwaysRun");
  EXPECT_EQ(report.At({kFonts, 1, kRecords, 0, kVornFontTestMessagesKey, 0, kVornFontTestSeverityKey}),
            kVornFontTestSeverityFatalError);
  EXPECT_TRUE(report.Text({kFonts, 1, kRecords, 0, kVornFontTestMessagesKey, 0, kVornFontTestMessageTextKey})
                  .ends_with("(The font's directory contains an invalid table length)"));
}

TEST_F(ReportCreation, ANameTableThatCannotBeReadEndsTheRunAndLeavesNoNames) {
  FontBuilder broken = GoodFont();
  const Report report = Create(broken.Truncate("name", 60).Build(), full_.get(), "file.ttf");
  EXPECT_EQ(report.Text({kFonts, 0, kVornFontTestFontNameKey}), "file.ttf") << "it is not read a second time";
  EXPECT_EQ(report.Text({kFonts, 0, kVornFontTestFontPostScriptNameKey}), "<no font name>");
  EXPECT_EQ(report.Text({kFonts, 0, kVornFontTestFontIdentifierKey}), "1234ABCD|");
  EXPECT_TRUE(report.Text({kFonts, 0, kRecords, 0, kVornFontTestMessagesKey, 0, kVornFontTestMessageTextKey})
                  .ends_with("of the 'name' table)"));
}

TEST_F(ReportCreation, FontsThatAskForTooMuchWorkEndItWithAWord) {
  constexpr int kCount = 99;
  TableBuilder collection;
  collection.Text("ttcf").U32(0x00010000).U32(kCount);
  for (int i = 0; i < kCount; ++i) collection.U32(12 + 4 * kCount);
  collection.Append(GoodFont().Table("fpgm", Bytes(1 << 20, 0x4F)).Build(collection.Size()));
  TovaDictionarySetValue(full_.get(), kVornFontTestArrayKey,
                         Tova::Adopt(VornFontTestCopyAvailableTests(Array({kVornFontTestStructureTest}).get())).get());
  const Report report = Create(collection, full_.get(), "busy.ttc");
  const int last = static_cast<int>(report.Count({kFonts})) - 1;
  EXPECT_GT(last, 2);
  EXPECT_LT(last, kCount);
  EXPECT_EQ(report.Text({kFonts, last, kVornFontTestFontNameKey}), "Good Regular");
  EXPECT_EQ(report.Text({kFonts, last, kRecords, 0, kVornFontTestMessagesKey, 0, kVornFontTestMessageTextKey})
                .find("The examination was given up after "),
            0u);
}

TEST_F(ReportCreation, FontsWithoutNamesSaySo) {
  const Report report = Create(GoodFont().Table("name", NameTable({})).Build(), summary_.get(), "file.ttf");
  EXPECT_EQ(report.Text({kFonts, 0, kVornFontTestFontNameKey}), "file.ttf");
  EXPECT_EQ(report.Text({kFonts, 0, kVornFontTestFontPostScriptNameKey}), "<no font name>");
  const Report type1 = Create(TableBuilder().U32(0x80010000), summary_.get(), "file.pfb");
  EXPECT_EQ(type1.Text({kFonts, 0, kVornFontTestFontIdentifierKey}), "<no font identifier>");
  EXPECT_EQ(type1.Text({kFonts, 0, kVornFontTestFontTypeKey}), "kVornFontTestGeneralFontData");
}

TEST_F(ReportCreation, BytesInMemoryNeedNoFile) {
  const auto create = [&](const Bytes& bytes, const char* name) {
    const auto data = Tova::Adopt(TovaDataCreate(bytes.data(), bytes.size()));
    const auto url = Tova::Adopt(TovaURLCreateWithData(data.get(), Tova::MakeString(name).get()));
    return Report(VornFontTestCreateReport(url.get(), full_.get()));
  };
  const Report report = create(BuildCollection({GoodFont(), GoodFont().Remove("name")}), "memory.ttc");
  ASSERT_EQ(report.Count({kFonts}), 2);
  EXPECT_EQ(report.Text({kFonts, 0, kVornFontTestFontNameKey}), "Good Regular");
  EXPECT_EQ(report.Text({kFonts, 1, kVornFontTestFontNameKey}), "memory.ttc");
  EXPECT_EQ(create(Bytes(7, 's'), "memory.sfont").Text({kFonts, 0, kVornFontTestFontIdentifierKey}), "73737373");
  EXPECT_EQ(create({}, "empty.ttf").Count({kFonts}), 0);
  EXPECT_EQ(create({}, "empty.sfont").Count({kFonts}), 0);
}

TEST_F(ReportCreation, AFamilyAndItsOutlineFontOfOneNameBecomeOneEntry) {
  FamilyBuilder family;
  family.strings = {"Good-Regular"};
  SuitcaseBuilder suitcase;
  suitcase.Add("sfnt", 1, GoodFont().Table("name", NameTable({})).Build()).Add("sfnt", 128, GoodFont().Build());
  suitcase.Add("FOND", 128, family.Build(), "Good").Add("FOND", 129, FamilyBuilder().Build(), "Nameless");
  suitcase.Add("NFNT", 300, Bytes(26));
  const Report report = Create(suitcase.Build(), full_.get(), "suitcase");
  ASSERT_EQ(report.Count({kFonts}), 4);
  EXPECT_EQ(report.Text({kFonts, 0, kVornFontTestFontNameKey}), "Good Regular");
  EXPECT_EQ(report.Text({kFonts, 0, kVornFontTestFontTypeKey}), "kVornFontTestTrueTypeFontData");
  const int last = static_cast<int>(report.Count({kFonts, 0, kRecords})) - 1;
  EXPECT_EQ(report.Text({kFonts, 0, kRecords, last, kVornFontTestIdentifierKey}),
            "veltrin.resource.FOND.styles.usability");
  EXPECT_EQ(report.Text({kFonts, 1, kVornFontTestFontPostScriptNameKey}), "<no font name>") << "the sfnt without";
  EXPECT_EQ(report.Text({kFonts, 2, kVornFontTestFontNameKey}), "Nameless");
  EXPECT_EQ(report.Text({kFonts, 2, kVornFontTestFontTypeKey}), "kVornFontTestFONDResource");
  EXPECT_EQ(report.Text({kFonts, 3, kVornFontTestFontTypeKey}), "kVornFontTestNFNTResource");
}

TEST_F(ReportCreation, ASuitcaseIsTestedUpToTheFontThatFails) {
  const auto endsAt = [&](const SuitcaseBuilder& suitcase, const char* label, uint64_t value) {
    const Report report = Create(suitcase.Build().Patch(label, value), full_.get(), "suitcase");
    const int last = static_cast<int>(report.Count({kFonts})) - 1;
    if (last >= 0) {
      EXPECT_EQ(report.Text({kFonts, last, kRecords, 0, kVornFontTestIdentifierKey}), "veltrin.alwaysRun");
    }
    EXPECT_TRUE(TovaArrayContainsValue(Tova::AsArray(report.At({kResult})), kVornFontTestSeverityFatalError));
    return last;
  };
  FamilyBuilder family;
  family.kerning = {{0, 1}};
  SuitcaseBuilder suitcase;
  suitcase.Add("sfnt", 128, GoodFont().Build()).Add("sfnt", 129, Bytes(11)).Add("FOND", 128, family.Build());
  EXPECT_EQ(endsAt(suitcase, "FOND.128.id", 128), 1) << "an outline font without a directory";
  SuitcaseBuilder families;
  families.Add("FOND", 1, family.Build()).Add("FOND", 2, family.Build().Patch("kernOffset", 1000)).Add("FOND", 3, {});
  EXPECT_EQ(endsAt(families, "FOND.1.id", 1), 1) << "a family that cannot be asked for its kerning";
  EXPECT_EQ(endsAt(suitcase.Add("NFNT", 1, Bytes(26)), "NFNT.1.length", 1000), -1) << "half a bitmap";
}

class Consolidation : public testing::Test {
 protected:
  static Tova::MutableDictionary Font(TovaStringRef type, const char* name, const char* record, const char* severity) {
    auto font = Dictionary({{kVornFontTestFontTypeKey, type},
                            {kVornFontTestArrayKey, Array({Tova::MakeString(record).get()}).get()},
                            {kVornFontTestResultKey, Array({Tova::MakeString(severity).get()}).get()}});
    if (name) TovaDictionarySetValue(font.get(), kVornFontTestFontPostScriptNameKey, Tova::MakeString(name).get());
    return font;
  }
  /// The records and results of the fonts that are left.
  static std::string Fold(const std::vector<Tova::MutableDictionary>& fonts) {
    const auto list = Array({});
    for (const auto& font : fonts) TovaArrayAppendValue(list.get(), font.get());
    const auto tree = Dictionary({{kFonts, list.get()}});
    ConsolidateReport(tree.get());
    const Report report(TovaDictionaryCreateCopy(tree.get()));
    std::string text;
    for (int i = 0; i < report.Count({kFonts}); ++i) {
      text += Description(report.At({kFonts, i, kRecords})) + Description(report.At({kFonts, i, kResult})) + " ";
    }
    return text;
  }

  TovaStringRef trueType_ = kVornFontTestTrueTypeFontData, family_ = kVornFontTestFONDResource;
};

TEST_F(Consolidation, FontsOfTheSameNameFoldIntoTheTrueTypeOne) {
  EXPECT_EQ(Fold({Font(family_, "N", "b", "2"), Font(trueType_, "Z", "c", "1"), Font(trueType_, "N", "a", "1"),
                  Font(family_, "N", "c", "1"), Font(family_, nullptr, "b", "1")}),
            "{c}{1} {a, b, c}{1, 2} {b}{1} ");
  const auto first = Font(trueType_, "N", "a", "1"), second = Font(trueType_, "N", "b", "1");
  EXPECT_EQ(Fold({Font(family_, "M", "c", "1"), first, second}), "{c}{1} {a}{1} {b}{1} ") << "nothing folds or moves";
  EXPECT_EQ(Fold({Font(family_, "N", "c", "2"), first, second}), "{b, c}{1, 2} ")
      << "with a fold, the later of two of a name stays";
}

}  // namespace
