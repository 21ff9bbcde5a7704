#pragma once

#include <cstdint>
#include <vector>

#include "Tests/StateMachine.h"

/// Reads a state table from its header on and follows it from state to state, over the columns of all classes. Reports
/// what is wrong with the header, the classes, the states and the entries.
///
/// Bytes, classic (u16 each, offsets from the header's start): class count, offsets of the class table, the state array
/// and the entry table, and of tables that the kind adds. Class table: first glyph u16, glyph count u16, a class (u8)
/// for each glyph. State array: rows of an entry index (u8) for each class. Entries: new state u16 (the offset of a
/// row), flags u16, and the words of the kind. Extended: the same fields as u32; the class table is a lookup table;
/// entry indices are u16; new states are indices of rows. State 0 is where a text starts, state 1 where a line does. As
/// in "State tables" and "Extended state tables" of the TrueType reference.
class StateDiscovery {
 public:
  StateDiscovery(const LayoutTable& iTable, uint64_t iAt, uint64_t iLimit, StateMachineKind iKind,
                 StateTableWidth iWidth);

  /// False when the machine cannot be followed at all.
  bool Discover();
  StateMachine& Machine() { return _fMachine; }

 private:
  bool CheckHeader();
  bool CheckHeaderFits();
  uint64_t HeaderField(uint64_t iField) const;
  bool CheckOffset(size_t iName, uint64_t iOffset);
  void MeasureSections();
  LayoutSection SectionAt(uint64_t iOffset) const;
  bool CheckFirstStates();

  void FollowStates();
  void ReadState(uint32_t iState);
  void ReadEntry(uint16_t iEntry, int32_t iState, uint32_t iClass);
  uint32_t NewState(uint16_t iEntry, uint16_t iValue);
  bool IsBeforeArray(uint16_t iEntry, uint16_t iValue);
  bool MayPrecedeArray(uint16_t iValue) const;
  uint32_t AddState(int32_t iNumber, uint16_t iReachedFrom);
  void ReportUnreferenced();
  void CheckExtras();

  const LayoutTable& _fTable;
  LayoutReport& _fReport;
  StateMachine _fMachine;
  uint64_t _fClassTable = 0;               // as stored
  uint64_t _fStateArray = 0;               // as stored
  uint64_t _fEntryTable = 0;               // as stored
  std::vector<uint64_t> _fSectionOffsets;  // ascending, from the header's start
  std::vector<uint32_t> _fStateOfNumber;   // index of a state by its number; kNoState: not discovered
  bool _fNamedInitialState = false;        // the state array's offset is that of the initial state
};
