#pragma once

#include <cstdint>

#include "Tests/StateMachine.h"

/// Reads the class table of a state machine and reports what is wrong with the glyphs' classes. See StateDiscovery for
/// the bytes.
class StateClasses {
 public:
  /// iOffset is that of the class table from the header's start; ioMachine gets the classes.
  StateClasses(const LayoutTable& iTable, uint64_t iOffset, StateMachine& ioMachine);

  void Read();

 private:
  void ReadClassic();
  void Take(uint32_t iFirst, uint32_t iLast, uint32_t iClass);
  void Report();

  const LayoutTable& _fTable;
  LayoutReport& _fReport;
  StateMachine& _fMachine;
  const uint64_t _fAt;  // of the class table, from the start of the table
  LayoutTally _fAboveLast;
  LayoutTally _fReserved;
  LayoutTally _fDeleted;
};
