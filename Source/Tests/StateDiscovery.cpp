#include "Tests/StateDiscovery.h"

#include <algorithm>

#include "Tests/StateClasses.h"

namespace {

/// In the order of the report.
enum StateRank : uint16_t {
  kHeaderBeyondTable = kRankState,
  kHeaderBeyondSubtable,
  kClassCount,
  kOffsetTooSmall,  // and one more for each name
  kOffsetTooBig = kOffsetTooSmall + 9,
  kOffsetBeyondSubtable = kOffsetTooBig + 9,
  kFirstStateBeyondTable,
  kNoRoom,
  kRoomForOne,
  kStateBeyondTable,
  kStateBeyondArray,
  kEntryBeyondTable,
  kEntryBeyondSection,
  kStateBeforeArray,
  kArrayOfInitialState,
  kStateBetweenRows,
  kStateUnreferenced,
  kEntryUnreferenced,
  kReservedFlags,
  kClassesNoByte,
};
/// What an offset of a header leads to, and the texts about it.
struct OffsetTexts {
  const char* name;
  const char* tooSmall[2];  // classic, extended
  const char* tooBig[2];
};
#define OFFSET_TEXTS(name)                                                                \
  {                                                                                       \
    name, {name " offset 0x%4.4hx is too small", name " offset 0x%8.8lx is too small"}, { \
      name " offset 0x%4.4hx is too big", name " offset 0x%8.8lx is too big"              \
    }                                                                                     \
  }
constexpr OffsetTexts kOffsetTexts[] = {
    OFFSET_TEXTS("Class table"),        OFFSET_TEXTS("State array"),           OFFSET_TEXTS("Entry table"),
    OFFSET_TEXTS("Substitution table"), OFFSET_TEXTS("Ligature action table"), OFFSET_TEXTS("Component table"),
    OFFSET_TEXTS("Ligature table"),     OFFSET_TEXTS("Insertion list"),        OFFSET_TEXTS("Value table"),
};
#undef OFFSET_TEXTS
enum OffsetName : size_t { kClassTable, kStateArray, kEntryTable, kSubstitutions, kActions, kInsertions = 7, kValues };

OffsetName FirstExtraName(StateMachineKind iKind) {
  switch (iKind) {
    case StateMachineKind::kLigature:
      return kActions;
    case StateMachineKind::kInsertion:
      return kInsertions;
    case StateMachineKind::kKerning:
      return kValues;
    default:
      return kSubstitutions;
  }
}

uint16_t ReservedFlags(const StateMachine& iMachine) {
  switch (iMachine.kind) {
    case StateMachineKind::kRearrangement:
      return 0x1FF0;
    case StateMachineKind::kContextual:
      return 0x3FFF;
    case StateMachineKind::kLigature:
      return iMachine.IsExtended() ? 0x1FFF : 0;
    default:
      return 0;
  }
}

/// How many states may precede the state array, in 'kern': at most as many rows as a 16-bit offset can pass over.
int32_t StatesBeforeArray(StateMachineKind iKind) {
  return iKind == StateMachineKind::kKerning ? 65536 / static_cast<int32_t>(StateMachine::kFirstOwnClass) : 0;
}

}  // namespace

StateDiscovery::StateDiscovery(const LayoutTable& iTable, uint64_t iAt, uint64_t iLimit, StateMachineKind iKind,
                               StateTableWidth iWidth)
    : _fTable(iTable), _fReport(iTable.report), _fMachine(iTable.bytes, iKind, iWidth, iAt, iLimit) {}

bool StateDiscovery::Discover() {
  if (!CheckHeader() || !CheckFirstStates()) return false;
  StateClasses(_fTable, _fClassTable, _fMachine).Read();
  FollowStates();
  ReportUnreferenced();
  CheckExtras();
  return true;
}

// The header.

uint64_t StateDiscovery::HeaderField(uint64_t iField) const {
  return _fMachine.IsExtended() ? _fTable.bytes.U32(_fMachine.start + 4 * iField)
                                : _fTable.bytes.U16(_fMachine.start + 2 * iField);
}

bool StateDiscovery::CheckHeader() {
  if (!CheckHeaderFits()) return false;
  const uint64_t tClassCount = HeaderField(0);
  if (tClassCount < StateMachine::kFirstOwnClass) {
    _fReport.Report(kClassCount, Severity::kFatalError, "The state table has %lu classes; there must be at least 4",
                    {tClassCount}, {_fMachine.start});
    return false;
  }
  if (!_fMachine.IsExtended() && tClassCount > 256) {
    _fReport.Report(kClassesNoByte, Severity::kTechnicalError,
                    "The state table has %lu classes; a class is only one byte", {tClassCount}, {_fMachine.start});
  }
  _fMachine.classCount = static_cast<uint32_t>(tClassCount);
  _fClassTable = HeaderField(1);
  _fStateArray = HeaderField(2);
  _fEntryTable = HeaderField(3);
  const bool tSound[] = {CheckOffset(kClassTable, _fClassTable), CheckOffset(kStateArray, _fStateArray),
                         CheckOffset(kEntryTable, _fEntryTable)};
  if (!std::ranges::all_of(tSound, [](bool iSound) { return iSound; })) return false;
  MeasureSections();
  return true;
}

bool StateDiscovery::CheckHeaderFits() {
  const uint64_t tSize = (4 + _fMachine.ExtraCount()) * (_fMachine.IsExtended() ? 4 : 2);
  const uint64_t tStart = _fMachine.start;
  const uint64_t tLimit = _fMachine.limit;
  if (const uint64_t tLeft = _fTable.Left(tStart); tSize > tLeft) {
    _fReport.Report(kHeaderBeyondTable, Severity::kFatalError,
                    "The state table header needs %d bytes; only %d are left in the table", {tSize, tLeft}, {tStart});
    return false;
  }
  if (const uint64_t tLeft = tLimit > tStart ? tLimit - tStart : 0; tSize > tLeft) {
    _fReport.Report(kHeaderBeyondSubtable, Severity::kMajorError,
                    "The state table header needs %d bytes; only %d are left in the subtable", {tSize, tLeft},
                    {tStart});
    return false;
  }
  return true;
}

bool StateDiscovery::CheckOffset(size_t iName, uint64_t iOffset) {
  const OffsetTexts& tTexts = kOffsetTexts[iName];
  const size_t tWidth = _fMachine.IsExtended() ? 1 : 0;
  const auto tRank = [iName](uint16_t iFirst) { return static_cast<uint16_t>(iFirst + iName); };
  const uint64_t tHeaderSize = (4 + _fMachine.ExtraCount()) * (tWidth == 1 ? 4 : 2);
  const uint64_t tAt = _fMachine.start + iOffset;
  if (iOffset < tHeaderSize) {
    _fReport.Report(tRank(kOffsetTooSmall), Severity::kMajorError, tTexts.tooSmall[tWidth], {iOffset},
                    {_fMachine.start});
    return false;
  }
  if (tAt >= _fTable.Size()) {
    _fReport.Report(tRank(kOffsetTooBig), Severity::kFatalError, tTexts.tooBig[tWidth], {iOffset}, {_fMachine.start});
    return false;
  }
  if (tAt >= _fMachine.limit) {
    _fReport.Report(kOffsetBeyondSubtable, Severity::kTechnicalError,
                    "%@ offset 0x%08lX lies beyond the end of the subtable", {tTexts.name, iOffset}, {_fMachine.start});
  }
  return true;
}

void StateDiscovery::MeasureSections() {
  const uint64_t tStart = _fMachine.start;
  _fSectionOffsets = {_fClassTable, _fStateArray, _fEntryTable, _fMachine.limit - tStart, _fTable.Size() - tStart};
  for (size_t i = 0; i < _fMachine.ExtraCount(); ++i) {
    _fMachine.extras[i].offset = HeaderField(4 + i);
    _fSectionOffsets.push_back(_fMachine.extras[i].offset);
  }
  VornFontTester::SortTableOffsets(_fSectionOffsets);
  _fMachine.stateArray = tStart + _fStateArray;
  _fMachine.entryTable = tStart + _fEntryTable;
  _fMachine.rowCount = SectionAt(_fStateArray).Size() / _fMachine.RowSize();
  _fMachine.slotCount = SectionAt(_fEntryTable).Size() / _fMachine.EntrySize();
}

/// From a sound offset to the next one that something begins or ends at.
LayoutSection StateDiscovery::SectionAt(uint64_t iOffset) const {
  return {_fMachine.start + iOffset, _fMachine.start + VornFontTester::NextOffset(_fSectionOffsets, iOffset)};
}

bool StateDiscovery::CheckFirstStates() {
  const LayoutWhere tWhere = {_fMachine.stateArray};
  if (_fMachine.RowSize() > _fTable.Left(_fMachine.stateArray)) {
    _fReport.Report(kFirstStateBeyondTable, Severity::kFatalError, "The first state lies beyond the end of the table",
                    {}, tWhere);
    return false;
  }
  if (_fMachine.rowCount == 0) {
    _fReport.Report(kNoRoom, Severity::kMajorError, "The state array has no room for a state", {}, tWhere);
  } else if (_fMachine.rowCount == 1) {
    _fReport.Report(kRoomForOne, Severity::kTechnicalError,
                    "The state array has room for 1 state; it should have at least 2", {}, tWhere);
  }
  return true;
}

// States and entries.

void StateDiscovery::FollowStates() {
  AddState(0, 0);
  if (_fMachine.rowCount >= 2) AddState(1, 0);
  for (uint32_t i = 0; i < _fMachine.states.size(); ++i) ReadState(i);
}

uint32_t StateDiscovery::AddState(int32_t iNumber, uint16_t iReachedFrom) {
  const auto tIndex = static_cast<size_t>(iNumber + StatesBeforeArray(_fMachine.kind));
  if (tIndex >= _fStateOfNumber.size()) _fStateOfNumber.resize(tIndex + 1, StateMachine::kNoState);
  uint32_t& tState = _fStateOfNumber[tIndex];
  if (tState == StateMachine::kNoState) {
    tState = static_cast<uint32_t>(_fMachine.states.size());
    const int64_t tOffset = iNumber * static_cast<int64_t>(_fMachine.RowSize());
    const auto tRow = static_cast<uint64_t>(static_cast<int64_t>(_fMachine.stateArray) + tOffset);
    _fMachine.states.push_back({iNumber, tRow, _fTable.bytes.Holds(tRow, _fMachine.RowSize()), iReachedFrom});
  }
  return tState;
}

void StateDiscovery::ReadState(uint32_t iState) {
  const StateMachine::State tState = _fMachine.states[iState];
  if (!tState.hasRow) {
    _fReport.Report(kStateBeyondTable, Severity::kFatalError,
                    "State %d, reached from entry %d, lies beyond the end of the table",
                    {tState.number, tState.reachedFrom}, {tState.row});
    return;
  }
  if (tState.number > 0 && static_cast<uint64_t>(tState.number) >= _fMachine.rowCount) {
    _fReport.Report(kStateBeyondArray, Severity::kMajorError,
                    "State %d, reached from entry %d, lies beyond the end of the state array",
                    {tState.number, tState.reachedFrom}, {tState.row});
  }
  _fReport.Spend(_fMachine.classCount);
  for (uint32_t tClass = 0; tClass < _fMachine.classCount; ++tClass) {
    const uint16_t tEntry = _fMachine.Cell(iState, tClass);
    if (tEntry >= _fMachine.entries.size()) _fMachine.entries.resize(tEntry + size_t{1});
    if (!_fMachine.entries[tEntry].isSeen) ReadEntry(tEntry, tState.number, tClass);
  }
}

void StateDiscovery::ReadEntry(uint16_t iEntry, int32_t iState, uint32_t iClass) {
  StateMachine::Entry& tEntry = _fMachine.entries[iEntry];
  tEntry.isSeen = true;
  _fReport.Spend(1);
  const uint64_t tAt = _fMachine.entryTable + iEntry * _fMachine.EntrySize();
  if (!_fTable.bytes.Holds(tAt, _fMachine.EntrySize())) {
    _fReport.Report(kEntryBeyondTable, Severity::kFatalError,
                    "Entry %d, used by state %d for class %d, lies beyond the end of the table",
                    {iEntry, iState, iClass}, {tAt});
    return;
  }
  if (iEntry >= _fMachine.slotCount) {
    _fReport.Report(kEntryBeyondSection, Severity::kMajorError,
                    "Entry %d, used by state %d for class %d, lies beyond the end of the entry table",
                    {iEntry, iState, iClass}, {tAt});
  }
  tEntry.isRead = true;
  tEntry.flags = _fTable.bytes.U16(tAt + 2);
  for (size_t i = 0; i < _fMachine.WordCount(); ++i) tEntry.words[i] = _fTable.bytes.U16(tAt + 4 + 2 * i);
  tEntry.next = NewState(iEntry, _fTable.bytes.U16(tAt));
}

/// The state that an entry leads to, by its first word; none when that is not the place of one.
uint32_t StateDiscovery::NewState(uint16_t iEntry, uint16_t iValue) {
  if (_fMachine.IsExtended()) return AddState(iValue, iEntry);
  if (iValue < _fStateArray && IsBeforeArray(iEntry, iValue)) return StateMachine::kNoState;
  const int32_t tOffset = iValue - static_cast<int32_t>(_fStateArray);
  const auto tRowSize = static_cast<int32_t>(_fMachine.RowSize());
  if (tOffset % tRowSize != 0) {
    _fReport.Report(kStateBetweenRows, Severity::kMajorError,
                    "Entry %d: the new state offset 0x%4.4hx is not the start of a state", {iEntry, iValue},
                    {_fMachine.entryTable + iEntry * _fMachine.EntrySize()});
    return StateMachine::kNoState;
  }
  return AddState(tOffset / tRowSize, iEntry);
}

/// Judges an offset before the state array: whether no state can be there.
bool StateDiscovery::IsBeforeArray(uint16_t iEntry, uint16_t iValue) {
  if (!MayPrecedeArray(iValue)) {
    _fReport.Report(kStateBeforeArray, Severity::kMajorError,
                    "Entry %d: the new state offset 0x%4.4hx lies before the state array", {iEntry, iValue},
                    {_fMachine.entryTable + iEntry * _fMachine.EntrySize()});
    return true;
  }
  if (!_fNamedInitialState) {
    _fReport.Report(kArrayOfInitialState, Severity::kInformation,
                    "The state array offset is that of the initial state, not of the array", {},
                    {_fMachine.stateArray});
    _fNamedInitialState = true;
  }
  return false;
}

/// In 'kern' the state array's offset may be that of the initial state, with others before it: behind the header, and
/// not among the classes.
bool StateDiscovery::MayPrecedeArray(uint16_t iValue) const {
  if (_fMachine.kind != StateMachineKind::kKerning) return false;
  const uint64_t tHeaderSize = (4 + _fMachine.ExtraCount()) * 2;
  const uint64_t tClassesEnd = _fClassTable + 4 + _fTable.bytes.U16(_fMachine.start + _fClassTable + 2);
  return iValue >= tHeaderSize && (iValue + _fMachine.RowSize() <= _fClassTable || iValue >= tClassesEnd);
}

void StateDiscovery::ReportUnreferenced() {
  _fReport.Spend(_fMachine.rowCount);
  for (uint64_t i = 0; i < _fMachine.rowCount; ++i) {
    const uint64_t tIndex = i + static_cast<uint64_t>(StatesBeforeArray(_fMachine.kind));
    if (tIndex < _fStateOfNumber.size() && _fStateOfNumber[tIndex] != StateMachine::kNoState) continue;
    _fReport.Report(kStateUnreferenced, Severity::kInformation, "State %d is never referenced", {i},
                    {_fMachine.stateArray + i * _fMachine.RowSize()});
  }
  _fReport.Spend(_fMachine.slotCount);
  const auto tAt = [this](uint64_t iEntry) { return _fMachine.entryTable + iEntry * _fMachine.EntrySize(); };
  // The lists of classic insertion follow the entries, and look like more of them.
  const bool tListsFollow = _fMachine.kind == StateMachineKind::kInsertion && !_fMachine.IsExtended();
  for (uint64_t i = 0; i < _fMachine.slotCount && !tListsFollow; ++i) {
    if (i < _fMachine.entries.size() && _fMachine.entries[i].isSeen) continue;
    _fReport.Report(kEntryUnreferenced, Severity::kInformation, "Entry %d is never referenced", {i}, {tAt(i)});
  }
  LayoutTally tReserved;
  for (size_t i = 0; i < _fMachine.entries.size(); ++i) {
    const StateMachine::Entry& tEntry = _fMachine.entries[i];
    if (tEntry.isRead && (tEntry.flags & ReservedFlags(_fMachine)) != 0) tReserved.Add({i, tEntry.flags}, {tAt(i)});
  }
  _fReport.ReportCount(kReservedFlags, Severity::kTechnicalError,
                       "%d entries have reserved flags set; the first is entry %d (0x%04X)", tReserved);
}

/// The tables that actions need; in a machine that never acts their offsets are often 0.
void StateDiscovery::CheckExtras() {
  const auto tActs = [this](const StateMachine::Entry& iEntry) { return iEntry.isRead && _fMachine.Acts(iEntry); };
  if (std::ranges::none_of(_fMachine.entries, tActs)) return;
  for (size_t i = 0; i < _fMachine.ExtraCount(); ++i) {
    StateMachine::Extra& tExtra = _fMachine.extras[i];
    tExtra.isSound = CheckOffset(FirstExtraName(_fMachine.kind) + i, tExtra.offset);
    if (tExtra.isSound) tExtra.section = SectionAt(tExtra.offset);
  }
}
