#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TestRuns.h"
#include "Tests/VornFontTesterStructure_glyf.h"
#include "support/GlyphBuilder.h"

namespace {

/// The font that VORN_BENCH_FONT names; without it one of 60,000 glyphs of two contours, every eighth a compound.
test::Bytes BenchmarkFont() {
  if (const char* path = std::getenv("VORN_BENCH_FONT")) {
    std::ifstream file(path, std::ios::binary);
    return test::Bytes(std::istreambuf_iterator<char>(file), {});
  }
  std::vector<test::Bytes> glyphs;
  for (int i = 0; i < 60000; ++i) {
    if (i % 8 == 7) {
      glyphs.push_back(test::CompoundGlyph({{3, static_cast<uint16_t>(i - 1)}, {3, static_cast<uint16_t>(i - 2)}}));
      continue;
    }
    std::vector<test::Contour> contours(2);
    for (int point = 0; point < 40; ++point) {
      contours[point < 20 ? 0 : 1].push_back(
          {.x = point * 7 + i % 100, .y = point * point % 300, .onCurve = point % 3 == 0});
    }
    glyphs.push_back(test::SimpleGlyph(contours, test::Bytes(30, 0x4B)));
  }
  return test::OutlineFont(glyphs).Build();
}

void Report(benchmark::State& state, const FTFont_sfnt& font) {
  state.SetItemsProcessed(state.iterations() * font.CountFontGlyphs());
  const FTFontTable* table = font.GetTaggedTable(FTFontTable_glyf::kTag);
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(table ? table->GetSize() : 0));
}

/// Only decoding: the box of every glyph's points.
void DecodeGlyphs(benchmark::State& state) {
  const test::Bytes bytes = BenchmarkFont();
  const Tova::ByteView view(bytes.data(), bytes.size());
  for (auto _ : state) {
    const FTFont_sfnt font(nullptr, view);
    const auto& glyphs = *font.FindTable<FTFontTable_glyf>();
    for (uint32_t i = 0; i < font.CountFontGlyphs(); ++i) {
      const FTTrueTypeGlyph glyph = glyphs.GetGlyph(i);
      if (glyph.IsSimpleGlyph()) benchmark::DoNotOptimize(FTSimpleTrueTypeGlyph(glyph).ComputeBoundingBox());
    }
  }
  Report(state, FTFont_sfnt(nullptr, view));
}
BENCHMARK(DecodeGlyphs)->Unit(benchmark::kMillisecond);

/// The whole structure test of 'glyf', without messages.
void CheckGlyphs(benchmark::State& state) {
  const test::Bytes bytes = BenchmarkFont();
  const Tova::ByteView view(bytes.data(), bytes.size());
  for (auto _ : state) {
    const FTFont_sfnt font(nullptr, view);
    benchmark::DoNotOptimize(Run<VornFontTesterStructure_glyf>(font));
  }
  Report(state, FTFont_sfnt(nullptr, view));
}
BENCHMARK(CheckGlyphs)->Unit(benchmark::kMillisecond);

}  // namespace
