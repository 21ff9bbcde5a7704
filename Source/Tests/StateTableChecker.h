#pragma once

#include <cstdint>
#include <optional>

#include "Tests/StateMachine.h"

/// Checks a state table of a layout table, of either width and any kind: that its parts lie where they belong, and what
/// the machine does with text (standstill, actions that can never run, marks and stacks). Works on the bytes alone.
///
/// iAt is where the table's header is, iLimit the end of the subtable that holds it, both in bytes from the start of
/// the table. Returns the machine for whoever asks more of it; none when it cannot be followed.
std::optional<StateMachine> CheckStateTable(const LayoutTable& iTable, uint64_t iAt, uint64_t iLimit,
                                            StateMachineKind iKind, StateTableWidth iWidth);
