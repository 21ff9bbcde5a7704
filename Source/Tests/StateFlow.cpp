#include "Tests/StateFlow.h"

#include <algorithm>

namespace {

/// In the order of the report.
enum Rank : uint16_t { kStandstill = kRankBehaviour, kNoAction };

}  // namespace

StateFlow::StateFlow(const StateMachine& iMachine) : _fMachine(iMachine) {
  for (uint32_t i = 0; i < iMachine.states.size(); ++i) {
    const StateMachine::State& tState = iMachine.states[i];
    // Fonts use row 1 as an ordinary state, too: it starts lines when nothing else leads there.
    if (tState.number == 0 || (tState.number == 1 && tState.hasRow && !IsLedTo(i))) _fStarts.push_back(i);
  }
  const auto tReached = Propagate<uint8_t>(
      0, 1, [](uint16_t, const StateMachine::Entry&, uint8_t iReached) { return iReached; },
      [](uint8_t& ioReached, uint8_t iOther) { return ioReached == iOther ? false : (ioReached = iOther, true); });
  for (uint32_t i = 0; i < tReached.size(); ++i) {
    if (tReached[i]) _fStates.push_back(i);
  }
  std::ranges::sort(_fStates, {}, [&](uint32_t iState) { return iMachine.states[iState].number; });
}

/// Whether a cell of another state, of whatever class, leads to the state.
bool StateFlow::IsLedTo(uint32_t iState) const {
  for (uint32_t i = 0; i < _fMachine.states.size(); ++i) {
    if (i == iState) continue;
    for (uint32_t tClass = 0; tClass < _fMachine.classCount; ++tClass) {
      const StateMachine::Entry* tEntry = _fMachine.EntryFor(i, tClass);
      if (tEntry && tEntry->next == iState) return true;
    }
  }
  return false;
}

void StateFlow::Check(LayoutReport& ioReport) const {
  CheckStandstill(ioReport);
  bool tActs = false;
  const auto tLook = [&](uint32_t, uint32_t, uint16_t, const StateMachine::Entry& iEntry) {
    tActs = tActs || _fMachine.Acts(iEntry);
  };
  ForEachUse(tLook);
  ForEachEnd(tLook);
  if (!tActs) {
    ioReport.Report(kNoAction, Severity::kMinorError, "No action can ever be performed", {}, {_fMachine.start});
  }
}

/// Where an entry leads that leaves the machine at the same glyph; kNoState when it moves on or changes the glyph.
uint32_t StateFlow::NextWithoutAdvance(uint32_t iState, uint32_t iClass) const {
  const StateMachine::Entry* tEntry = _fMachine.EntryFor(iState, iClass);
  if (!tEntry || (tEntry->flags & StateMachine::kDontAdvance) == 0 || _fMachine.ChangesGlyph(*tEntry)) {
    return StateMachine::kNoState;
  }
  return tEntry->next;
}

void StateFlow::CheckStandstill(LayoutReport& ioReport) const {
  std::vector<uint64_t> tWalkOf(_fMachine.states.size());  // the last walk that came to a state
  uint64_t tWalk = 0;
  for (const uint32_t tClass : _fMachine.usableClasses) CheckStandstillOfClass(tClass, tWalkOf, tWalk, ioReport);
}

/// One state has at most one successor without an advance, so that a walk that meets itself has found a cycle.
void StateFlow::CheckStandstillOfClass(uint32_t iClass, std::vector<uint64_t>& ioWalkOf, uint64_t& ioWalk,
                                       LayoutReport& ioReport) const {
  struct Cycle {
    int32_t lowest;
    uint32_t length;
  };
  std::vector<Cycle> tCycles;
  const uint64_t tFirstWalk = ioWalk + 1;
  for (const uint32_t tStart : _fStates) {
    ++ioWalk;
    uint32_t tState = tStart;
    while (tState != StateMachine::kNoState && ioWalkOf[tState] < tFirstWalk) {
      ioWalkOf[tState] = ioWalk;
      tState = NextWithoutAdvance(tState, iClass);
    }
    if (tState == StateMachine::kNoState || ioWalkOf[tState] != ioWalk) continue;
    Cycle tCycle = {_fMachine.states[tState].number, 0};
    uint32_t tMember = tState;
    do {
      tCycle.lowest = std::min(tCycle.lowest, _fMachine.states[tMember].number);
      ++tCycle.length;
      tMember = NextWithoutAdvance(tMember, iClass);
    } while (tMember != tState);
    tCycles.push_back(tCycle);
  }
  std::ranges::sort(tCycles, {}, &Cycle::lowest);
  for (const Cycle& tCycle : tCycles) {
    ioReport.Report(kStandstill, Severity::kFatalError,
                    "State %d, class %d: the glyph is never passed; %d states follow one another for ever",
                    {tCycle.lowest, iClass, tCycle.length}, {_fMachine.start});
  }
}
