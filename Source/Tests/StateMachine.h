#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "Tests/LookupChecker.h"

/// What a state machine of a layout table does to the text; 'morx' and 'mort' know the first four, 'kern' and 'just'
/// one each.
enum class StateMachineKind : uint8_t { kRearrangement, kContextual, kLigature, kInsertion, kKerning, kJustification };

/// The two layouts of state tables: 16-bit fields and states given by byte offsets, or 32-bit fields and states given
/// by their index.
enum class StateTableWidth : uint8_t { kClassic, kExtended };

/// Bytes [begin, end) of the table.
struct LayoutSection {
  uint64_t begin = 0;
  uint64_t end = 0;

  uint64_t Size() const { return end - begin; }
  bool Holds(uint64_t iFrom, uint64_t iTo) const { return iFrom >= begin && iTo <= end; }
};

/// A state machine as far as its states can be reached: what the discovery found and the checks of its behaviour look
/// at. It refers to the bytes of the table, which outlive it.
struct StateMachine {
  // Classes of glyphs that every machine has; from kFirstOwnClass on they are the font's.
  static constexpr uint32_t kEndOfText = 0;
  static constexpr uint32_t kOtherGlyph = 1;
  static constexpr uint32_t kDeletedGlyphClass = 2;
  static constexpr uint32_t kEndOfLine = 3;
  static constexpr uint32_t kFirstOwnClass = 4;

  // Flags that entries of every kind have in common (but rearrangement knows another mark).
  static constexpr uint16_t kSetMark = 0x8000;  ///< also: push; mark the first glyph
  static constexpr uint16_t kDontAdvance = 0x4000;
  static constexpr uint16_t kMarkLast = 0x2000;  ///< rearrangement

  static constexpr uint32_t kNoState = 0xFFFFFFFF;

  struct State {
    int32_t number;        ///< the row in the state array; negative before it
    uint64_t row;          ///< bytes from the start of the table
    bool hasRow;           ///< whether the row lies inside the table
    uint16_t reachedFrom;  ///< the first entry that led here
  };
  struct Entry {
    bool isSeen = false;  ///< a cell of a discovered state has its index
    bool isRead = false;  ///< it lies inside the table
    uint16_t flags = 0;
    std::array<uint16_t, 2> words = {};  ///< as many as the kind has
    uint32_t next = kNoState;            ///< index of the new state
  };
  struct ClassGlyphs {
    uint32_t lowest = 0;
    uint32_t highest = 0;
    bool any = false;
  };
  /// A table that the actions use: its bytes, when its offset is sound.
  struct Extra {
    uint64_t offset = 0;  ///< as stored
    LayoutSection section;
    bool isSound = false;
  };

  StateMachine(Tova::ByteView iBytes, StateMachineKind iKind, StateTableWidth iWidth, uint64_t iStart, uint64_t iLimit)
      : bytes(iBytes), kind(iKind), width(iWidth), start(iStart), limit(iLimit) {}

  Tova::ByteView bytes;
  StateMachineKind kind;
  StateTableWidth width;
  uint64_t start;  ///< of the header, from the start of the table
  uint64_t limit;  ///< end of the subtable
  uint32_t classCount = 0;
  uint64_t stateArray = 0;  ///< from the start of the table
  uint64_t entryTable = 0;  ///< likewise
  uint64_t rowCount = 0;    ///< rows that the section of the state array has room for
  uint64_t slotCount = 0;   ///< entries that the section of the entry table has room for
  std::array<Extra, 3> extras;

  std::vector<State> states;   ///< in order of discovery
  std::vector<Entry> entries;  ///< by index
  std::vector<ClassGlyphs> classes;
  std::vector<uint32_t> usableClasses;  ///< ascending: classes that a glyph of some text can have

  /// Glyphs beyond the font's last that have a class of their own or a substitute here.
  std::vector<LookupPiece> glyphsTaken;
  /// Glyphs beyond the font's last that the actions can put into the text.
  std::vector<uint16_t> glyphsMade;

  bool IsExtended() const { return width == StateTableWidth::kExtended; }
  uint64_t CellSize() const { return IsExtended() ? 2 : 1; }
  uint64_t RowSize() const { return CellSize() * classCount; }
  /// Bytes of the header's fields without the extras; of an entry.
  uint64_t ExtraCount() const;
  uint64_t EntrySize() const { return 4 + 2 * WordCount(); }
  uint64_t WordCount() const;

  /// The index of the entry for a class in a state that has a row.
  uint16_t Cell(uint32_t iState, uint32_t iClass) const {
    const uint64_t tRow = states[iState].row;
    return IsExtended() ? bytes.U16(tRow + 2 * uint64_t{iClass}) : bytes.U8(tRow + iClass);
  }
  /// That entry; null when the state has no row or the entry could not be read.
  const Entry* EntryFor(uint32_t iState, uint32_t iClass) const {
    if (!states[iState].hasRow) return nullptr;
    const Entry& tEntry = entries[Cell(iState, iClass)];
    return tEntry.isRead ? &tEntry : nullptr;
  }

  // What an entry does, by the machine's kind.

  /// Whether it does anything to the text, beside marks and stacks.
  bool Acts(const Entry& iEntry) const;
  /// Whether the glyph at hand may be another after it, so that staying there is no standstill.
  bool ChangesGlyph(const Entry& iEntry) const;
  /// Whether it has an insertion before or after the current (0) or the marked (1) glyph: a count and a list.
  bool Inserts(const Entry& iEntry, size_t iWhich) const {
    return InsertionCount(iEntry, iWhich) != 0 && HasWord(iEntry, iWhich);
  }
  uint32_t InsertionCount(const Entry& iEntry, size_t iWhich) const {
    return iWhich == 0 ? iEntry.flags >> 5 & 0x1F : iEntry.flags & 0x1F;
  }
  /// Whether a word (a substitution, a list to insert) is not "none".
  bool HasWord(const Entry& iEntry, size_t iWord) const { return iEntry.words[iWord] != (IsExtended() ? 0xFFFF : 0); }
  bool HasLigatureList(const Entry& iEntry) const { return (iEntry.flags & (IsExtended() ? 0x2000 : 0x3FFF)) != 0; }
  static uint16_t OffsetInFlags(const Entry& iEntry) { return iEntry.flags & 0x3FFF; }
};
