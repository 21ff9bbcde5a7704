#include "Tests/VornFontTester.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/FTLimits.h"

namespace {

constexpr const char* kFile = "Tests/VornFontTester";

void Require(bool iHolds, const char* iFailure, uint32_t iLine) {
  if (!iHolds) throw FTException(iFailure, kVornFTParamErr, kFile, iLine);
}

}  // namespace

VornFontTester::VornFontTester(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions)
    : _fFont(iFont), _fMessages(Tova::Share(iMessages)), _fOptions(Tova::Share(iOptions)) {
  Require(_fFont, "_fFont == NULL", 174);
  Require(iOptions, "_fOptions == NULL", 175);
}

VornFontTester::VornFontTester(const VornFontTester& iOther)
    : _fFont(iOther._fFont), _fMessages(iOther._fMessages), _fOptions(iOther._fOptions) {
  Require(_fFont, "_fFont == NULL", 189);
  Require(_fOptions.get(), "_fOptions == NULL", 190);
}

Tova::Array VornFontTester::CreateTestResults() {
  Require(_fFont, "_fFont == NULL", 226);
  Require(_fOptions.get(), "_fOptions == NULL", 227);
  Require(!_fResults, "_fResults != NULL", 228);

  _fResults = Tova::Adopt(TovaArrayCreateMutable());
  bool tApplies = true;
  try {
    tApplies = ExecuteTest();
  } catch (const FTException& tException) {
    AppendResultAndMessage(kVornFontTestSeverityFatalError, tException.GetUIMessageString());
  } catch (...) {
    _fResults = {};
    throw;
  }
  const Tova::MutableArray tResults = std::exchange(_fResults, {});
  return tApplies ? Tova::Array(tResults) : Tova::Array();
}

const FTFontTable* VornFontTester::TestsTableWithTag(uint32_t) const { return nullptr; }

void VornFontTester::ReportResult(TovaStringRef iSeverity, const char* iFormat, Arguments iArguments) const {
  ReportResultFromTable(GetStringTableName(), iSeverity, iFormat, iArguments);
}

void VornFontTester::ReportResultFromTable(const char* iTable, TovaStringRef iSeverity, const char* iFormat,
                                           Arguments iArguments) const {
  if (!_fMessages || TovaArrayGetCount(_fMessages.get()) >= kFTMaxMessagesOfTest) {
    AppendResult(iSeverity);
    return;
  }
  const Tova::String tKey = Tova::MakeString(iFormat);
  const Tova::String tTable = iTable ? Tova::MakeString(iTable) : Tova::String();
  const Tova::String tFormat =
      Tova::Adopt(TovaBundleCopyLocalizedString(TovaBundleGetMain(), tKey.get(), tKey.get(), tTable.get()));
  Tova::String tText = Tova::Format(tFormat.get(), iArguments);
  if (tText && GetStringTableName()) tText = Tova::Format("%s: %@", {GetStringTableName(), tText});
  AppendResultAndMessage(iSeverity, tText.get());
}

bool VornFontTester::ExecuteTestsWithSeverity(TovaStringRef iSeverity) const {
  const TovaTypeRef tSeverities = TovaDictionaryGetValue(_fOptions.get(), kVornFontTestSeverityKey);
  return TovaArrayContainsValue(Tova::AsArray(tSeverities), iSeverity);
}

uint32_t VornFontTester::FirstBit(uint32_t iMask) const {
  return iMask == 0 ? 0xFFFFFFFF : static_cast<uint32_t>(std::bit_width(iMask) - 1);
}

uint64_t VornFontTester::NextOffset(const std::vector<uint64_t>& iSortedOffsets, uint64_t iCurrent) const {
  const auto tNext = std::ranges::upper_bound(iSortedOffsets, iCurrent);
  return tNext == iSortedOffsets.end() ? 0 : *tNext;
}

void VornFontTester::SortTableOffsets(std::vector<uint64_t>& ioOffsets) const { std::ranges::sort(ioOffsets); }

void VornFontTester::AddOffsetToCollection(std::vector<uint16_t>& ioCollection, uint16_t iOffset) const {
  const auto tPlace = std::ranges::lower_bound(ioCollection, iOffset);
  if (tPlace == ioCollection.end() || *tPlace != iOffset) ioCollection.insert(tPlace, iOffset);
}

void VornFontTester::AppendResult(TovaStringRef iSeverity) const {
  if (_fResults && iSeverity && !TovaArrayContainsValue(_fResults.get(), iSeverity)) {
    TovaArrayAppendValue(_fResults.get(), iSeverity);
  }
}

void VornFontTester::AppendMessage(TovaStringRef iSeverity, TovaStringRef iText) const {
  if (!_fMessages || !iText) return;
  const Tova::MutableDictionary tMessage = Tova::Adopt(TovaDictionaryCreateMutable());
  TovaDictionarySetValue(tMessage.get(), kVornFontTestResultKey, iSeverity);
  TovaDictionarySetValue(tMessage.get(), kVornFontTestMessageTextKey, iText);
  TovaArrayAppendValue(_fMessages.get(), tMessage.get());
}

void VornFontTester::AppendResultAndMessage(TovaStringRef iSeverity, TovaStringRef iText) const {
  AppendResult(iSeverity);
  AppendMessage(iSeverity, iText);
}
