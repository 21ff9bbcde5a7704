#include <benchmark/benchmark.h>

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TestRuns.h"
#include "Tests/InstructionStream.h"
#include "Tests/VornFontTesterInstructions_prep.h"
#include "support/FontBuilder.h"

namespace {

constexpr size_t kStreamSize = 1 << 20;

/// What glyph programs are made of: short pushes, points moved, a condition and a long push now and then.
test::Bytes TypicalProgram() {
  const test::Bytes piece = {0xB1, 5,    9,    0x3C, 0x2F, 0x3C, 0x40, 4,    1,    2,    3,    4,    0x10,
                             0x32, 0x58, 0x33, 0x1B, 0x39, 0x59, 0xB8, 0x01, 0x02, 0x5D, 0x76, 0xC3, 0x30};
  test::Bytes program;
  while (program.size() < kStreamSize) program.insert(program.end(), piece.begin(), piece.end());
  return program;
}

void WalkInstructions(benchmark::State& state) {
  const test::Bytes program = TypicalProgram();
  const TestOptions options = AllSeverities();
  const Tova::ByteView bytes(program.data(), program.size());
  for (auto _ : state) {
    FindingSink sink;
    const FTFont_sfnt font;  // anew, since its work is bounded
    const VornFontTesterInstructions_prep tester(&font, sink, &options);
    if (!CheckTrueTypeInstructionStream(&tester, bytes, bytes.Size(), nullptr, nullptr)) state.SkipWithError("failed");
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(program.size()));
}
BENCHMARK(WalkInstructions)->Unit(benchmark::kMillisecond);

/// The yardstick: every byte looked up in a table of 256 through the same view.
void ReadBytes(benchmark::State& state) {
  const test::Bytes program = TypicalProgram();
  const Tova::ByteView bytes(program.data(), program.size());
  for (auto _ : state) {
    uint64_t counts[256] = {};
    for (uint64_t at = 0; at < bytes.Size(); ++at) ++counts[bytes.U8(at)];
    benchmark::DoNotOptimize(counts);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(program.size()));
}
BENCHMARK(ReadBytes)->Unit(benchmark::kMillisecond);

}  // namespace
