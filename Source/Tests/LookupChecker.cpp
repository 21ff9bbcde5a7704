#include "Tests/LookupChecker.h"

#include <algorithm>
#include <utility>

namespace {

/// In the order of the report.
enum Rank : uint16_t {
  kStart = kRankLookup,
  kFormat,
  kValueSize,
  kUnitSizeTooSmall,
  kUnitSizeOther,
  kNeed,
  kEndsBeyondSubtable,
  kSearchRange,
  kEntrySelector,
  kRangeShift,
  kMarkerCounted,
  kMarkerMissing,
  kReversedUnits,
  kUnitsOutOfOrder,
  kSmallValueOffsets,
  kArraysBeyondTable,
  kGlyphsBeyond65535,
  kGlyphsBeyondFont,
};

constexpr uint64_t kUnits = FTLookupSearch::kUnits;

uint64_t CountGlyphs(uint64_t iFirst, uint64_t iEnd) { return iEnd > iFirst ? iEnd - iFirst : 0; }

}  // namespace

LookupChecker::LookupChecker(const LayoutTable& iTable, uint64_t iAt, uint64_t iLimit, std::string iWhat)
    : _fTable(iTable),
      _fAt(iAt),
      _fLimit(iLimit),
      _fWhat(std::move(iWhat)),
      _fBytes(iTable.bytes.From(iAt)),
      _fHeader(_fBytes) {}

LookupPieces LookupChecker::Check() {
  LayoutReport& tReport = _fTable.report;
  if (!_fBytes.Holds(0, 2)) {
    tReport.Report(kStart, Severity::kFatalError, "The %@ at 0x%08lX starts beyond the end of the table",
                   {_fWhat, _fAt}, {_fAt});
    return {};
  }
  switch (_fHeader.format) {
    case 0:
      CheckWholeArray();
      break;
    case 2:
    case 4:
    case 6:
      CheckUnits();
      break;
    case 8:
      CheckTrimmedArray(2, 2);
      break;
    case 10:
      switch (const uint16_t tValueSize = _fBytes.U16(2)) {
        case 1:
        case 2:
        case 4:
        case 8:
          CheckTrimmedArray(4, tValueSize);
          break;
        default:
          tReport.Report(kValueSize, Severity::kMajorError, "The %@ has the value size %d", {_fWhat, tValueSize},
                         {_fAt});
      }
      break;
    default:
      tReport.Report(kFormat, Severity::kMajorError, "The %@ has the unknown lookup format %d",
                     {_fWhat, _fHeader.format}, {_fAt});
  }
  ReportGlyphsBeyondFont();
  return std::move(_fPieces);
}

/// Format 0: a value for each glyph. Where the number of glyphs is not known, the array fills its subtable.
void LookupChecker::CheckWholeArray() {
  uint64_t tCount = _fTable.glyphCount;
  if (tCount == 0) {
    const uint64_t tEnd = std::min(_fLimit, _fTable.Size());
    tCount = tEnd > _fAt + 2 ? std::min<uint64_t>((tEnd - _fAt - 2) / 2, 65536) : 0;
  } else {
    CheckNeed(2 + 2 * tCount);
  }
  AddArray(0, 2, tCount, 2);
}

/// Formats 8 and 10: a value for each of some consecutive glyphs.
void LookupChecker::CheckTrimmedArray(uint64_t iFirstField, uint64_t iValueSize) {
  const uint32_t tFirst = _fBytes.U16(iFirstField);
  const uint64_t tCount = _fBytes.U16(iFirstField + 2);
  const uint64_t tValues = iFirstField + 4;
  CheckNeed(tValues + iValueSize * tCount);
  AddArray(tFirst, tValues, tCount, iValueSize);
  if (tFirst + tCount > 65536) {
    _fTable.report.Report(kGlyphsBeyond65535, Severity::kMajorError, "The %@ covers glyphs beyond 65535", {_fWhat},
                          {_fAt});
  }
}

void LookupChecker::AddArray(uint32_t iFirst, uint64_t iAt, uint64_t iCount, uint64_t iValueSize) {
  const uint64_t tHeld = _fBytes.Size() > iAt ? std::min(iCount, (_fBytes.Size() - iAt) / iValueSize) : 0;
  _fTable.report.Spend(tHeld);
  for (uint64_t i = 0; i < tHeld && iFirst + i < kDeletedGlyph; ++i) {
    const uint16_t tGlyph = Tova::Wrap16(iFirst + i);
    _fPieces.push_back({tGlyph, tGlyph, Tova::Wrap16(ReadValue(iAt + i * iValueSize, iValueSize))});
  }
}

uint64_t LookupChecker::ReadValue(uint64_t iAt, uint64_t iSize) const {
  return iSize == 1 ? _fBytes.U8(iAt) : _fBytes.U16(iAt + iSize - 2);
}

bool LookupChecker::CheckNeed(uint64_t iNeed) {
  const uint64_t tLeft = _fBytes.Size();
  if (iNeed > tLeft) {
    _fTable.report.Report(kNeed, Severity::kFatalError, "The %@ needs %lu bytes; only %lu are left in the table",
                          {_fWhat, iNeed, tLeft}, {_fAt});
    return false;
  }
  if (_fAt < _fLimit && _fLimit < _fAt + iNeed) {
    _fTable.report.Report(kEndsBeyondSubtable, Severity::kTechnicalError, "The %@ ends %lu bytes beyond its subtable",
                          {_fWhat, _fAt + iNeed - _fLimit}, {_fAt});
  }
  return true;
}

/// Formats 2, 4 and 6: units that are searched by halving.
void LookupChecker::CheckUnits() {
  if (!CheckUnitSize()) return;
  const bool tWhole = CheckNeed(kUnits + uint64_t{_fHeader.unitSize} * _fHeader.unitCount);
  CheckSearchHeader();
  _fUnitCount = _fHeader.unitCount;
  if (tWhole) _fUnitCount = CountUnitsWithoutMarker();
  const uint64_t tRoom = _fBytes.Size() > kUnits ? _fBytes.Size() - kUnits : 0;
  const uint64_t tHeld = std::min(_fUnitCount, tRoom / _fHeader.unitSize);
  _fTable.report.Spend(tHeld);
  int64_t tHighest = -1;  // the last glyph of the units so far
  for (uint64_t i = 0; i < tHeld; ++i) {
    const uint64_t tUnitAt = kUnits + i * _fHeader.unitSize;
    const uint32_t tLast = _fBytes.U16(tUnitAt);
    const uint32_t tFirst = _fHeader.format == 6 ? tLast : _fBytes.U16(tUnitAt + 2);
    if (tFirst > tLast) {
      _fReversed.Add({i, tFirst, tLast}, {_fAt + tUnitAt});
      continue;
    }
    if (tFirst <= tHighest) _fOutOfOrder.Add({i, tFirst, tLast}, {_fAt + tUnitAt});
    const auto tNew = static_cast<uint32_t>(std::max<int64_t>(tFirst, tHighest + 1));
    tHighest = std::max<int64_t>(tHighest, tLast);
    const uint32_t tLastWithValue = std::min(tLast, kDeletedGlyph - 1);
    if (tNew > tLastWithValue) continue;
    if (_fHeader.format == 4) {
      CheckSegmentArray({i, tFirst, tLast, tUnitAt}, tNew);
    } else {
      const uint16_t tValue = _fBytes.U16(tUnitAt + (_fHeader.format == 6 ? 2 : 4));
      _fPieces.push_back({Tova::Wrap16(tNew), Tova::Wrap16(tLastWithValue), tValue});
    }
  }
  ReportUnits();
}

bool LookupChecker::CheckUnitSize() {
  const uint16_t tRight = _fHeader.format == 6 ? 4 : 6;
  if (_fHeader.unitCount == 0) _fHeader.unitSize = tRight;
  const uint16_t tUnitSize = _fHeader.unitSize;
  if (tUnitSize < tRight) {
    _fTable.report.Report(kUnitSizeTooSmall, Severity::kMajorError,
                          "The %@ has the unit size %d; it should be at least %d", {_fWhat, tUnitSize, tRight}, {_fAt});
  } else if (tUnitSize > tRight) {
    _fTable.report.Report(kUnitSizeOther, Severity::kTechnicalError, "The %@ has the unit size %d; it should be %d",
                          {_fWhat, tUnitSize, tRight}, {_fAt});
  }
  return tUnitSize >= tRight;
}

void LookupChecker::CheckSearchHeader() {
  if (_fHeader.unitCount == 0) return;
  const FTLookupSearch::Words tRight(_fHeader.unitSize, _fHeader.unitCount);
  const auto tCheck = [this](uint16_t iRank, const char* iFormat, uint16_t iValue, uint16_t iRight) {
    if (iValue == iRight) return;
    _fTable.report.Report(iRank, Severity::kTechnicalError, iFormat, {_fWhat, iValue, iRight}, {_fAt});
  };
  tCheck(kSearchRange, "The %@ has the search range %d; it should be %d", _fHeader.searchRange, tRight.searchRange);
  tCheck(kEntrySelector, "The %@ has the entry selector %d; it should be %d", _fHeader.entrySelector,
         tRight.entrySelector);
  tCheck(kRangeShift, "The %@ has the range shift %d; it should be %d", _fHeader.rangeShift, tRight.rangeShift);
}

uint64_t LookupChecker::CountUnitsWithoutMarker() {
  const uint64_t tCount = _fHeader.unitCount;
  if (tCount != 0 && IsMarker(tCount - 1)) {
    _fTable.report.Report(kMarkerCounted, Severity::kInformation, "The %@ counts its end marker as a unit", {_fWhat},
                          {_fAt});
    return tCount - 1;
  }
  if (!IsMarker(tCount)) {
    _fTable.report.Report(kMarkerMissing, Severity::kTechnicalError, "The %@ has no end marker", {_fWhat}, {_fAt});
  }
  return tCount;
}

bool LookupChecker::IsMarker(uint64_t iUnit) const {
  const uint64_t tUnitAt = kUnits + iUnit * _fHeader.unitSize;
  return _fBytes.U16(tUnitAt) == kDeletedGlyph && (_fHeader.format == 6 || _fBytes.U16(tUnitAt + 2) == kDeletedGlyph);
}

/// Format 4: a unit with an array of values, from iFirst on the glyphs that no earlier unit has.
void LookupChecker::CheckSegmentArray(const Unit& iUnit, uint32_t iFirst) {
  const uint16_t tOffset = _fBytes.U16(iUnit.at + 4);
  if (tOffset < kUnits + _fHeader.unitSize * _fUnitCount) {
    _fSmallOffsets.Add({iUnit.index, tOffset}, {_fAt + iUnit.at});
    return;
  }
  if (!_fBytes.Holds(tOffset, 2 * uint64_t{iUnit.last - iUnit.first + 1})) {
    _fArraysBeyondTable.Add({iUnit.index, tOffset}, {_fAt + iUnit.at});
  }
  const uint64_t tValue = tOffset + 2 * uint64_t{iFirst - iUnit.first};
  const uint64_t tWithValue = CountGlyphs(iFirst, std::min(iUnit.last + 1, kDeletedGlyph));
  AddArray(iFirst, tValue, tWithValue, 2);
}

void LookupChecker::ReportUnits() {
  const auto tReport = [this](uint16_t iRank, Severity iSeverity, const char* iFormat, const LayoutTally& iTally) {
    _fTable.report.ReportCount(iRank, iSeverity, iFormat, iTally, &_fWhat);
  };
  tReport(kReversedUnits, Severity::kTechnicalError,
          "The %@ has %d units whose first glyph follows the last; the first is unit %d (%d-%d)", _fReversed);
  tReport(kUnitsOutOfOrder, Severity::kMajorError,
          "The %@ has %d units out of order; the first is unit %d (glyphs %d to %d)", _fOutOfOrder);
  tReport(kSmallValueOffsets, Severity::kMajorError,
          "The %@ has %d value offsets that are too small; the first is in unit %d (0x%04X)", _fSmallOffsets);
  tReport(kArraysBeyondTable, Severity::kFatalError,
          "The %@ has %d value arrays beyond the end of the table; the first is in unit %d (0x%04X)",
          _fArraysBeyondTable);
}

void LookupChecker::ReportGlyphsBeyondFont() {
  if (_fTable.glyphCount == 0 || !_fTable.judgesLookupGlyphs) return;
  LayoutTally tBeyond;
  for (const LookupPiece& tPiece : _fPieces) {
    const uint32_t tFirst = std::max<uint32_t>(tPiece.first, _fTable.glyphCount);
    tBeyond.AddMany(CountGlyphs(tFirst, tPiece.last + 1u), {tFirst}, {_fAt, tFirst});
  }
  _fTable.report.ReportCount(kGlyphsBeyondFont, Severity::kMinorError,
                             "The %@ has values for %d glyphs that the font does not have; the first is %d", tBeyond,
                             &_fWhat);
}
