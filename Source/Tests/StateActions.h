#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "Tests/StateFlow.h"
#include "Tests/StateMachine.h"

/// Checks what the entries of a machine do to the text: that the substitutes, ligature actions, components, inserted
/// glyphs and kerning values that they name are there.
///
/// Where the bytes of each kind lie: contextual, extended: words index u32 offsets of lookups (both from the
/// substitution table); classic: a word w gives a glyph g the substitute at start + 2 * (w + g). Ligature: a list of
/// u32 actions (last 0x80000000, store 0x40000000, 30 signed bits that with the glyph are an index of u16 components);
/// the sum of components is an index of ligatures (classic: the offset of one). Insertion: u16 glyphs. Kerning: i16
/// values, the last of which is odd. As in "The 'morx' table", "The 'mort' table" and "The 'kern' table" of the
/// TrueType reference.
class StateActions {
 public:
  /// ioMachine gets the glyphs that the actions can put into the text, and those that they have a substitute for.
  StateActions(const LayoutTable& iTable, const StateFlow& iFlow, StateMachine& ioMachine);

  void Check();

  /// How many components or values an entry's list takes from the stack, by the entry's index; 0 without a list that
  /// ends.
  const std::vector<uint32_t>& ListLengths() const { return _fListLengths; }

 private:
  using EntryCheck = std::function<void(uint16_t iIndex, const StateMachine::Entry& iEntry)>;
  using PairCheck = std::function<void(uint16_t iIndex, const StateMachine::Entry& iEntry, uint32_t iClass)>;
  void ForEachReadEntry(const EntryCheck& iCheck) const;
  void ForEachPair(const std::function<bool(const StateMachine::Entry&)>& iConcerns, const PairCheck& iCheck) const;

  void CheckSubstitutions();
  void CheckSubstitution(uint16_t iIndex, uint64_t iAt);
  void CheckClassicSubstitutes();
  void CheckLigatures();
  void CheckLigatureList(uint16_t iIndex, const StateMachine::Entry& iEntry);
  void CheckComponentsOfClasses();
  void CheckComponents();
  void CheckInsertions();
  void CheckInsertion(uint16_t iIndex, const StateMachine::Entry& iEntry, size_t iWhich);
  void CheckValues();
  void CheckValueList(uint16_t iIndex, const StateMachine::Entry& iEntry);
  uint64_t LigatureListAt(const StateMachine::Entry& iEntry) const;
  void CheckGlyphWords(uint16_t iIndex, uint32_t iClass, int64_t iBase, const LayoutSection& iSection, uint16_t iRank,
                       const char* iBeyondTable, const char* iBeyondSection);
  void Make(uint16_t iGlyph);

  const LayoutTable& _fTable;
  LayoutReport& _fReport;
  const StateFlow& _fFlow;
  StateMachine& _fMachine;
  std::vector<uint32_t> _fListLengths;
  LayoutTally _fDeletedInsertions;
};
