#include "Tests/VornFontTester.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "TableAccess/AncillaryClasses/FTException.h"

namespace {

constexpr const char* kFile = "Tests/VornFontTester";

void Require(bool iHolds, const char* iFailure, uint32_t iLine) {
  if (!iHolds) throw FTException(iFailure, kVornFTParamErr, kFile, iLine);
}

}  // namespace

VornFontTester::VornFontTester(const FTFont* iFont, FindingSink& ioSink, const TestOptions* iOptions)
    : _fFont(iFont), _fSink(ioSink), _fOptions(iOptions) {
  Require(_fFont, "_fFont == NULL", 174);
  Require(_fOptions, "_fOptions == NULL", 175);
}

bool VornFontTester::CreateTestResults() {
  Require(!_fRunning, "_fResults != NULL", 228);
  _fRunning = true;
  _fExceptions = std::uncaught_exceptions();
  bool tApplies = true;
  try {
    tApplies = ExecuteTest();
  } catch (const FTException& tException) {
    ReportException(tException);
  } catch (...) {
    _fRunning = false;
    throw;
  }
  _fRunning = false;
  return tApplies;
}

void VornFontTester::ReportResult(Severity iSeverity, const char* iFormat, Arguments iArguments) const {
  ReportResultFromTable(GetStringTableName(), iSeverity, iFormat, iArguments);
}

void VornFontTester::ReportResultFromTable(const char* iTable, Severity iSeverity, const char* iFormat,
                                           Arguments iArguments) const {
  _fSink.AppendResult(iSeverity);
  _fSink.AppendMessage(iSeverity, GetStringTableName(), iTable, iFormat, {iArguments.begin(), iArguments.size()},
                       _fPlace);
}

void VornFontTester::ReportAt(Severity iSeverity, const char* iFormat,
                              std::span<const Tova::FormatArgument> iArguments) const {
  _fSink.AppendResult(iSeverity);
  _fSink.AppendMessage(iSeverity, GetStringTableName(), GetStringTableName(), iFormat, iArguments, _fPlace, true);
}

void VornFontTester::ReportException(const FTException& iException) const {
  const Tova::FormatArgument tText(iException.GetUIMessageString());
  _fSink.AppendResult(Severity::kFatalError);
  _fSink.AppendMessage(Severity::kFatalError, nullptr, nullptr, "%@", {&tText, 1}, _fFailurePlace);
}

uint32_t VornFontTester::FirstBit(uint32_t iMask) {
  return iMask == 0 ? 0xFFFFFFFF : static_cast<uint32_t>(std::bit_width(iMask) - 1);
}

uint64_t VornFontTester::NextOffset(const std::vector<uint64_t>& iSortedOffsets, uint64_t iCurrent) {
  const auto tNext = std::ranges::upper_bound(iSortedOffsets, iCurrent);
  return tNext == iSortedOffsets.end() ? 0 : *tNext;
}

void VornFontTester::SortTableOffsets(std::vector<uint64_t>& ioOffsets) { std::ranges::sort(ioOffsets); }

void VornFontTester::AddOffsetToCollection(std::vector<uint16_t>& ioCollection, uint16_t iOffset) {
  const auto tPlace = std::ranges::lower_bound(ioCollection, iOffset);
  if (tPlace == ioCollection.end() || *tPlace != iOffset) ioCollection.insert(tPlace, iOffset);
}

void VornFontTester::NoteFailure() const {
  if (!_fFails) _fFailurePlace = _fPlace;
  _fFails = true;
}
