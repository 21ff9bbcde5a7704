// The structure test of 'cmap' and look-ups of characters: over a font made here, and over the font file that the
// environment variable VORN_BENCH_FONT names, if any.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <numeric>
#include <random>
#include <string>

#include "TableAccess/TableClasses/FTFontTable_cmap.h"
#include "TestRuns.h"
#include "Tests/VornFontTesterStructure_cmap.h"
#include "support/CmapBuilder.h"

namespace {

using test::Bytes;

constexpr uint16_t kGlyphs = 60000;

/// As a large font has it: format 4 with deltas and arrays, format 12 with a group for every few characters.
Bytes LargeCmap() {
  std::vector<test::CmapSegment> segments;
  std::vector<test::CmapGroup> groups;
  for (uint32_t start = 0x20, glyph = 1; start < 0xF000; start += 24, glyph += 20) {
    const auto first = static_cast<uint16_t>(start);
    const auto last = static_cast<uint16_t>(start + 19);
    segments.push_back({first, last, static_cast<int16_t>(glyph - start), {}});
    for (uint32_t i = 0; start % 5 == 0 && i < 20; ++i)
      segments.back().glyphs.push_back(static_cast<uint16_t>(glyph + 19 - i));
    groups.push_back({start, start + 9, glyph});
    groups.push_back({start + 10, start + 19, glyph + 10});
  }
  for (auto& segment : segments) segment.idDelta = segment.glyphs.empty() ? segment.idDelta : int16_t{0};
  return test::CmapTable({{0, 3, test::CmapFormat4(segments)}, {3, 10, test::CmapGroups(12, groups)}});
}

Bytes FontBytes() {
  if (const char* path = std::getenv("VORN_BENCH_FONT")) {
    std::ifstream file(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), {});
  }
  return test::GoodFont().Table("maxp", test::MaxpTable(kGlyphs)).Table("cmap", LargeCmap()).Build();
}

void StructureTest(benchmark::State& state) {
  const Bytes bytes = FontBytes();
  const FTFont_sfnt font(nullptr, Tova::ByteView(bytes.data(), bytes.size()));
  const FTFontTable* cmap = font.GetTaggedTable(FTTag("cmap"));
  for (auto _ : state) benchmark::DoNotOptimize(Run<VornFontTesterStructure_cmap>(font));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(cmap ? cmap->GetSize() : 0));
}
BENCHMARK(StructureTest);

/// Reading the subtable and one look-up.
void FirstLookUp(benchmark::State& state) {
  const Bytes bytes = FontBytes();
  for (auto _ : state) {
    const FTFont_sfnt font(nullptr, Tova::ByteView(bytes.data(), bytes.size()));
    benchmark::DoNotOptimize(font.UnicodeToGlyphID('A'));
  }
}
BENCHMARK(FirstLookUp);

/// Codes of the first plane in random order, so that no look-up profits from the one before.
template <class Ask>
void LookUps(benchmark::State& state, Ask ask) {
  const Bytes bytes = FontBytes();
  const FTFont_sfnt font(nullptr, Tova::ByteView(bytes.data(), bytes.size()));
  std::vector<uint16_t> codes(0x10000);
  std::iota(codes.begin(), codes.end(), uint16_t{0});
  std::ranges::shuffle(codes, std::mt19937(1));
  ask(font, codes[0]);
  for (auto _ : state) {
    for (const uint16_t code : codes) benchmark::DoNotOptimize(ask(font, code));
  }
  const double count = static_cast<double>(state.iterations()) * static_cast<double>(codes.size());
  state.counters["s/lookup"] = benchmark::Counter(count, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK_CAPTURE(LookUps, UnicodeToGlyph,
                  [](const FTFont_sfnt& font, uint16_t code) { return font.UnicodeToGlyphID(code); });
BENCHMARK_CAPTURE(LookUps, GlyphToUnicode,
                  [](const FTFont_sfnt& font, uint16_t code) { return font.GlyphIDToUnicode(code); });

}  // namespace
