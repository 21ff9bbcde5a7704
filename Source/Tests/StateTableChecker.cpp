#include "Tests/StateTableChecker.h"

#include <utility>

#include "Tests/StateActions.h"
#include "Tests/StateDiscovery.h"
#include "Tests/StateFlow.h"
#include "Tests/StateMemory.h"

std::optional<StateMachine> CheckStateTable(const LayoutTable& iTable, uint64_t iAt, uint64_t iLimit,
                                            StateMachineKind iKind, StateTableWidth iWidth) {
  StateDiscovery tDiscovery(iTable, iAt, iLimit, iKind, iWidth);
  if (!tDiscovery.Discover()) return std::nullopt;
  StateMachine& tMachine = tDiscovery.Machine();
  const StateFlow tFlow(tMachine);
  tFlow.Check(iTable.report);
  StateActions tActions(iTable, tFlow, tMachine);
  tActions.Check();
  StateMemory(tMachine, tFlow, tActions.ListLengths(), iTable.report).Check();
  return std::move(tMachine);
}
