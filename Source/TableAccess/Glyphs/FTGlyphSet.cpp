#include "TableAccess/Glyphs/FTGlyphSet.h"

#include <algorithm>
#include <utility>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/AncillaryClasses/FTWorkBudget.h"
#include "TableAccess/FTLimits.h"

namespace {

using Kind = FTGlyphRecord::Kind;
using State = FTGlyphRecord::State;

constexpr uint64_t kHeaderSize = 10;

Kind KindOf(int16_t iNumberOfContours) {
  if (iNumberOfContours < -1) FTThrow(FTFaults::kGlyphOfUnknownKind);
  if (iNumberOfContours < 0) return Kind::kCompound;
  return iNumberOfContours == 0 ? Kind::kEmpty : Kind::kSimple;
}

bool AreSame(Tova::ByteView iFirst, Tova::ByteView iSecond) {
  return iFirst.Data() == iSecond.Data() && iFirst.Size() == iSecond.Size();
}

}  // namespace

FTGlyphSet::FTGlyphSet(Tova::ByteView iGlyphs, const FTGlyphLocations& iLocations, FTWorkBudget& ioBudget)
    : _fBytes(iGlyphs), _fLocations(iLocations), _fBudget(&ioBudget) {
  _fBudget->Charge(Count());
  _fRecords.reserve(Count());
  uint64_t tOffset = _fLocations.Offset(0);
  for (uint32_t i = 0; i < Count(); ++i) {
    const uint64_t tNext = _fLocations.Offset(i + 1);
    if (tOffset > _fBytes.Size()) {
      FTThrow(FTFaults::kGlyphOutsideGlyf);
    }
    _fRecords.push_back({.kind = tNext == tOffset ? Kind::kEmpty : KindOf(_fBytes.S16(tOffset))});
    tOffset = tNext;
  }
}

const FTGlyphRecord& FTGlyphSet::ReadUnread(uint16_t iGlyph) {
  const bool tHadFailures = std::exchange(_fHasFailures, true);
  FTGlyphRecord& tRecord = BeginReading(iGlyph);
  if (tRecord.kind == Kind::kSimple) ReadSimple(iGlyph, tRecord);
  if (tRecord.kind == Kind::kCompound) ReadCompound(iGlyph);
  tRecord.state = State::kRead;
  _fHasFailures = tHadFailures;
  return tRecord;
}

/// Marks the glyph and reads its header.
FTGlyphRecord& FTGlyphSet::BeginReading(uint16_t iGlyph) {
  FTGlyphRecord& tRecord = _fRecords[iGlyph];
  if (tRecord.state == State::kBeingRead) FTThrow(FTFaults::kGlyphContainsItself);
  tRecord.state = State::kBeingRead;
  const uint64_t tLength = LengthOf(iGlyph);
  if (tLength == 0) return tRecord;
  if (tLength < kHeaderSize) FTThrow(FTFaults::kGlyphTooShort);
  const Tova::ByteView tBytes = BytesOf(iGlyph);
  tRecord.storedBox = {.top = tBytes.S16(8), .left = tBytes.S16(2), .bottom = tBytes.S16(4), .right = tBytes.S16(6)};
  return tRecord;
}

void FTGlyphSet::ReadSimple(uint16_t iGlyph, FTGlyphRecord& ioRecord) {
  const Tova::ByteView tBytes = BytesOf(iGlyph);
  ioRecord.contours = tBytes.U16(0);
  _fBudget->Charge(ioRecord.contours);
  uint16_t tLargest = 0;
  for (uint64_t i = 0; i < ioRecord.contours; ++i) tLargest = std::max(tLargest, tBytes.U16(kHeaderSize + 2 * i));
  ioRecord.points = Tova::Wrap16(uint64_t{tLargest} + 1);
  ioRecord.instructionBytes = tBytes.U16(kHeaderSize + uint64_t{2} * ioRecord.contours);
  // The glyph's header and its end points are left out of the sum.
  if (uint64_t{ioRecord.points} + ioRecord.instructionBytes > LengthOf(iGlyph)) {
    FTThrow(FTFaults::kGlyphTooLong);
  }
  UnpackOutline(iGlyph, ioRecord);
}

void FTGlyphSet::UnpackOutline(uint16_t iGlyph, FTGlyphRecord& ioRecord) {
  _fOutlineOf = kNone;
  _fBudget->Charge(ioRecord.points);
  _fOutline.Unpack(BytesOf(iGlyph), LengthOf(iGlyph), ioRecord);
  _fOutlineOf = iGlyph;
}

const FTOutline& FTGlyphSet::OutlineOf(uint16_t iGlyph) {
  Read(iGlyph);
  if (_fOutlineOf != iGlyph) UnpackOutline(iGlyph, _fRecords[iGlyph]);
  return _fOutline;
}

const std::vector<FTComponent>& FTGlyphSet::ComponentsOf(uint16_t iGlyph) {
  if (_fComponentsOf == iGlyph) return _fComponents;
  _fComponentsOf = kNone;
  _fComponents.clear();
  FTComponentRun tRun(BytesOf(iGlyph), LengthOf(iGlyph));
  while (const auto tComponent = tRun.Next()) {
    _fBudget->Charge(kFTStepsOfComponent);
    _fComponents.push_back(*tComponent);
  }
  _fComponentsOf = iGlyph;
  return _fComponents;
}

/// A compound glyph being read: its components from the next one on, and the totals of those before.
struct FTGlyphSet::Level {
  uint16_t glyph;
  FTComponentRun run;
  std::optional<FTComponent> next = run.Next();
  FTGlyphRecord totals = {};
};

void FTGlyphSet::ReadCompound(uint16_t iGlyph) {
  std::vector<Level> tPath;
  tPath.push_back({iGlyph, FTComponentRun(BytesOf(iGlyph), LengthOf(iGlyph))});
  while (!tPath.empty()) {
    Level& tLevel = tPath.back();
    if (!tLevel.next) {
      FTGlyphRecord& tRecord = _fRecords[tLevel.glyph];
      tRecord.points = tLevel.totals.points;
      tRecord.contours = tLevel.totals.contours;
      tRecord.components = tLevel.totals.components;
      tRecord.depth = Tova::Wrap16(uint64_t{tLevel.totals.depth} + 1);
      tRecord.state = State::kRead;
      tPath.pop_back();
    } else if (const uint16_t tComponent = tLevel.next->glyph; AddComponent(tComponent, tLevel.totals)) {
      tLevel.next = tLevel.run.Next();
    } else {
      BeginReading(tComponent);
      tPath.push_back({tComponent, FTComponentRun(BytesOf(tComponent), LengthOf(tComponent))});
    }
  }
}

/// Adds a component to the totals; false for a compound glyph that has to be read first.
bool FTGlyphSet::AddComponent(uint16_t iGlyph, FTGlyphRecord& ioTotals) {
  _fBudget->Charge(kFTStepsOfComponent);
  if (iGlyph >= Count()) {
    FTThrow(FTFaults::kComponentIsNoGlyph);
  }
  const FTGlyphRecord& tOther = _fRecords[iGlyph];
  if (tOther.kind == Kind::kCompound && tOther.state != State::kRead) return false;
  if (tOther.kind == Kind::kSimple) Read(iGlyph);
  ioTotals.points = Tova::Wrap16(uint64_t{ioTotals.points} + tOther.points);
  ioTotals.contours = Tova::Wrap16(uint64_t{ioTotals.contours} + tOther.contours);
  ioTotals.depth = std::max(ioTotals.depth, tOther.depth);
  ioTotals.components = Tova::Wrap16(uint64_t{ioTotals.components} + 1);
  return true;
}

bool FTGlyphSet::IsOf(Tova::ByteView iGlyphs, const FTGlyphLocations& iLocations) const {
  return AreSame(_fBytes, iGlyphs) && AreSame(_fLocations.bytes, iLocations.bytes) &&
         _fLocations.areLong == iLocations.areLong && _fLocations.glyphCount == iLocations.glyphCount;
}

void FTGlyphSet::ForgetFailures() {
  if (!_fHasFailures) return;
  _fBudget->Charge(Count());
  for (FTGlyphRecord& tRecord : _fRecords) {
    if (tRecord.state == State::kBeingRead) tRecord = {.kind = tRecord.kind};
  }
  _fHasFailures = false;
}
