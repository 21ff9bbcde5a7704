#include <VornFontTest/VornFontTest.h>

#include <initializer_list>
#include <variant>

#include "Core/ReportConsolidation.h"
#include "support/MetadataBuilder.h"
#include "support/TemporaryFolder.h"
#include "support/TestRun.h"
#include "support/Values.h"

namespace {

using namespace test;

/// The values of a report, each under a path of keys and indexes.
class Report {
 public:
  explicit Report(TovaDictionaryRef report) : report_(Tova::Adopt(report)) {}
  TovaTypeRef At(std::initializer_list<std::variant<TovaStringRef, int>> path) const {
    TovaTypeRef value = report_.get();
    for (const auto& step : path) {
      value = step.index() == 0 ? TovaDictionaryGetValue(Tova::AsDictionary(value), std::get<0>(step))
                                : TovaArrayGetValueAtIndex(Tova::AsArray(value), std::get<1>(step));
    }
    return value;
  }
  std::string Text(std::initializer_list<std::variant<TovaStringRef, int>> path) const {
    return std::string(Tova::Text(Tova::AsString(At(path))));
  }
  TovaIndex Count(std::initializer_list<std::variant<TovaStringRef, int>> path) const {
    return TovaArrayGetCount(Tova::AsArray(At(path)));
  }
  TovaIndex Keys() const { return TovaDictionaryGetCount(report_.get()); }

 private:
  Tova::Dictionary report_;
};

class ReportCreation : public testing::Test {
 protected:
  Report Create(const Bytes& bytes, TovaDictionaryRef options = nullptr, const std::string& name = "font.ttf") {
    return CreateAt(folder_.Write(name, bytes), options);
  }
  static Report CreateAt(const std::string& path, TovaDictionaryRef options) {
    return Report(VornFontTestCreateReport(FileUrl(path).get(), options));
  }

  TemporaryFolder folder_;
  Tova::MutableDictionary full_ = Dictionary({{kVornFontTestCreateReportTypeKey, kVornFontTestReportTypeFull}});
  Tova::MutableDictionary summary_ = Dictionary({{kVornFontTestCreateReportTypeKey, kVornFontTestReportTypeSummary}});
};

constexpr auto& kResult = kVornFontTestResultKey;
constexpr auto& kFonts = kVornFontTestFontsTestedKey;
constexpr auto& kRecords = kVornFontTestArrayKey;

TEST_F(ReportCreation, WithoutOptionsThereAreTheSeveritiesOfTheUsabilityTestsAlone) {
  const Report report = Create(GoodFont().Table("name", NameTable({})).Build());
  EXPECT_EQ(report.Keys(), 1);
  EXPECT_TRUE(TovaArrayContainsValue(Tova::AsArray(report.At({kResult})), kVornFontTestSeverityFatalError))
      << "no PostScript name";
  const Tova::String other = Tova::MakeString("kVornFontTestReportTypeOther");
  EXPECT_EQ(Create(GoodFont().Build(), Dictionary({{kVornFontTestCreateReportTypeKey, other.get()}}).get()).Keys(), 1);
}

TEST_F(ReportCreation, AFullReportTellsOfFontsTestsAndMessages) {
  const Report report = Create(GoodFont().Remove("hmtx").Build(), full_.get());
  EXPECT_EQ(report.Text({kVornFontTestCreateReportTypeKey}), "kVornFontTestReportTypeFull");
  EXPECT_EQ(report.At({kVornFontTestForceTestExecutionKey}), kTovaBooleanFalse);
  EXPECT_EQ(report.At({kVornFontTestUseSandboxOptionKey}), kTovaBooleanFalse);
  EXPECT_EQ(report.Text({kFonts, 0, kVornFontTestFontNameKey}), "Good Regular");
  EXPECT_EQ(report.Text({kFonts, 0, kVornFontTestFontPostScriptNameKey}), "Good-Regular");
  EXPECT_EQ(report.Text({kFonts, 0, kVornFontTestFontIdentifierKey}), "1234ABCD|Good 1.0");
  EXPECT_EQ(report.Text({kFonts, 0, kVornFontTestFontTypeKey}), "kVornFontTestTrueTypeFontData");
  const Report summary = Create(GoodFont().Remove("hmtx").Build(), summary_.get());
  bool found = false;
  for (int i = 0; i < report.Count({kFonts, 0, kRecords}); ++i) {
    EXPECT_EQ(summary.At({kFonts, 0, kRecords, i, kVornFontTestMessagesKey}), nullptr);
    if (report.Text({kFonts, 0, kRecords, i, kVornFontTestIdentifierKey}) != "veltrin.TrueType.usability") continue;
    found = true;
    EXPECT_EQ(report.Text({kFonts, 0, kRecords, i, kVornFontTestNameKey}), "Required tables");
    EXPECT_EQ(summary.Text({kFonts, 0, kRecords, i, kVornFontTestNameKey}), "Required tables");
    EXPECT_EQ(TovaGetTypeID(report.At({kFonts, 0, kRecords, i, kVornFontTestTimeStampKey})), kTovaTypeDate);
    EXPECT_EQ(Description(report.At({kFonts, 0, kRecords, i, kVornFontTestMessagesKey, 0})),
              "{kVornFontTestResultKey: kVornFontTestSeverityFatalError, kVornFontTestMessageTextKey: sfnt: The font "
              "is missing a horizontal metrics ('htmx') table (required by the TrueType specification).}");
  }
  EXPECT_TRUE(found);
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
  const auto options = Dictionary({{kVornFontTestCreateReportTypeKey, kVornFontTestReportTypeSummary},
                                   {kVornFontTestArrayKey, tests.get()},
                                   {kVornFontTestForceTestExecutionKey, kTovaBooleanTrue}});
  const Report report = Create(GoodFont().Build(), options.get());
  EXPECT_EQ(report.Count({kFonts, 0, kRecords}), 2) << "unknown, inapplicable and malformed ones leave no record";
  EXPECT_EQ(report.Text({kFonts, 0, kRecords, 1, kVornFontTestTargetKey}), "kept");
  EXPECT_EQ(report.At({kVornFontTestForceTestExecutionKey}), kTovaBooleanTrue);

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
  EXPECT_EQ(report.At({kFonts, 1, kVornFontTestFontIdentifierKey}), nullptr);
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

class Consolidation : public testing::Test {
 protected:
  static Tova::MutableDictionary Font(TovaStringRef type, const char* name, TovaTypeRef record, TovaTypeRef severity) {
    auto font = Dictionary({{kVornFontTestFontTypeKey, type},
                            {kVornFontTestArrayKey, Array({record}).get()},
                            {kVornFontTestResultKey, Array({severity}).get()}});
    if (name) TovaDictionarySetValue(font.get(), kVornFontTestFontPostScriptNameKey, Tova::MakeString(name).get());
    return font;
  }
  static std::string Fold(const std::vector<Tova::MutableDictionary>& fonts) {
    const auto list = Array({});
    for (const auto& font : fonts) TovaArrayAppendValue(list.get(), font.get());
    const auto report = Dictionary({{kVornFontTestFontsTestedKey, list.get()}});
    ConsolidateReport(report.get());
    std::string text;
    const TovaArrayRef folded = Tova::AsArray(TovaDictionaryGetValue(report.get(), kVornFontTestFontsTestedKey));
    for (TovaIndex i = 0; i < TovaArrayGetCount(folded); ++i) {
      const TovaDictionaryRef font = Tova::AsDictionary(TovaArrayGetValueAtIndex(folded, i));
      text += Description(TovaDictionaryGetValue(font, kVornFontTestArrayKey));
      text += Description(TovaDictionaryGetValue(font, kVornFontTestResultKey)) + " ";
    }
    return text;
  }

  TovaStringRef trueType_ = kVornFontTestTrueTypeFontData;
  TovaStringRef family_ = kVornFontTestFONDResource;
  Tova::String a_ = Tova::MakeString("a"), b_ = Tova::MakeString("b"), c_ = Tova::MakeString("c");
  Tova::String mild_ = Tova::MakeString("1"), grave_ = Tova::MakeString("2");
};

TEST_F(Consolidation, FontsOfTheSameNameFoldIntoTheTrueTypeOne) {
  EXPECT_EQ(Fold({Font(family_, "N", b_.get(), grave_.get()), Font(trueType_, "Z", c_.get(), mild_.get()),
                  Font(trueType_, "N", a_.get(), mild_.get()), Font(family_, "N", c_.get(), mild_.get()),
                  Font(family_, nullptr, b_.get(), mild_.get())}),
            "{c}{1} {a, b, c}{1, 2} {b}{1} ");
}

TEST_F(Consolidation, WithoutAFoldNothingMoves) {
  const auto first = Font(trueType_, "N", a_.get(), mild_.get());
  const auto second = Font(trueType_, "N", b_.get(), mild_.get());
  EXPECT_EQ(Fold({first, second}), "{a}{1} {b}{1} ") << "two of a name stay two";
  EXPECT_EQ(Fold({Font(family_, "M", c_.get(), mild_.get()), first, second}), "{c}{1} {a}{1} {b}{1} ");
  EXPECT_EQ(Fold({Font(family_, "N", c_.get(), grave_.get()), first, second}), "{b, c}{1, 2} ")
      << "with a fold, the later of two of a name stays";
}

}  // namespace
