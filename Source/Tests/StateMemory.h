#pragma once

#include <cstdint>
#include <vector>

#include "Tests/StateFlow.h"

/// Checks what a machine remembers from glyph to glyph: that a mark can have been set where an entry uses it, and that
/// the stack can hold what an entry takes from it.
///
/// An entry is judged by all its uses together, because compilers share entries between states.
class StateMemory {
 public:
  /// iListLengths: what an entry takes from the stack, by its index (StateActions::ListLengths).
  StateMemory(const StateMachine& iMachine, const StateFlow& iFlow, const std::vector<uint32_t>& iListLengths,
              LayoutReport& ioReport);

  void Check() const;

 private:
  /// How many glyphs can be on the stack.
  struct Depth {
    uint8_t least;
    uint8_t greatest;
  };
  /// Where an entry takes more than there may be.
  struct ShortUse {
    int32_t state;
    uint32_t glyphClass;
    uint8_t depth;
  };
  void CheckMarks() const;
  bool UsesMarks(const StateMachine::Entry& iEntry) const;
  uint8_t MarksSetBy(const StateMachine::Entry& iEntry) const;
  void CheckStack() const;
  uint8_t Pushed(const StateMachine::Entry& iEntry, uint8_t iDepth) const;
  uint8_t After(uint16_t iIndex, const StateMachine::Entry& iEntry, uint8_t iDepth) const;
  std::vector<Depth> FindDepths() const;

  const StateMachine& _fMachine;
  const StateFlow& _fFlow;
  const std::vector<uint32_t>& _fListLengths;
  LayoutReport& _fReport;
};
