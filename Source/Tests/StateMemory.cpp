#include "Tests/StateMemory.h"

#include <algorithm>
#include <optional>

namespace {

/// In the order of the report.
enum MarkRank : uint16_t { kMarkNeverSet = kRankMark, kEndsNeverMarked };
enum StackRank : uint16_t { kStackAlwaysShort = kRankStack, kStackMayBeShort, kStackShortForValues };

/// Glyphs that the stack of a machine holds; engines drop the oldest beyond that.
constexpr uint8_t kLigatureStack = 16;
constexpr uint8_t kKerningStack = 8;

/// The one mark of contextual substitution and insertion, the two of rearrangement.
constexpr uint8_t kMark = 1;
constexpr uint8_t kFirstMark = 1;
constexpr uint8_t kLastMark = 2;

}  // namespace

StateMemory::StateMemory(const StateMachine& iMachine, const StateFlow& iFlow,
                         const std::vector<uint32_t>& iListLengths, LayoutReport& ioReport)
    : _fMachine(iMachine), _fFlow(iFlow), _fListLengths(iListLengths), _fReport(ioReport) {}

void StateMemory::Check() const {
  switch (_fMachine.kind) {
    case StateMachineKind::kRearrangement:
    case StateMachineKind::kContextual:
    case StateMachineKind::kInsertion:
      CheckMarks();
      break;
    case StateMachineKind::kLigature:
    case StateMachineKind::kKerning:
      if (_fMachine.extras[0].isSound) CheckStack();
      break;
    default:
      break;
  }
}

bool StateMemory::UsesMarks(const StateMachine::Entry& iEntry) const {
  switch (_fMachine.kind) {
    case StateMachineKind::kRearrangement:
      return _fMachine.Acts(iEntry);
    case StateMachineKind::kContextual:
      return _fMachine.HasWord(iEntry, 0);
    default:
      return _fMachine.Inserts(iEntry, 1);
  }
}

uint8_t StateMemory::MarksSetBy(const StateMachine::Entry& iEntry) const {
  uint8_t tMarks = (iEntry.flags & StateMachine::kSetMark) != 0 ? kMark : 0;
  if (_fMachine.kind == StateMachineKind::kRearrangement && (iEntry.flags & StateMachine::kMarkLast) != 0) {
    tMarks |= kLastMark;
  }
  return tMarks;
}

void StateMemory::CheckMarks() const {
  const auto tMarksOf = _fFlow.Propagate<int>(
      -1, 0, [this](uint16_t, const StateMachine::Entry& iEntry, int iMarks) { return iMarks | MarksSetBy(iEntry); },
      [](int& ioMarks, int iOther) {
        const int tBefore = ioMarks;
        ioMarks = ioMarks < 0 ? iOther : ioMarks | iOther;
        return ioMarks != tBefore;
      });
  // Rearrangement marks before it acts, the others after.
  const bool tMarksFirst = _fMachine.kind == StateMachineKind::kRearrangement;
  const int tNeeded = tMarksFirst ? kFirstMark | kLastMark : kMark;
  enum class Use : uint8_t { kNone, kUnmarked, kMarked };
  std::vector<Use> tUses(_fMachine.entries.size(), Use::kNone);
  const auto tLook = [&](uint32_t iState, uint32_t, uint16_t iIndex, const StateMachine::Entry& iEntry) {
    const int tMarks = tMarksOf[iState] | (tMarksFirst ? MarksSetBy(iEntry) : 0);
    tUses[iIndex] = std::max(tUses[iIndex], (tMarks & tNeeded) == tNeeded ? Use::kMarked : Use::kUnmarked);
  };
  _fFlow.ForEachUse(tLook);
  _fFlow.ForEachEnd(tLook);
  LayoutTally tUnmarked;
  for (size_t i = 0; i < tUses.size(); ++i) {
    if (tUses[i] != Use::kUnmarked || !UsesMarks(_fMachine.entries[i])) continue;
    tUnmarked.Add({i}, {_fMachine.entryTable + i * _fMachine.EntrySize()});
  }
  if (tMarksFirst) {
    _fReport.ReportCount(kEndsNeverMarked, Severity::kMinorError,
                         "%d entries rearrange where not both ends can have been marked; the first is entry %d",
                         tUnmarked);
  } else {
    _fReport.ReportCount(kMarkNeverSet, Severity::kMinorError,
                         "%d entries use the mark where no glyph can have been marked; the first is entry %d",
                         tUnmarked);
  }
}

uint8_t StateMemory::Pushed(const StateMachine::Entry& iEntry, uint8_t iDepth) const {
  const uint8_t tCapacity = _fMachine.kind == StateMachineKind::kLigature ? kLigatureStack : kKerningStack;
  if ((iEntry.flags & StateMachine::kSetMark) == 0) return iDepth;
  return std::min<uint8_t>(iDepth + 1, tCapacity);
}

/// A list of ligature actions leaves the ligature on the stack, one of kerning values nothing.
uint8_t StateMemory::After(uint16_t iIndex, const StateMachine::Entry& iEntry, uint8_t iDepth) const {
  const uint8_t tDepth = Pushed(iEntry, iDepth);
  const uint32_t tTaken = _fListLengths[iIndex];
  if (tTaken == 0) return tDepth;
  if (tTaken > tDepth) return 0;
  return static_cast<uint8_t>(tDepth - tTaken + (_fMachine.kind == StateMachineKind::kLigature ? 1 : 0));
}

std::vector<StateMemory::Depth> StateMemory::FindDepths() const {
  constexpr Depth kUnreached = {0xFF, 0};
  return _fFlow.Propagate<Depth>(
      kUnreached, {0, 0},
      [this](uint16_t iIndex, const StateMachine::Entry& iEntry, const Depth& iDepth) {
        return Depth{After(iIndex, iEntry, iDepth.least), After(iIndex, iEntry, iDepth.greatest)};
      },
      [](Depth& ioDepth, const Depth& iOther) {
        const Depth tBefore = ioDepth;
        ioDepth = {std::min(ioDepth.least, iOther.least), std::max(ioDepth.greatest, iOther.greatest)};
        return ioDepth.least != tBefore.least || ioDepth.greatest != tBefore.greatest;
      });
}

void StateMemory::CheckStack() const {
  struct Uses {
    std::optional<uint8_t> greatest;
    std::optional<ShortUse> firstShort;
  };
  const std::vector<Depth> tDepths = FindDepths();
  std::vector<Uses> tUses(_fMachine.entries.size());
  _fFlow.ForEachUse([&](uint32_t iState, uint32_t iClass, uint16_t iIndex, const StateMachine::Entry& iEntry) {
    Uses& tUse = tUses[iIndex];
    const uint8_t tLeast = Pushed(iEntry, tDepths[iState].least);
    tUse.greatest = std::max(tUse.greatest.value_or(0), Pushed(iEntry, tDepths[iState].greatest));
    if (!tUse.firstShort && _fListLengths[iIndex] > tLeast) {
      tUse.firstShort = {_fMachine.states[iState].number, iClass, tLeast};
    }
  });
  for (size_t i = 0; i < tUses.size(); ++i) {
    const uint32_t tTaken = _fListLengths[i];
    const Uses& tUse = tUses[i];
    const LayoutWhere tWhere = {_fMachine.entryTable + i * _fMachine.EntrySize()};
    if (!tUse.greatest) continue;
    if (_fMachine.kind == StateMachineKind::kKerning) {
      if (tTaken > *tUse.greatest) {
        _fReport.Report(kStackShortForValues, Severity::kMinorError,
                        "Entry %d has %d values, but at most %d glyphs can be on the stack",
                        {i, tTaken, *tUse.greatest}, tWhere);
      }
    } else if (tTaken > *tUse.greatest) {
      _fReport.Report(kStackAlwaysShort, Severity::kMajorError,
                      "Entry %d needs %d components, but at most %d can be on the stack", {i, tTaken, *tUse.greatest},
                      tWhere);
    } else if (tUse.firstShort) {
      _fReport.Report(kStackMayBeShort, Severity::kMinorError,
                      "State %d, class %d: entry %d needs %d components, but there may be only %d on the stack",
                      {tUse.firstShort->state, tUse.firstShort->glyphClass, i, tTaken, tUse.firstShort->depth}, tWhere);
    }
  }
}
