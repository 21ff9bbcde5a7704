#include "Tests/VornFontTesterStructure_just.h"

#include <algorithm>

#include "Tests/StateMachine.h"

namespace {

constexpr uint64_t kHeaderSize = 10;
constexpr uint64_t kDataHeaderSize = 6;
constexpr uint64_t kDeltaSize = 24;

// A class table: length u16, coverage u16, flags u32, a state table.
constexpr uint64_t kClassTableHeaderSize = 8;
constexpr uint64_t kStateTableHeaderSize = 8;

// Flags of a width delta, for growing as for shrinking.
constexpr uint16_t kReservedFlags = 0xEFF0;
constexpr uint16_t kPriority = 0x000F;
constexpr uint16_t kHighestPriority = 3;

bool IsBadFlags(uint16_t iFlags) { return (iFlags & kReservedFlags) != 0 || (iFlags & kPriority) > kHighestPriority; }

}  // namespace

void VornFontTesterStructure_just::Examine(const FTFontTable_just& iTable, const LayoutTable& iBytes) const {
  if (!HasSize(iBytes, kHeaderSize, kSize)) return;
  LayoutReport& tReport = iBytes.report;
  if (iTable.Version() != 0x00010000) {
    ReportVersion(iBytes, iTable.Version(), kVersion);
    return;
  }
  if (iTable.Format() != 0) {
    tReport.Report(kFormat, Severity::kMajorError, "Bad format: %d", {iTable.Format()}, {4});
    return;
  }
  const uint16_t tHorizontal = iTable.HorizontalOffset();
  const uint16_t tVertical = iTable.VerticalOffset();
  if (tHorizontal == 0 && tVertical == 0) {
    tReport.Report(kNoData, Severity::kMinorError, "The table has neither horizontal nor vertical data", {}, {6});
  }
  if (tHorizontal != 0) {
    tReport.Enter("Horizontal data");
    CheckData(iBytes, tHorizontal);
  }
  if (tVertical != 0 && tVertical != tHorizontal) {
    tReport.Enter("Vertical data");
    CheckData(iBytes, tVertical);
  }
}

void VornFontTesterStructure_just::CheckData(const LayoutTable& iBytes, uint16_t iOffset) const {
  LayoutReport& tReport = iBytes.report;
  if (iOffset < kHeaderSize) {
    tReport.Report(kOffsetTooSmall, Severity::kMajorError, "The offset of the data, 0x%04X, is too small", {iOffset},
                   {iOffset});
    return;
  }
  if (!iBytes.bytes.Holds(iOffset, kDataHeaderSize)) {
    tReport.Report(kDataBeyondTable, Severity::kFatalError, "The data at 0x%08lX lie beyond the end of the table",
                   {iOffset}, {iOffset});
    return;
  }
  const uint64_t tAt = iOffset;
  Data tData = {
      tAt,
      CheckTableOffset(iBytes, tAt, kClassTableTooBig, "The class table offset 0x%04X is too big"),
      CheckTableOffset(iBytes, tAt + 2, kWidthDeltasTooBig, "The width delta table offset 0x%04X is too big"),
      CheckTableOffset(iBytes, tAt + 4, kPostcompensationTooBig, "The postcompensation table offset 0x%04X is too big"),
  };
  CheckWidthDeltas(iBytes, tData);
  CheckPostcompensation(iBytes, tData);
  CheckClassMachine(iBytes, tData);
}

/// The offset of a part of the data; 0 for none also where it leads nowhere.
uint16_t VornFontTesterStructure_just::CheckTableOffset(const LayoutTable& iBytes, uint64_t iField, uint16_t iRank,
                                                        const char* iTooBig) const {
  const uint16_t tOffset = iBytes.bytes.U16(iField);
  if (tOffset < iBytes.Size()) return tOffset;
  iBytes.report.Report(iRank, Severity::kFatalError, iTooBig, {tOffset}, {iField});
  return 0;
}

// Width deltas: a lookup gives each glyph the offset of a cluster: count u32, then for each justification class 24
// bytes: class u32; least growth and shrinkage before, and after the glyph (16.16 each); flags for growing, for
// shrinking (u16 each).

void VornFontTesterStructure_just::CheckWidthDeltas(const LayoutTable& iBytes, Data& ioData) const {
  LayoutReport& tReport = iBytes.report;
  const uint64_t tLookup = ioData.at + kDataHeaderSize;
  const LookupPieces tPieces = LookupChecker(iBytes, tLookup, iBytes.Size(), "width delta table").Check();
  if (tPieces.empty()) return;
  if (iBytes.bytes.U16(ioData.at + 2) == 0) {
    tReport.Report(kNoWidthDeltas, Severity::kMajorError, "Glyphs have width deltas, but there is no width delta table",
                   {}, {ioData.at + 2});
  }
  if (ioData.widthDeltas == 0) return;
  std::set<uint16_t> tClusters;
  for (const LookupPiece& tPiece : tPieces) tClusters.insert(tPiece.value);
  // Offsets count from the width delta table; where that cannot be, from the start of the whole table.
  const bool tFromStart = *tClusters.rbegin() + uint64_t{ioData.widthDeltas} + 4 > iBytes.Size() &&
                          *tClusters.begin() >= ioData.widthDeltas;
  DeltaTallies tTallies;
  for (const uint16_t tCluster : tClusters) {
    CheckCluster(iBytes, tFromStart ? tCluster : uint64_t{ioData.widthDeltas} + tCluster, ioData, tTallies);
  }
  tReport.ReportCount(kDeltaClass, Severity::kTechnicalError,
                      "%d width deltas have a class above 127; the first is in the cluster at 0x%08lX",
                      tTallies.badClass);
  tReport.ReportCount(kDeltaDirection, Severity::kMinorError,
                      "%d width deltas grow or shrink the wrong way; the first is in the cluster at 0x%08lX",
                      tTallies.badDirection);
  tReport.ReportCount(kDeltaFlags, Severity::kTechnicalError,
                      "%d width deltas have bad flags; the first is in the cluster at 0x%08lX (0x%04X)",
                      tTallies.badFlags);
}

void VornFontTesterStructure_just::CheckCluster(const LayoutTable& iBytes, uint64_t iCluster, Data& ioData,
                                                DeltaTallies& ioTallies) const {
  LayoutReport& tReport = iBytes.report;
  const uint64_t tCount = iBytes.bytes.U32(iCluster);
  const uint64_t tNeeded = 4 + kDeltaSize * tCount;
  if (const uint64_t tLeft = iBytes.Left(iCluster); tNeeded > tLeft) {
    tReport.Report(kClusterBeyondTable, Severity::kFatalError,
                   "The width delta cluster at 0x%08lX needs %lu bytes; only %lu are left in the table",
                   {iCluster, tNeeded, tLeft}, {iCluster});
  }
  const uint64_t tHeld = std::min(tCount, iBytes.Left(iCluster + 4) / kDeltaSize);
  tReport.Spend(1 + tHeld);
  std::set<uint32_t> tClasses;
  for (uint64_t i = 0; i < tHeld; ++i) {
    const uint64_t tAt = iCluster + 4 + i * kDeltaSize;
    const uint32_t tClass = iBytes.bytes.U32(tAt);
    if (!tClasses.insert(tClass).second) {
      tReport.Report(kDeltaClassTwice, Severity::kMinorError, "The cluster at 0x%08lX has class %lu twice",
                     {iCluster, tClass}, {tAt});
    }
    ioData.classesInUse.insert(tClass);
    CheckDelta(iBytes.bytes.Slice(tAt, kDeltaSize), tAt, iCluster, ioTallies);
  }
}

void VornFontTesterStructure_just::CheckDelta(Tova::ByteView iDelta, uint64_t iAt, uint64_t iCluster,
                                              DeltaTallies& ioTallies) const {
  const LayoutWhere tWhere = {iAt};
  if (iDelta.U32(0) > kHighestClass) ioTallies.badClass.Add({iCluster}, tWhere);
  const bool tGrowsLess = iDelta.S32(4) < 0 || iDelta.S32(12) < 0;
  const bool tShrinksLess = iDelta.S32(8) > 0 || iDelta.S32(16) > 0;
  if (tGrowsLess || tShrinksLess) ioTallies.badDirection.Add({iCluster}, tWhere);
  const uint16_t tGrow = iDelta.U16(20);
  const uint16_t tShrink = iDelta.U16(22);
  if (IsBadFlags(tGrow) || IsBadFlags(tShrink)) {
    ioTallies.badFlags.Add({iCluster, IsBadFlags(tGrow) ? tGrow : tShrink}, tWhere);
  }
}

// The class table: a state machine that gives glyphs their justification classes.

void VornFontTesterStructure_just::CheckClassMachine(const LayoutTable& iBytes, const Data& iData) const {
  if (iData.classTable == 0) return;
  LayoutReport& tReport = iBytes.report;
  const uint64_t tAt = iData.classTable;
  const uint64_t tLength = iBytes.bytes.U16(tAt);
  if (tLength < kClassTableHeaderSize + kStateTableHeaderSize || tLength > iBytes.Left(tAt)) {
    tReport.Report(kClassTableLength, Severity::kFatalError,
                   "The length of the class table, %d, is wrong; %lu bytes are left in the table",
                   {tLength, iBytes.Left(tAt)}, {tAt});
    return;
  }
  const auto tMachine =
      TestStateTable(iBytes, tAt + kClassTableHeaderSize, tAt + tLength, StateMachineKind::kJustification);
  if (!tMachine) return;
  std::set<uint32_t> tGiven;
  for (const StateMachine::Entry& tEntry : tMachine->entries) {
    if (tEntry.isRead) tGiven.insert({uint32_t{tEntry.flags} & 0x7F, uint32_t{tEntry.flags} >> 7 & 0x7F});
  }
  for (const uint32_t tClass : tGiven) {
    if (tClass == 0 || iData.classesInUse.contains(tClass)) continue;
    tReport.Report(kClassWithoutDelta, Severity::kInformation, "Class %d is given to glyphs but has no width delta",
                   {tClass}, {tAt});
  }
}
