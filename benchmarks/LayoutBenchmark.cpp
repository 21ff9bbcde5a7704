#include <benchmark/benchmark.h>

#include "TestRuns.h"
#include "Tests/VornFontTesterStructure_morx.h"
#include "support/FontBuilder.h"
#include "support/LayoutBuilder.h"

namespace {

using namespace test;

/// A subtable of substitutions with so many states, all of which are reached, and 12 classes of its own.
Bytes Machine(uint32_t states) {
  constexpr uint32_t kClasses = 12;
  MachineBuilder machine(StateMachineKind::kContextual, StateTableWidth::kExtended);
  for (uint32_t c = 0; c < kClasses; ++c) machine.Class("class " + std::to_string(c), {uint16_t(10 * c)});
  for (uint32_t i = 0; i < states; ++i) {
    std::map<std::string, std::string> cells;
    for (uint32_t c = 0; c < kClasses; ++c) {
      cells["class " + std::to_string(c)] = "to " + std::to_string((i * kClasses + c + 1) % states);
    }
    machine.State("state " + std::to_string(i), cells);
    machine.Entry("to " + std::to_string(i), {.next = "state " + std::to_string(i), .words = {0xFFFF, 0}});
  }
  return machine.Extra(TableBuilder().U32(4).Append(LookupFormat6({{0, 1}, {10, 11}}))).Build();
}

/// The test of a 'morx' table of many subtables.
void ExamineMorx(benchmark::State& state) {
  const std::vector<ChainSubtable> subtables(32, {1, Machine(static_cast<uint32_t>(state.range(0)))});
  const TableBuilder morx = ChainTable(StateTableWidth::kExtended, subtables);
  const Bytes bytes = FontBuilder().Table("maxp", MaxpTable(200)).Table("morx", morx).Build();
  const FTFont_sfnt font(nullptr, Tova::ByteView(bytes.data(), bytes.size()));
  for (auto _ : state) {
    const SeveritySet found = Run<VornFontTesterStructure_morx>(font);
    if (found.Has(Severity::kFatalError)) state.SkipWithError("the table is broken");
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(morx.Size()));
}
BENCHMARK(ExamineMorx)->Arg(50)->Arg(500)->Unit(benchmark::kMillisecond);

}  // namespace
