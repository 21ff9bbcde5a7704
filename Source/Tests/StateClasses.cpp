#include "Tests/StateClasses.h"

#include <algorithm>

namespace {

/// In the order of the report.
enum Rank : uint16_t {
  kClassTableBeyondTable = kRankClass,
  kClassAboveLast,
  kClassReserved,
  kClassDeleted,
  kClassWithoutGlyphs,
};

}  // namespace

StateClasses::StateClasses(const LayoutTable& iTable, uint64_t iOffset, StateMachine& ioMachine)
    : _fTable(iTable), _fReport(iTable.report), _fMachine(ioMachine), _fAt(ioMachine.start + iOffset) {}

void StateClasses::Read() {
  _fMachine.classes.resize(_fMachine.classCount);
  if (_fMachine.IsExtended()) {
    LookupChecker tChecker(_fTable, _fAt, _fMachine.limit, "class table");
    for (const LookupPiece& tPiece : tChecker.Check()) Take(tPiece.first, tPiece.last, tPiece.value);
  } else {
    ReadClassic();
  }
  Report();
}

void StateClasses::ReadClassic() {
  const uint32_t tFirst = _fTable.bytes.U16(_fAt);
  const uint64_t tCount = _fTable.bytes.U16(_fAt + 2);
  const uint64_t tLeft = _fTable.Left(_fAt);
  if (4 + tCount > tLeft) {
    _fReport.Report(kClassTableBeyondTable, Severity::kFatalError,
                    "The class table needs %lu bytes; only %lu are left in the table", {4 + tCount, tLeft}, {_fAt});
  }
  const uint64_t tHeld = std::min(tCount, tLeft < 4 ? 0 : tLeft - 4);
  _fReport.Spend(tHeld);
  for (uint32_t i = 0; i < tHeld; ++i) Take(tFirst + i, tFirst + i, _fTable.bytes.U8(_fAt + 4 + i));
}

void StateClasses::Take(uint32_t iFirst, uint32_t iLast, uint32_t iClass) {
  const LayoutWhere tWhere = {_fAt, iFirst};
  if (iClass >= _fMachine.classCount) {
    _fAboveLast.AddMany(iLast - iFirst + 1, {_fMachine.classCount - 1, iFirst, iClass}, tWhere);
    return;
  }
  if (iClass >= StateMachine::kFirstOwnClass) {
    StateMachine::ClassGlyphs& tGlyphs = _fMachine.classes[iClass];
    tGlyphs.lowest = tGlyphs.any ? std::min(tGlyphs.lowest, iFirst) : iFirst;
    tGlyphs.highest = std::max(tGlyphs.highest, iLast);
    tGlyphs.any = true;
    if (_fTable.IsBeyondFont(iLast)) {
      _fMachine.glyphsTaken.push_back({Tova::Wrap16(iFirst), Tova::Wrap16(iLast), 0});
    }
    return;
  }
  const uint32_t tEnd = std::min(iLast + 1, _fTable.glyphCount);
  const uint64_t tCount = tEnd > iFirst ? tEnd - iFirst : 0;
  if (iClass == StateMachine::kDeletedGlyphClass) _fDeleted.AddMany(tCount, {iFirst}, tWhere);
  if (iClass == StateMachine::kEndOfText || iClass == StateMachine::kEndOfLine) {
    _fReserved.AddMany(tCount, {iFirst, iClass}, tWhere);
  }
}

void StateClasses::Report() {
  _fReport.ReportCount(kClassAboveLast, Severity::kMajorError,
                       "%d glyphs have a class above the last one (%d); the first is glyph %d with class %d",
                       _fAboveLast);
  _fReport.ReportCount(
      kClassReserved, Severity::kMinorError,
      "%d glyphs have a class reserved for the end of text or line; the first is glyph %d with class %d", _fReserved);
  _fReport.ReportCount(kClassDeleted, Severity::kTechnicalError,
                       "%d glyphs have the class of deleted glyphs; the first is glyph %d", _fDeleted);
  _fMachine.usableClasses = {StateMachine::kOtherGlyph, StateMachine::kDeletedGlyphClass};
  for (uint32_t tClass = StateMachine::kFirstOwnClass; tClass < _fMachine.classCount; ++tClass) {
    if (_fMachine.classes[tClass].any) {
      _fMachine.usableClasses.push_back(tClass);
    } else {
      _fReport.Report(kClassWithoutGlyphs, Severity::kInformation, "Class %d has no glyphs", {tClass}, {_fAt});
    }
  }
}
