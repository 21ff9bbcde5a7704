#include "Tests/StateMachine.h"

namespace {

constexpr uint16_t kVerb = 0x000F;           // rearrangement
constexpr uint16_t kInsertsBefore = 0x0800;  // insertion, current glyph

}  // namespace

uint64_t StateMachine::ExtraCount() const {
  switch (kind) {
    case StateMachineKind::kContextual:
    case StateMachineKind::kKerning:
      return 1;
    case StateMachineKind::kLigature:
      return 3;
    case StateMachineKind::kInsertion:
      return IsExtended() ? 1 : 0;
    default:
      return 0;
  }
}

uint64_t StateMachine::WordCount() const {
  switch (kind) {
    case StateMachineKind::kContextual:
    case StateMachineKind::kInsertion:
      return 2;
    case StateMachineKind::kLigature:
      return IsExtended() ? 1 : 0;
    default:
      return 0;
  }
}

bool StateMachine::Acts(const Entry& iEntry) const {
  switch (kind) {
    case StateMachineKind::kRearrangement:
      return (iEntry.flags & kVerb) != 0;
    case StateMachineKind::kContextual:
      return HasWord(iEntry, 0) || HasWord(iEntry, 1);
    case StateMachineKind::kLigature:
      return HasLigatureList(iEntry);
    case StateMachineKind::kInsertion:
      return Inserts(iEntry, 0) || Inserts(iEntry, 1);
    case StateMachineKind::kKerning:
    case StateMachineKind::kJustification:
      return OffsetInFlags(iEntry) != 0;
  }
  return false;
}

bool StateMachine::ChangesGlyph(const Entry& iEntry) const {
  switch (kind) {
    case StateMachineKind::kRearrangement:
    case StateMachineKind::kContextual:
    case StateMachineKind::kLigature:
      return Acts(iEntry);
    case StateMachineKind::kInsertion:
      return Inserts(iEntry, 0) && (iEntry.flags & kInsertsBefore) != 0;
    default:
      return false;
  }
}
