#include "Tests/StateActions.h"

#include <algorithm>
#include <set>
#include <string>

namespace {

/// In the order of the report.
enum Rank : uint16_t {
  kSubstitutionBeyondTable = kRankAction,
  kSubstitutionBeyondSection,
  kSubstitutionNowhere,
  kSubstitutesBeyondTable,
  kSubstitutesBeyondSection,
  kActionsBeyondTable,
  kActionsBeyondSection,
  kActionsRunBeyondTable,
  kActionsRunBeyondSection,
  kActionsUnaligned,
  kComponentsBeyondTable,
  kComponentsBeyondSection,
  kComponentBeyondLigatures,
  kInsertionBeyondTable,
  kInsertionBeyondSection,
  kInsertionHalfGiven,
  kDeletedGlyphInserted,
  kValuesBeyondTable,
  kValuesBeyondSection,
  kValuesRunBeyondTable,
  kValuesUnaligned,
};

constexpr uint32_t kLastAction = 0x80000000;

/// The 30 low bits of a ligature action, which are signed.
int64_t ComponentOffset(uint32_t iAction) { return static_cast<int32_t>(iAction << 2) >> 2; }

}  // namespace

StateActions::StateActions(const LayoutTable& iTable, const StateFlow& iFlow, StateMachine& ioMachine)
    : _fTable(iTable),
      _fReport(iTable.report),
      _fFlow(iFlow),
      _fMachine(ioMachine),
      _fListLengths(ioMachine.entries.size()) {}

void StateActions::Check() {
  switch (_fMachine.kind) {
    case StateMachineKind::kContextual:
      if (!_fMachine.extras[0].isSound) return;
      _fMachine.IsExtended() ? CheckSubstitutions() : CheckClassicSubstitutes();
      break;
    case StateMachineKind::kLigature:
      if (_fMachine.extras[0].isSound) CheckLigatures();
      break;
    case StateMachineKind::kInsertion:
      CheckInsertions();
      break;
    case StateMachineKind::kKerning:
      if (_fMachine.extras[0].isSound) CheckValues();
      break;
    default:
      break;
  }
}

void StateActions::ForEachReadEntry(const EntryCheck& iCheck) const {
  for (size_t i = 0; i < _fMachine.entries.size(); ++i) {
    if (_fMachine.entries[i].isRead) iCheck(static_cast<uint16_t>(i), _fMachine.entries[i]);
  }
}

/// The entries that the check concerns, each with the classes of the font's own for which text can meet it.
void StateActions::ForEachPair(const std::function<bool(const StateMachine::Entry&)>& iConcerns,
                               const PairCheck& iCheck) const {
  std::vector<uint64_t> tPairs;  // the entry's index and the class
  _fFlow.ForEachUse([&](uint32_t, uint32_t iClass, uint16_t iIndex, const StateMachine::Entry& iEntry) {
    if (iClass < StateMachine::kFirstOwnClass || !iConcerns(iEntry)) return;
    tPairs.push_back(uint64_t{iIndex} << 32 | iClass);
  });
  std::ranges::sort(tPairs);
  tPairs.erase(std::unique(tPairs.begin(), tPairs.end()), tPairs.end());
  for (const uint64_t tPair : tPairs) {
    const auto tIndex = static_cast<uint16_t>(tPair >> 32);
    iCheck(tIndex, _fMachine.entries[tIndex], static_cast<uint32_t>(tPair));
  }
}

void StateActions::Make(uint16_t iGlyph) {
  if (_fTable.IsBeyondFont(iGlyph)) _fMachine.glyphsMade.push_back(iGlyph);
}

/// Judges the words of a class's glyphs in an array that is indexed by glyphs, from its word for glyph 0 on.
void StateActions::CheckGlyphWords(uint16_t iIndex, uint32_t iClass, int64_t iBase, const LayoutSection& iSection,
                                   uint16_t iRank, const char* iBeyondTable, const char* iBeyondSection) {
  const StateMachine::ClassGlyphs& tGlyphs = _fMachine.classes[iClass];
  const auto tAllIn = [&](int64_t iBegin, int64_t iEnd) {
    return std::ranges::all_of(std::initializer_list<uint32_t>{tGlyphs.lowest, tGlyphs.highest}, [&](uint32_t iGlyph) {
      const int64_t tAt = iBase + 2 * int64_t{iGlyph};
      return tAt >= iBegin && tAt + 2 <= iEnd;
    });
  };
  const LayoutWhere tWhere = {_fMachine.entryTable + iIndex * _fMachine.EntrySize(), tGlyphs.lowest};
  if (!tAllIn(0, static_cast<int64_t>(_fTable.Size()))) {
    _fReport.Report(iRank, Severity::kFatalError, iBeyondTable, {iIndex, iClass, tGlyphs.lowest, tGlyphs.highest},
                    tWhere);
  } else if (!tAllIn(static_cast<int64_t>(iSection.begin), static_cast<int64_t>(iSection.end))) {
    _fReport.Report(static_cast<uint16_t>(iRank + 1), Severity::kMajorError, iBeyondSection,
                    {iIndex, iClass, tGlyphs.lowest, tGlyphs.highest}, tWhere);
  }
}

// Contextual substitution.

void StateActions::CheckSubstitutions() {
  std::set<uint16_t> tIndices;
  ForEachReadEntry([&](uint16_t, const StateMachine::Entry& iEntry) {
    for (size_t i = 0; i < 2; ++i) {
      if (_fMachine.HasWord(iEntry, i)) tIndices.insert(iEntry.words[i]);
    }
  });
  std::set<uint32_t> tChecked;  // offsets
  const LayoutSection& tSection = _fMachine.extras[0].section;
  for (const uint16_t tIndex : tIndices) {
    const uint64_t tAt = tSection.begin + 4 * uint64_t{tIndex};
    if (!_fTable.bytes.Holds(tAt, 4)) {
      _fReport.Report(kSubstitutionBeyondTable, Severity::kFatalError,
                      "Substitution %d lies beyond the end of the table", {tIndex}, {tAt});
      continue;
    }
    if (tAt + 4 > tSection.end) {
      _fReport.Report(kSubstitutionBeyondSection, Severity::kMajorError,
                      "Substitution %d lies beyond the end of the substitution table", {tIndex}, {tAt});
    }
    const uint32_t tOffset = _fTable.bytes.U32(tAt);
    if (tOffset == 0) {
      _fReport.Report(kSubstitutionNowhere, Severity::kMajorError, "Substitution %d has the offset 0", {tIndex}, {tAt});
    } else if (tChecked.insert(tOffset).second) {
      CheckSubstitution(tIndex, tSection.begin + tOffset);
    }
  }
}

void StateActions::CheckSubstitution(uint16_t iIndex, uint64_t iAt) {
  LookupChecker tChecker(_fTable, iAt, _fMachine.limit, "lookup of substitution " + std::to_string(iIndex));
  for (const LookupPiece& tPiece : tChecker.Check()) {
    if (_fTable.IsBeyondFont(tPiece.last)) _fMachine.glyphsTaken.push_back(tPiece);
    Make(tPiece.value);
  }
}

void StateActions::CheckClassicSubstitutes() {
  constexpr size_t kCurrent = 1;
  ForEachPair([&](const StateMachine::Entry& iEntry) { return _fMachine.HasWord(iEntry, kCurrent); },
              [&](uint16_t iIndex, const StateMachine::Entry& iEntry, uint32_t iClass) {
                const auto tWord = static_cast<int16_t>(iEntry.words[kCurrent]);
                CheckGlyphWords(iIndex, iClass, static_cast<int64_t>(_fMachine.start) + 2 * int64_t{tWord},
                                _fMachine.extras[0].section, kSubstitutesBeyondTable,
                                "Entry %d, class %d: the substitutes of glyphs %d to %d lie outside the table",
                                "Entry %d, class %d: the substitutes of glyphs %d to %d lie outside the substitution "
                                "table");
              });
}

// Ligatures.

void StateActions::CheckLigatures() {
  ForEachReadEntry([this](uint16_t iIndex, const StateMachine::Entry& iEntry) {
    if (_fMachine.HasLigatureList(iEntry)) CheckLigatureList(iIndex, iEntry);
  });
  if (_fMachine.extras[1].isSound) CheckComponentsOfClasses();
  if (_fMachine.extras[1].isSound && _fMachine.extras[2].isSound) CheckComponents();
}

uint64_t StateActions::LigatureListAt(const StateMachine::Entry& iEntry) const {
  return _fMachine.IsExtended() ? _fMachine.extras[0].section.begin + 4 * uint64_t{iEntry.words[0]}
                                : _fMachine.start + StateMachine::OffsetInFlags(iEntry);
}

void StateActions::CheckLigatureList(uint16_t iIndex, const StateMachine::Entry& iEntry) {
  const LayoutSection& tSection = _fMachine.extras[0].section;
  const uint64_t tList = LigatureListAt(iEntry);
  const uint16_t tOffset = StateMachine::OffsetInFlags(iEntry);
  if (!_fMachine.IsExtended() && tOffset % 4 != 0) {
    _fReport.Report(kActionsUnaligned, Severity::kMinorError,
                    "Entry %d: the ligature action offset 0x%4.4hx is not a multiple of four", {iIndex, tOffset},
                    {tList});
  }
  if (!_fTable.bytes.Holds(tList, 4)) {
    _fReport.Report(kActionsBeyondTable, Severity::kFatalError,
                    "Entry %d: the ligature actions at 0x%08lX lie beyond the end of the table", {iIndex, tList},
                    {tList});
    return;
  }
  const bool tIsInSection = tSection.Holds(tList, tList + 4);
  if (!tIsInSection) {
    _fReport.Report(kActionsBeyondSection, Severity::kMajorError,
                    "Entry %d: the ligature actions at 0x%08lX lie outside the action table", {iIndex, tList}, {tList});
  }
  for (uint64_t tAction = tList; _fTable.bytes.Holds(tAction, 4); tAction += 4) {
    _fReport.Spend(1);
    if ((_fTable.bytes.U32(tAction) & kLastAction) == 0) continue;
    _fListLengths[iIndex] = static_cast<uint32_t>((tAction + 4 - tList) / 4);
    if (tIsInSection && tAction + 4 > tSection.end) {
      _fReport.Report(kActionsRunBeyondSection, Severity::kMajorError,
                      "Entry %d: the ligature actions at 0x%08lX run beyond the end of the action table",
                      {iIndex, tList}, {tList});
    }
    return;
  }
  _fReport.Report(kActionsRunBeyondTable, Severity::kFatalError,
                  "Entry %d: the ligature actions at 0x%08lX run beyond the end of the table", {iIndex, tList},
                  {tList});
}

/// The first action of a list takes the current glyph from the stack, when the entry has just put it there. Which
/// glyphs the others meet is not known.
void StateActions::CheckComponentsOfClasses() {
  const auto tPopsCurrent = [this](const StateMachine::Entry& iEntry) {
    return (iEntry.flags & StateMachine::kSetMark) != 0 && _fMachine.HasLigatureList(iEntry) &&
           _fTable.bytes.Holds(LigatureListAt(iEntry), 4);
  };
  const StateMachine::Extra& tComponents = _fMachine.extras[1];
  const uint64_t tBase = _fMachine.IsExtended() ? tComponents.section.begin : _fMachine.start;
  ForEachPair(tPopsCurrent, [&](uint16_t iIndex, const StateMachine::Entry& iEntry, uint32_t iClass) {
    const int64_t tOffset = ComponentOffset(_fTable.bytes.U32(LigatureListAt(iEntry)));
    CheckGlyphWords(iIndex, iClass, static_cast<int64_t>(tBase) + 2 * tOffset, tComponents.section,
                    kComponentsBeyondTable,
                    "Entry %d, class %d: the components of glyphs %d to %d lie outside the table",
                    "Entry %d, class %d: the components of glyphs %d to %d lie outside the component table");
  });
}

void StateActions::CheckComponents() {
  const LayoutSection& tComponents = _fMachine.extras[1].section;
  const LayoutSection& tLigatures = _fMachine.extras[2].section;
  const uint64_t tComponentCount = tComponents.Size() / 2;
  const uint64_t tLigatureCount = tLigatures.Size() / 2;
  _fReport.Spend(tComponentCount);
  _fReport.Spend(tLigatureCount);
  LayoutTally tBeyond;
  for (uint64_t i = 0; i < tComponentCount; ++i) {
    const uint16_t tValue = _fTable.bytes.U16(tComponents.begin + 2 * i);
    const bool tLeadsBeyond =
        _fMachine.IsExtended() ? tValue >= tLigatureCount : _fMachine.start + tValue + 2 > tLigatures.end;
    if (tLeadsBeyond) tBeyond.Add({i, tValue}, {tComponents.begin + 2 * i});
  }
  _fReport.ReportCount(kComponentBeyondLigatures, Severity::kMinorError,
                       "%d components lead beyond the ligature table; the first is component %d (%d)", tBeyond);
  for (uint64_t i = 0; i < tLigatureCount; ++i) Make(_fTable.bytes.U16(tLigatures.begin + 2 * i));
}

// Insertion.

void StateActions::CheckInsertions() {
  LayoutTally tHalfGiven;
  const bool tHasLists = !_fMachine.IsExtended() || _fMachine.extras[0].isSound;
  ForEachReadEntry([&](uint16_t iIndex, const StateMachine::Entry& iEntry) {
    bool tIsHalfGiven = false;
    for (size_t i = 0; i < 2; ++i) {
      tIsHalfGiven |= (_fMachine.InsertionCount(iEntry, i) != 0) != _fMachine.HasWord(iEntry, i);
      if (tHasLists && _fMachine.Inserts(iEntry, i)) CheckInsertion(iIndex, iEntry, i);
    }
    if (tIsHalfGiven) tHalfGiven.Add({iIndex}, {_fMachine.entryTable + iIndex * _fMachine.EntrySize()});
  });
  _fReport.ReportCount(kInsertionHalfGiven, Severity::kInformation,
                       "%d entries have an insertion list or count without the other; the first is entry %d",
                       tHalfGiven);
  _fReport.ReportCount(kDeletedGlyphInserted, Severity::kInformation, "%d inserted glyphs are the deleted glyph",
                       _fDeletedInsertions);
}

void StateActions::CheckInsertion(uint16_t iIndex, const StateMachine::Entry& iEntry, size_t iWhich) {
  const StateMachine::Extra& tExtra = _fMachine.extras[0];
  const uint16_t tWord = iEntry.words[iWhich];
  const uint64_t tList = _fMachine.IsExtended() ? tExtra.section.begin + 2 * uint64_t{tWord} : _fMachine.start + tWord;
  const uint64_t tSectionEnd = _fMachine.IsExtended() ? tExtra.section.end : _fMachine.limit;
  const uint32_t tCount = _fMachine.InsertionCount(iEntry, iWhich);
  const uint64_t tEnd = tList + 2 * uint64_t{tCount};
  if (tEnd > _fTable.Size()) {
    _fReport.Report(kInsertionBeyondTable, Severity::kFatalError,
                    "Entry %d: the inserted glyphs at 0x%08lX lie beyond the end of the table", {iIndex, tList},
                    {tList});
  } else if (tEnd > tSectionEnd) {
    _fReport.Report(kInsertionBeyondSection, Severity::kMajorError,
                    "Entry %d: the inserted glyphs at 0x%08lX lie outside the insertion list", {iIndex, tList},
                    {tList});
  }
  _fReport.Spend(tCount);
  for (uint64_t tAt = tList; tAt < tEnd && _fTable.bytes.Holds(tAt, 2); tAt += 2) {
    const uint16_t tGlyph = _fTable.bytes.U16(tAt);
    if (tGlyph == kDeletedGlyph) _fDeletedInsertions.Add({}, {tAt});
    Make(tGlyph);
  }
}

// Kerning.

void StateActions::CheckValues() {
  ForEachReadEntry([this](uint16_t iIndex, const StateMachine::Entry& iEntry) {
    if (_fMachine.Acts(iEntry)) CheckValueList(iIndex, iEntry);
  });
}

void StateActions::CheckValueList(uint16_t iIndex, const StateMachine::Entry& iEntry) {
  const uint16_t tOffset = StateMachine::OffsetInFlags(iEntry);
  const uint64_t tList = _fMachine.start + tOffset;
  if (tOffset % 2 != 0) {
    _fReport.Report(kValuesUnaligned, Severity::kMinorError, "Entry %d: the value offset 0x%4.4hx is odd",
                    {iIndex, tOffset}, {tList});
  }
  if (!_fTable.bytes.Holds(tList, 2)) {
    _fReport.Report(kValuesBeyondTable, Severity::kFatalError,
                    "Entry %d: the values at 0x%08lX lie beyond the end of the table", {iIndex, tList}, {tList});
    return;
  }
  if (!_fMachine.extras[0].section.Holds(tList, tList + 2)) {
    _fReport.Report(kValuesBeyondSection, Severity::kMajorError,
                    "Entry %d: the values at 0x%08lX lie outside the value table", {iIndex, tList}, {tList});
  }
  for (uint64_t tAt = tList; _fTable.bytes.Holds(tAt, 2); tAt += 2) {
    _fReport.Spend(1);
    if (_fTable.bytes.U16(tAt) % 2 == 0) continue;
    _fListLengths[iIndex] = static_cast<uint32_t>((tAt + 2 - tList) / 2);
    return;
  }
  _fReport.Report(kValuesRunBeyondTable, Severity::kFatalError,
                  "Entry %d: the values at 0x%08lX run beyond the end of the table", {iIndex, tList}, {tList});
}
