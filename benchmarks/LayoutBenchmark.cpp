#include <benchmark/benchmark.h>

#include "Tests/VornFontTesterStructure_morx.h"
#include "support/FontBuilder.h"
#include "support/LayoutBuilder.h"

namespace {

using namespace test;

/// A subtable that replaces in some states what it leaves in others: so many states, each with 12 classes of its own.
Bytes Machine(uint32_t states) {
  MachineBuilder machine(StateMachineKind::kContextual, StateTableWidth::kExtended);
  constexpr uint16_t kClasses = 12;
  for (uint16_t i = 0; i < kClasses; ++i)
    machine.Class("c" + std::to_string(i), {uint16_t(10 * i), uint16_t(10 * i + 1)});
  const auto name = [](uint32_t state) { return "s" + std::to_string(state); };
  for (uint32_t i = 0; i < states; ++i) {
    std::map<std::string, std::string> cells;
    for (uint32_t c = 0; c < kClasses; ++c) cells["c" + std::to_string(c)] = "to " + std::to_string((i + c + 1) % 64);
    machine.State(name(i), cells);
  }
  for (uint32_t i = 0; i < 64; ++i) {
    machine.Entry(
        "to " + std::to_string(i),
        {.next = name((i * states) / 64 + i % 2 < states ? (i * states) / 64 + i % 2 : 0), .words = {0xFFFF, 0}});
  }
  return machine.Extra(TableBuilder().U32(4).Append(LookupFormat6({{0, 1}, {10, 11}}))).Build();
}

/// The test of a 'morx' table of many subtables.
void ExamineMorx(benchmark::State& state) {
  const std::vector<ChainSubtable> subtables(32, {1, Machine(static_cast<uint32_t>(state.range(0)))});
  const TableBuilder morx = ChainTable(StateTableWidth::kExtended, subtables);
  const Bytes bytes = FontBuilder().Table("maxp", MaxpTable(200)).Table("morx", morx).Build();
  const FTFont_sfnt font(nullptr, Tova::ByteView(bytes.data(), bytes.size()));
  TestOptions options;
  for (const Severity severity : kSeverities) options.severities.Add(severity);
  for (auto _ : state) {
    FindingSink sink;
    if (!TestStructure_morx(&font, sink, &options)) state.SkipWithError("does not apply");
    if (sink.Severities().Has(Severity::kFatalError)) state.SkipWithError("the table is broken");
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(morx.Size()));
}
BENCHMARK(ExamineMorx)->Arg(50)->Arg(500)->Unit(benchmark::kMillisecond);

}  // namespace
