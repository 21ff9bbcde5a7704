#include "Core/ReportCreation.h"

#include <VornFontTest/VornFontTest.h>

#include <memory>
#include <new>
#include <utility>

#include "Core/LinkTable.h"
#include "Core/ReportConsolidation.h"
#include "Core/ReportTree.h"
#include "Core/TestCatalogue.h"
#include "Core/TestHooks.h"
#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/ContainerClasses/FTFontContainer.h"

namespace {

ReportLevel ReportLevelOf(TovaDictionaryRef iOptions) {
  const TovaTypeRef tType = TovaDictionaryGetValue(iOptions, kVornFontTestCreateReportTypeKey);
  if (TovaEqual(tType, kVornFontTestReportTypeSummary)) return ReportLevel::kSummary;
  if (TovaEqual(tType, kVornFontTestReportTypeFull)) return ReportLevel::kFull;
  return ReportLevel::kResultsOnly;
}

TovaStringRef ReportTypeOf(ReportLevel iLevel) {
  switch (iLevel) {
    case ReportLevel::kSummary:
      return kVornFontTestReportTypeSummary;
    case ReportLevel::kFull:
      return kVornFontTestReportTypeFull;
    case ReportLevel::kResultsOnly:
      break;
  }
  return kVornFontTestReportTypeResultsOnly;
}

ReportTree::Options TreeOptionsOf(TovaDictionaryRef iOptions) {
  const TovaTypeRef tLimit = TovaDictionaryGetValue(iOptions, kVornFontTestMessageLimitOptionKey);
  const int64_t tMessages = TovaNumberGetInteger(Tova::AsNumber(tLimit));
  return {.level = ReportLevelOf(iOptions),
          .messageDetails = GetBoolOption(false, kVornFontTestMessageDetailsOptionKey, iOptions),
          .untranslated = GetBoolOption(false, kVornFontTestUntranslatedOptionKey, iOptions),
          .messageLimit = tMessages > 0 ? static_cast<uint64_t>(tMessages) : 0};
}

TestOptions TestOptionsOf(TovaDictionaryRef iOptions) {
  TestOptions tOptions;
  tOptions.skipDuplicateFontTest = GetBoolOption(false, kVornFontTestSkipDuplicateFontTestOptionKey, iOptions);
  const TovaArrayRef tSeverities = Tova::AsArray(TovaDictionaryGetValue(iOptions, kVornFontTestSeverityKey));
  for (TovaIndex i = 0; i < TovaArrayGetCount(tSeverities); ++i) {
    const auto tSeverity = SeverityOf(TovaArrayGetValueAtIndex(tSeverities, i));
    if (tSeverity) tOptions.severities.Add(*tSeverity);
  }
  return tOptions;
}

/// The identifier, none when the font has none or throws.
TovaStringRef IdentifierOf(const FTFont& iFont) {
  try {
    return iFont.GetIdentifier();
  } catch (const FTException&) {
    return nullptr;
  }
}

TovaArrayRef GetDefaultSeverities() {
  static const Tova::Array gDefaultSeverities = Tova::MakeArray({kVornFontTestSeverityFatalError});
  return gDefaultSeverities.get();
}

/// One report in the making.
class ReportRun {
 public:
  ReportRun(TovaURLRef iURL, TovaDictionaryRef iOptions)
      : _fURL(iURL),
        _fOptions(Tova::Adopt(iOptions ? TovaDictionaryCreateMutableCopy(iOptions) : TovaDictionaryCreateMutable())),
        _fUseSandbox(GetBoolOption(false, kVornFontTestUseSandboxOptionKey, iOptions)),
        _fTree(TreeOptionsOf(iOptions)),
        _fForced(GetBoolOption(false, kVornFontTestForceTestExecutionKey, iOptions)) {
    AddDefaultOptions();
    _fTestOptions = TestOptionsOf(_fOptions.get());
  }

  /// Opens the file and tests its fonts, up to the first failure or the end of the budget for work.
  void TestFonts();
  /// Records what ended the run before its time; the text shows in full reports.
  void RecordFailure(TovaStringRef iMessage);
  /// The report.
  Tova::Dictionary Finish();

  bool WantsMessages() const { return _fTree.HasMessages(); }

 private:
  void AddDefaultOptions();
  void TestFont(const FTFont& iFont);
  /// The records of one test: none when it did not apply.
  Tova::Array RunTest(const FTFont& iFont, TovaDictionaryRef iDescription);
  Tova::Dictionary MakeRecord(const FTFont& iFont, TovaDictionaryRef iDescription, const VornFontTestLink& iTest);

  TovaURLRef _fURL;
  Tova::MutableDictionary _fOptions;
  bool _fUseSandbox;
  ReportTree _fTree;
  bool _fForced;
  TestOptions _fTestOptions;
  std::unique_ptr<FTFontContainer> _fContainer;
  const FTFont* _fLastFont = nullptr;
  Tova::MutableArray _fResults = Tova::Adopt(TovaArrayCreateMutable());
  Tova::MutableArray _fFontsTested = Tova::Adopt(TovaArrayCreateMutable());
};

void ReportRun::AddDefaultOptions() {
  if (!TovaDictionaryGetValue(_fOptions.get(), kVornFontTestArrayKey)) {
    TovaDictionaryAddValue(_fOptions.get(), kVornFontTestArrayKey,
                           Tova::Adopt(VornFontTestCopyAvailableTests(nullptr)).get());
  }
  TovaDictionaryAddValue(_fOptions.get(), kVornFontTestSeverityKey, GetDefaultSeverities());
  TovaDictionaryAddValue(_fOptions.get(), kVornFontTestUseSandboxOptionKey, kTovaBooleanFalse);
  TovaDictionaryAddValue(_fOptions.get(), kVornFontTestCreateReportTypeKey, kVornFontTestReportTypeResultsOnly);
  // quirk: forced. Tests see themselves forced unless the caller says otherwise, while the run itself asks the cache.
  TovaDictionaryAddValue(_fOptions.get(), kVornFontTestForceTestExecutionKey, kTovaBooleanTrue);
}

void ReportRun::TestFonts() {
  _fContainer = FTFontContainer::FontContainerFromTovaURLRef(_fURL, true);
  if (!_fContainer) throw FTException("tFontContainer == NULL", kVornFTInvalidFileTypeErr, "Core/VornFontTest", 723);
  _fTree.SetFileSize(_fContainer->GetDataLength());
  for (uint64_t i = 0; i < _fContainer->GetFontCount(); ++i) {
    _fLastFont = _fContainer->GetIndFont(i);
    if (!_fTree.HasRoomForFont()) {
      RecordFailure(Tova::Format("The report is full after %lu fonts; the others were not examined", {i}).get());
      return;
    }
    _fLastFont->TestBasicUsability();
    TestFont(*_fLastFont);
    _fContainer->GetWorkBudget().RequireMore();
    _fLastFont->ForgetTables();
  }
}

void ReportRun::TestFont(const FTFont& iFont) {
  const auto tRecords = Tova::Adopt(TovaArrayCreateMutable());
  const auto tResults = Tova::Adopt(TovaArrayCreateMutable());
  const auto tFontData = _fTree.MakeFont(iFont);

  const TovaArrayRef tTests = Tova::AsArray(TovaDictionaryGetValue(_fOptions.get(), kVornFontTestArrayKey));
  for (TovaIndex i = 0; i < TovaArrayGetCount(tTests); ++i) {
    const TovaDictionaryRef tDescription = Tova::AsDictionary(TovaArrayGetValueAtIndex(tTests, i));
    const uint64_t tToken = SetupTests();
    const Tova::Array tTestRecords = RunTest(iFont, tDescription);
    CompleteTests(tToken);
    if (_fTree.HasFonts()) {
      TovaArrayAppendArray(tRecords.get(), tTestRecords.get());
      MergeTestResults(tResults.get(), tTestRecords.get());
    }
    MergeTestResults(_fResults.get(), tTestRecords.get());
    if (iFont.GetWorkBudget().HasEnded()) break;
  }

  if (_fTree.HasFonts()) {
    TovaDictionarySetValue(tFontData.get(), kVornFontTestResultKey, tResults.get());
    TovaDictionarySetValue(tFontData.get(), kVornFontTestArrayKey, tRecords.get());
    TovaArrayAppendValue(_fFontsTested.get(), tFontData.get());
  }
}

Tova::Array ReportRun::RunTest(const FTFont& iFont, TovaDictionaryRef iDescription) {
  const auto tRecords = Tova::Adopt(TovaArrayCreateMutable());
  const TovaStringRef tIdentifier = Tova::AsString(TovaDictionaryGetValue(iDescription, kVornFontTestIdentifierKey));
  const VornFontTestLink* tTest = FindTestLink(Tova::Text(tIdentifier));
  Tova::Dictionary tRecord;
  if (!_fForced) tRecord = GetCachedTestResults(_fOptions.get(), IdentifierOf(iFont), iDescription);
  if (!tRecord && tTest) tRecord = MakeRecord(iFont, iDescription, *tTest);
  TovaArrayAppendValue(tRecords.get(), tRecord.get());
  return tRecords;
}

Tova::Dictionary ReportRun::MakeRecord(const FTFont& iFont, TovaDictionaryRef iDescription,
                                       const VornFontTestLink& iTest) {
  const TovaAbsoluteTime tTime = TovaAbsoluteTimeGetCurrent();
  FindingSink tSink = _fTree.MakeSink();
  if (!iTest.entry(&iFont, tSink, &_fTestOptions)) return {};
  Tova::Dictionary tRecord = _fTree.MakeRecord(iFont, iDescription, tTime, tSink);
  if (_fTree.HasFonts() && !_fForced) {
    AddResultToCache(tRecord.get(), _fOptions.get(), IdentifierOf(iFont), iDescription);
  }
  return tRecord;
}

void ReportRun::RecordFailure(TovaStringRef iMessage) {
  const Tova::Array tRecords = GenerateDummyTestResults(WantsMessages() ? iMessage : nullptr);
  if (_fTree.HasFonts() && _fLastFont) {
    const auto tFontData = _fTree.MakeFont(*_fLastFont);
    const TovaDictionaryRef tRecord = Tova::AsDictionary(TovaArrayGetValueAtIndex(tRecords.get(), 0));
    TovaDictionarySetValue(tFontData.get(), kVornFontTestResultKey,
                           TovaDictionaryGetValue(tRecord, kVornFontTestResultKey));
    TovaDictionarySetValue(tFontData.get(), kVornFontTestArrayKey, tRecords.get());
    TovaArrayAppendValue(_fFontsTested.get(), tFontData.get());
  }
  MergeTestResults(_fResults.get(), tRecords.get());
}

Tova::Dictionary ReportRun::Finish() {
  const auto tReport = Tova::Adopt(TovaDictionaryCreateMutable());
  if (_fTree.HasFonts()) {
    TovaDictionarySetValue(tReport.get(), kVornFontTestFontsTestedKey, _fFontsTested.get());
    TovaDictionarySetValue(tReport.get(), kVornFontTestUseSandboxOptionKey, Tova::Boolean(_fUseSandbox));
    TovaDictionarySetValue(tReport.get(), kVornFontTestCreateReportTypeKey, ReportTypeOf(_fTree.Level()));
    TovaDictionarySetValue(tReport.get(), kVornFontTestForceTestExecutionKey, Tova::Boolean(_fForced));
  }
  TovaDictionarySetValue(tReport.get(), kVornFontTestResultKey, _fResults.get());
  ConsolidateReport(tReport.get());
  return tReport;
}

/// Makes the report. A lack of memory is no fault of the font: it goes through.
Tova::Dictionary RunReport(TovaURLRef iURL, TovaDictionaryRef iOptions) {
  ReportRun tRun(iURL, iOptions);
  try {
    tRun.TestFonts();
  } catch (const FTException& tException) {
    tRun.RecordFailure(tRun.WantsMessages() ? tException.GetUIMessageString() : nullptr);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    tRun.RecordFailure(Tova::MakeString("An error occurred").get());
  }
  return tRun.Finish();
}

}  // namespace

Tova::Dictionary CreateReport(TovaURLRef iURL, TovaDictionaryRef iOptions) {
  const uint64_t tToken = SetupTests();
  Tova::Dictionary tReport = RunReport(iURL, iOptions);
  CompleteTests(tToken);
  return tReport;
}

bool GetBoolOption(bool iDefault, TovaStringRef iKey, TovaDictionaryRef iOptions) {
  const TovaBooleanRef tValue = Tova::AsBoolean(TovaDictionaryGetValue(iOptions, iKey));
  return tValue ? TovaBooleanGetValue(tValue) : iDefault;
}

void MergeTestResults(TovaMutableArrayRef ioTarget, TovaArrayRef iRecords) {
  for (TovaIndex i = 0; i < TovaArrayGetCount(iRecords); ++i) {
    const TovaDictionaryRef tRecord = Tova::AsDictionary(TovaArrayGetValueAtIndex(iRecords, i));
    MergeSeverities(ioTarget, Tova::AsArray(TovaDictionaryGetValue(tRecord, kVornFontTestResultKey)));
  }
}
