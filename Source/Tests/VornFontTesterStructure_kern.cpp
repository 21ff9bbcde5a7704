#include "Tests/VornFontTesterStructure_kern.h"

#include <algorithm>

#include "Tests/StateMachine.h"
#include "Tests/VornFontTesterStructure_kern_Rank.h"

namespace {

// Coverage bits of version 0.
constexpr uint16_t kHorizontal0 = 0x0001;
constexpr uint16_t kCrossStream0 = 0x0004;
constexpr uint16_t kReserved0 = 0x00F0;
// Coverage bits of version 1.0.
constexpr uint16_t kCrossStream1 = 0x4000;
constexpr uint16_t kVariation1 = 0x2000;
constexpr uint16_t kReserved1 = 0x1F00;

constexpr uint64_t kPairSize = FTFontTable_kern::kPairSize;
constexpr uint64_t kPairsHeaderSize = FTFontTable_kern::kPairsHeaderSize;

}  // namespace

bool VornFontTesterStructure_kern::Subtable::IsCrossStream() const {
  return (fields.coverage & (isVersion1 ? kCrossStream1 : kCrossStream0)) != 0;
}

void VornFontTesterStructure_kern::Examine(const FTFontTable_kern& iTable, const LayoutTable& iBytes) const {
  if (!HasSize(iBytes, 4, kKernSize)) return;
  if (iTable.IsVersion1() && !HasSize(iBytes, 8, kKernSize)) return;
  if (iTable.Version() != 0 && !iTable.IsVersion1()) {
    ReportVersion(iBytes, iTable.Version(), kKernVersion);
    return;
  }
  if (iTable.GetSubtableCount() == 0) {
    iBytes.report.Report(kKernEmpty, Severity::kMinorError, "The table has no subtables", {}, {0});
  }
  CheckSubtables(iTable, iBytes);
}

void VornFontTesterStructure_kern::CheckSubtables(const FTFontTable_kern& iTable, const LayoutTable& iBytes) const {
  LayoutReport& tReport = iBytes.report;
  const uint64_t tCount = iTable.GetSubtableCount();
  uint64_t tAt = iTable.HeaderSize();
  for (uint64_t i = 0; i < tCount; ++i) {
    if (!iBytes.bytes.Holds(tAt, iTable.SubtableHeaderSize())) {
      tReport.Leave();
      tReport.Report(kKernSubtableBeyondTable, Severity::kFatalError,
                     "Subtable %d of %lu lies beyond the end of the table", {i, tCount}, {tAt});
      return;
    }
    tReport.Enter("Subtable %d", {i});
    tReport.Spend(1);
    const FTKernSubtable tStored = iTable.ReadSubtable(tAt);
    Subtable tSubtable = {tStored, tStored.length, iTable.IsVersion1(), i + 1 == tCount};
    const uint64_t tLeft = iBytes.Left(tAt);
    if (!tSubtable.isVersion1 && tStored.format == 0 && tSubtable.isLast) {
      // The 16 bits of the length do not do for many pairs.
      tSubtable.fields.length = std::min(tLeft, std::max(tStored.length, iTable.LengthOfPairs(tStored)));
    } else if (tStored.length < tStored.headerSize || tStored.length > tLeft) {
      tReport.Report(kKernLength, Severity::kFatalError,
                     "The length of the subtable, %lu, is wrong; %lu bytes are left in the table",
                     {tStored.length, tLeft}, {tAt});
      return;
    }
    CheckSubtable(iBytes, tSubtable);
    tAt = tSubtable.fields.End();
  }
  tReport.Leave();
  if (iBytes.Left(tAt) > 3) {
    tReport.Report(kKernTrailingBytes, Severity::kTechnicalError, "%lu bytes follow the last subtable",
                   {iBytes.Left(tAt)}, {tAt});
  }
}

void VornFontTesterStructure_kern::CheckSubtable(const LayoutTable& iBytes, const Subtable& iSubtable) const {
  CheckCoverage(iBytes, iSubtable);
  const FTKernSubtable& tFields = iSubtable.fields;
  switch (tFields.format) {
    case 0:
      if (CheckFormatHeader(iBytes, iSubtable, kPairsHeaderSize)) CheckPairs(iBytes, iSubtable);
      break;
    case 1:
      TestStateTable(iBytes, tFields.Body(), tFields.End(), StateMachineKind::kKerning);
      break;
    case 2:
      if (CheckFormatHeader(iBytes, iSubtable, 8)) CheckClassArray(iBytes, iSubtable);
      break;
    case 3:
      if (CheckFormatHeader(iBytes, iSubtable, 6)) CheckIndexArray(iBytes, iSubtable);
      break;
    default:
      iBytes.report.Report(kKernUnknownFormat, Severity::kMajorError, "The subtable has the unknown format %d",
                           {tFields.format}, {tFields.offset});
  }
}

void VornFontTesterStructure_kern::CheckCoverage(const LayoutTable& iBytes, const Subtable& iSubtable) const {
  LayoutReport& tReport = iBytes.report;
  const FTKernSubtable& tFields = iSubtable.fields;
  const LayoutWhere tWhere = {tFields.offset};
  if ((tFields.coverage & (iSubtable.isVersion1 ? kReserved1 : kReserved0)) != 0) {
    tReport.Report(kKernReservedCoverage, Severity::kTechnicalError, "Reserved coverage bits are set (0x%04X)",
                   {tFields.coverage}, tWhere);
  }
  if (!iSubtable.isVersion1) {
    if (const uint16_t tVersion = iBytes.bytes.U16(tFields.offset); tVersion != 0) {
      tReport.Report(kKernSubtableVersion, Severity::kTechnicalError, "The subtable's version is %d; it should be 0",
                     {tVersion}, tWhere);
    }
    if (tFields.format == 1 || tFields.format == 3) {
      tReport.Report(kKernFormatOfOtherVersion, Severity::kMinorError,
                     "The subtable's format, %d, is not known in tables of version 0", {tFields.format}, tWhere);
    }
    if ((tFields.coverage & kHorizontal0) == 0) {
      tReport.Report(kKernVertical, Severity::kInformation, "The subtable kerns vertical text", {}, tWhere);
    }
    return;
  }
  if ((tFields.coverage & kVariation1) != 0) {
    const uint64_t tCoordinates = SfntFont().CountGlobalCoordinates();
    if (tFields.tupleIndex >= tCoordinates) {
      tReport.Report(kKernCoordinate, Severity::kMinorError,
                     "The subtable is for the global coordinate %d; the font has %d",
                     {tFields.tupleIndex, tCoordinates}, tWhere);
    }
  } else if (tFields.tupleIndex != 0) {
    tReport.Report(kKernTupleIndex, Severity::kTechnicalError,
                   "The subtable has the tuple index %d but is not for a variation", {tFields.tupleIndex}, tWhere);
  }
}

bool VornFontTesterStructure_kern::CheckFormatHeader(const LayoutTable& iBytes, const Subtable& iSubtable,
                                                     uint64_t iFields) const {
  const uint64_t tNeeded = iSubtable.fields.headerSize + iFields;
  const uint64_t tLeft = iBytes.Left(iSubtable.fields.offset);
  if (tNeeded <= tLeft) return true;
  iBytes.report.Report(kKernFormatHeader, Severity::kFatalError,
                       "The header of the format needs %d bytes; only %lu are left in the table", {tNeeded, tLeft},
                       {iSubtable.fields.offset});
  return false;
}

// Format 0: pairs (left glyph u16, right glyph u16, value i16) behind their number and three words for searching.

void VornFontTesterStructure_kern::CheckPairs(const LayoutTable& iBytes, const Subtable& iSubtable) const {
  LayoutReport& tReport = iBytes.report;
  const uint64_t tBody = iSubtable.fields.Body();
  const uint64_t tPairCount = iBytes.bytes.U16(tBody);
  CheckLengthOfPairs(iBytes, iSubtable, tPairCount);
  CheckSearchWords(iBytes, tBody);
  const uint64_t tPairs = tBody + kPairsHeaderSize;
  const uint64_t tHeld = std::min(tPairCount, iBytes.Left(tPairs) / kPairSize);
  tReport.Spend(tHeld);
  LayoutTally tOutOfOrder;
  LayoutTally tRepeated;
  LayoutTally tGlyphs;
  int64_t tBefore = -1;
  for (uint64_t i = 0; i < tHeld; ++i) {
    const uint64_t tAt = tPairs + i * kPairSize;
    const uint32_t tPair = iBytes.bytes.U32(tAt);
    const uint32_t tLeft = tPair >> 16;
    const uint32_t tRight = tPair & 0xFFFF;
    if (tPair < tBefore) tOutOfOrder.Add({i, tLeft, tRight}, {tAt, tLeft});
    if (tPair == tBefore) tRepeated.Add({i, tLeft, tRight}, {tAt, tLeft});
    if (iBytes.IsBeyondFont(tLeft) || iBytes.IsBeyondFont(tRight)) tGlyphs.Add({i, tLeft, tRight}, {tAt, tLeft});
    tBefore = tPair;
  }
  tReport.ReportCount(kKernPairsOutOfOrder, Severity::kMajorError,
                      "%d pairs are out of order; the first is pair %d (glyphs %d and %d)", tOutOfOrder);
  tReport.ReportCount(kKernPairsRepeated, Severity::kMinorError,
                      "%d pairs are repeated; the first is pair %d (glyphs %d and %d)", tRepeated);
  tReport.ReportCount(kKernPairGlyphs, Severity::kMinorError,
                      "%d pairs have glyphs that the font does not have; the first is pair %d (glyphs %d and %d)",
                      tGlyphs);
  CheckValues(iBytes, iSubtable, tPairs + 4, tHeld, kPairSize);
}

void VornFontTesterStructure_kern::CheckLengthOfPairs(const LayoutTable& iBytes, const Subtable& iSubtable,
                                                      uint64_t iPairs) const {
  LayoutReport& tReport = iBytes.report;
  const uint64_t tNeeded = iSubtable.fields.headerSize + kPairsHeaderSize + kPairSize * iPairs;
  const uint64_t tLength = iSubtable.storedLength;
  const LayoutWhere tWhere = {iSubtable.fields.offset};
  if (const uint64_t tLeft = iBytes.Left(iSubtable.fields.offset); tNeeded > tLeft) {
    tReport.Report(kKernPairsBeyondTable, Severity::kFatalError,
                   "The %d pairs need %lu bytes; only %lu are left in the table", {iPairs, tNeeded, tLeft}, tWhere);
  }
  if (tNeeded == tLength) return;
  const bool tIsCut = !iSubtable.isVersion1 && iSubtable.isLast && Tova::Wrap16(tNeeded) == Tova::Wrap16(tLength);
  if (tIsCut) {
    tReport.Report(kKernLengthCut, Severity::kInformation,
                   "The length of the subtable, %lu, is that of its %d pairs (%lu bytes) cut to 16 bits",
                   {tLength, iPairs, tNeeded}, tWhere);
  } else if (tNeeded > tLength && !iSubtable.isLast) {
    tReport.Report(kKernLengthTooSmall, Severity::kMajorError,
                   "The length of the subtable is %lu; its %d pairs need %lu bytes", {tLength, iPairs, tNeeded},
                   tWhere);
  } else {
    tReport.Report(kKernLengthOther, Severity::kTechnicalError,
                   "The length of the subtable is %lu; its %d pairs take %lu bytes", {tLength, iPairs, tNeeded},
                   tWhere);
  }
}

void VornFontTesterStructure_kern::CheckSearchWords(const LayoutTable& iBytes, uint64_t iBody) const {
  LayoutReport& tReport = iBytes.report;
  const uint16_t tPairCount = iBytes.bytes.U16(iBody);
  if (tPairCount == 0) {
    tReport.Report(kKernNoPairs, Severity::kInformation, "The subtable has no pairs", {}, {iBody});
    return;
  }
  const FTLookupSearch::Words tRight(kPairSize, tPairCount);
  const auto tCheck = [&](uint16_t iRank, const char* iFormat, uint64_t iField, uint16_t iRight) {
    const uint16_t tValue = iBytes.bytes.U16(iBody + iField);
    if (tValue != iRight) tReport.Report(iRank, Severity::kTechnicalError, iFormat, {tValue, iRight}, {iBody});
  };
  tCheck(kKernSearchRange, "The search range is %d; it should be %d", 2, tRight.searchRange);
  tCheck(kKernEntrySelector, "The entry selector is %d; it should be %d", 4, tRight.entrySelector);
  tCheck(kKernRangeShift, "The range shift is %d; it should be %d", 6, tRight.rangeShift);
}

/// Values are in font units. In cross-stream subtables -32768 stands for "back to the base line".
void VornFontTesterStructure_kern::CheckValues(const LayoutTable& iBytes, const Subtable& iSubtable, uint64_t iAt,
                                               uint64_t iCount, uint64_t iStride) const {
  const int32_t tEm = SfntFont().GetFontUnitsPerEm();
  if (tEm == 0) return;
  LayoutTally tLarge;
  for (uint64_t i = 0; i < iCount; ++i) {
    const int32_t tValue = iBytes.bytes.S16(iAt + i * iStride);
    if (tValue >= -tEm && tValue <= tEm) continue;
    if (tValue == INT16_MIN && iSubtable.IsCrossStream()) continue;
    tLarge.Add({tValue}, {iAt + i * iStride});
  }
  iBytes.report.ReportCount(kKernLargeValues, Severity::kMinorError,
                            "%d values are larger than the em; the first is %d", tLarge);
}
