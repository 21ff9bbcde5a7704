#pragma once

#include <cstdint>
#include <deque>
#include <vector>

#include "Tests/StateMachine.h"

/// How text runs through a state machine: the states that glyphs lead to, and what is passed on from state to state.
/// The one walk that all checks of behaviour share.
class StateFlow {
 public:
  explicit StateFlow(const StateMachine& iMachine);

  /// The states in which text can be, ascending by their number: indices of StateMachine::states.
  const std::vector<uint32_t>& States() const { return _fStates; }
  /// Those in which a run of text can start.
  const std::vector<uint32_t>& Starts() const { return _fStarts; }

  /// Calls ioUse(state, class, entry index, entry) for each entry that a glyph can meet, states and classes ascending.
  template <class Use>
  void ForEachUse(Use ioUse) const {
    for (const uint32_t tState : _fStates) {
      if (!_fMachine.states[tState].hasRow) continue;
      for (const uint32_t tClass : _fMachine.usableClasses) Visit(tState, tClass, ioUse);
    }
  }
  /// Calls it for each entry that the end of the text can meet. Its new state is of no account.
  template <class Use>
  void ForEachEnd(Use ioUse) const {
    for (const uint32_t tState : _fStates) {
      if (_fMachine.states[tState].hasRow) Visit(tState, StateMachine::kEndOfText, ioUse);
    }
  }

  /// What text can bring to each state (by its index), when it brings iStart to the starts, iPass(entry, value) is what
  /// an entry makes of a value, and ioJoin(value, other) adds another and says whether that changed anything. Values
  /// can change a bounded number of times.
  template <class Value, class Pass, class Join>
  std::vector<Value> Propagate(const Value& iNone, const Value& iStart, Pass iPass, Join ioJoin) const {
    std::vector<Value> tValues(_fMachine.states.size(), iNone);
    std::vector<bool> tIsWaiting(_fMachine.states.size());
    std::deque<uint32_t> tWaiting;
    const auto tReach = [&](uint32_t iState, const Value& iValue) {
      if (!ioJoin(tValues[iState], iValue) || tIsWaiting[iState]) return;
      tIsWaiting[iState] = true;
      tWaiting.push_back(iState);
    };
    for (const uint32_t tStart : _fStarts) tReach(tStart, iStart);
    while (!tWaiting.empty()) {
      const uint32_t tState = tWaiting.front();
      tWaiting.pop_front();
      tIsWaiting[tState] = false;
      const Value tValue = tValues[tState];
      if (!_fMachine.states[tState].hasRow) continue;
      for (const uint32_t tClass : _fMachine.usableClasses) {
        Visit(tState, tClass, [&](uint32_t, uint32_t, uint16_t iIndex, const StateMachine::Entry& iEntry) {
          if (iEntry.next != StateMachine::kNoState) tReach(iEntry.next, iPass(iIndex, iEntry, tValue));
        });
      }
    }
    return tValues;
  }

  /// Reports glyphs that the machine never passes, and a machine that does nothing.
  void Check(LayoutReport& ioReport) const;

 private:
  template <class Use>
  void Visit(uint32_t iState, uint32_t iClass, Use&& ioUse) const {
    const uint16_t tIndex = _fMachine.Cell(iState, iClass);
    const StateMachine::Entry& tEntry = _fMachine.entries[tIndex];
    if (tEntry.isRead) ioUse(iState, iClass, tIndex, tEntry);
  }
  bool IsLedTo(uint32_t iState) const;
  uint32_t NextWithoutAdvance(uint32_t iState, uint32_t iClass) const;
  void CheckStandstill(LayoutReport& ioReport) const;
  void CheckStandstillOfClass(uint32_t iClass, std::vector<uint64_t>& ioWalkOf, uint64_t& ioWalk,
                              LayoutReport& ioReport) const;

  const StateMachine& _fMachine;
  std::vector<uint32_t> _fStarts;
  std::vector<uint32_t> _fStates;
};
