// Makes the fonts in this folder, so that every byte of them can be explained.
// sample-maker FOLDER writes them; sample-maker --check FOLDER holds the folder's files against what it would write.

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/ByteView.h"
#include "support/CmapBuilder.h"
#include "support/GlyphBuilder.h"

namespace {

using namespace test;

// Glyph indices. Glyph 1 is empty and has no width, by custom.
enum : uint16_t { kNotdef, kNull, kSpace, kA, kO, kDieresis, kADieresis, kGlyphCount };

// In font units; the em is 1000.
constexpr int kLeft = 50, kRight = 550, kCapHeight = 700, kAccentTop = 900;
constexpr uint16_t kAdvance = 600;

constexpr uint16_t kOffsetsInUnits = 0x0002;  // of components

struct Glyph {
  TableBuilder record;
  uint16_t advance = kAdvance;
  int16_t sideBearing = kLeft;
};

/// A rectangle, clockwise, so that it is filled.
Contour Rectangle(int left, int bottom, int right, int top) {
  return {{left, bottom}, {left, top}, {right, top}, {right, bottom}};
}

/// Four curves that touch the sides of a rectangle and bend at its corners.
Contour Ring(int left, int bottom, int right, int top, bool hole = false) {
  const int x = (left + right) / 2, y = (bottom + top) / 2;
  if (hole) std::swap(bottom, top);
  return {{left, y},  {left, top, false},     {x, top},    {right, top, false},
          {right, y}, {right, bottom, false}, {x, bottom}, {left, bottom, false}};
}

TableBuilder ADieresis(uint16_t baseFlags, uint16_t accentFlags) {
  TableBuilder glyph = CompoundGlyph({{baseFlags, kA}, {accentFlags, kDieresis}});
  TableBuilder header;
  header.S16(-1).S16(kLeft).S16(0).S16(kRight).S16(kAccentTop);
  return header.Append(Bytes(glyph.Data().begin() + 10, glyph.Data().end()));
}

std::vector<Glyph> Glyphs(bool slanted) {
  const int apex = slanted ? 400 : 300;
  std::vector<Glyph> glyphs(kGlyphCount);
  glyphs[kNotdef].record = SimpleGlyph({Rectangle(50, 0, 550, 700), {{100, 50}, {500, 50}, {500, 650}, {100, 650}}});
  glyphs[kNull] = {{}, 0, 0};
  glyphs[kSpace] = {{}, 300, 0};
  glyphs[kA].record = SimpleGlyph({{{50, 0}, {apex, 700}, {550, 0}}, {{200, 150}, {400, 150}, {apex, 400}}});
  glyphs[kO].record = SimpleGlyph({Ring(50, 0, 550, 700), Ring(150, 100, 450, 600, true)});
  glyphs[kDieresis] = {SimpleGlyph({Rectangle(150, 800, 250, 900), Rectangle(350, 800, 450, 900)}), kAdvance, 150};
  glyphs[kADieresis].record = ADieresis(kOffsetsInUnits, kOffsetsInUnits);
  return glyphs;
}

TableBuilder Cmap() {
  return CmapTable({{3, 1,
                     CmapFormat4({{' ', ' ', kSpace - ' '},
                                  {'A', 'A', kA - 'A'},
                                  {'O', 'O', kO - 'O'},
                                  {0xA8, 0xA8, kDieresis - 0xA8},
                                  {0xC4, 0xC4, kADieresis - 0xC4}})}});
}

TableBuilder Head(bool slanted) {
  TableBuilder head = HeadTable().Patch("checkSumAdjustment", 0).Patch("style", slanted ? 2 : 0);
  return head.Patch("xMin", kLeft).Patch("xMax", kRight).Patch("yMax", kAccentTop);
}

TableBuilder Hhea(bool slanted) {
  TableBuilder hhea = HheaTable(kGlyphCount).Patch("ascender", kAccentTop).Patch("xMaxExtent", kRight);
  return hhea.Patch("caretSlopeRise", slanted ? 7 : 1).Patch("caretSlopeRun", slanted ? 1 : 0);
}

TableBuilder Maxp() {
  TableBuilder maxp = MaxpTable(kGlyphCount).Patch("maxPoints", 16).Patch("maxContours", 2);
  maxp.Patch("maxCompositePoints", 14).Patch("maxCompositeContours", 4);
  return maxp.Patch("maxComponentElements", 2).Patch("maxComponentDepth", 1);
}

TableBuilder Os2(bool slanted) {
  TableBuilder table;
  table.U16(4).S16(500).U16(400).U16(5).U16(0);  // version, average advance, weight, width, embedding permissions
  for (const int value : {650, 600, 0, 75, 650, 600, 0, 350}) table.S16(value);  // subscripts and superscripts
  table.S16(50).S16(300).Zeros(12).U32(3).Zeros(12).Text("VORN");  // strike-out, class, character ranges, vendor
  table.U16(slanted ? 0x0001 : 0x0040).U16(' ').U16(0xC4);         // style, first and last character
  table.S16(kAccentTop).S16(-200).S16(0).U16(kAccentTop).U16(200);
  return table.U32(1).U32(0).S16(500).S16(kCapHeight).U16(0).U16(' ').U16(1);
}

TableBuilder Names(const std::string& style) {
  return NameTable({{1, "Vorn Sample"},
                    {2, style},
                    {3, "Vorn Sample " + style + " 1.0"},
                    {4, "Vorn Sample " + style},
                    {5, "Version 1.0"},
                    {6, "VornSample-" + style}});
}

/// All tables, in the order of their tags.
FontBuilder Font(const std::vector<Glyph>& glyphs, bool slanted) {
  TableBuilder glyf, loca;
  std::vector<std::pair<uint16_t, int16_t>> metrics;
  for (const Glyph& glyph : glyphs) {
    loca.U32(glyf.Size());
    glyf.Append(glyph.record).Zeros((4 - glyph.record.Size() % 4) % 4);
    metrics.emplace_back(glyph.advance, glyph.sideBearing);
  }
  FontBuilder font;
  font.Table("OS/2", Os2(slanted)).Table("cmap", Cmap()).Table("glyf", glyf).Table("head", Head(slanted));
  font.Table("hhea", Hhea(slanted)).Table("hmtx", MetricsTable(metrics)).Table("loca", loca.U32(glyf.Size()));
  font.Table("maxp", Maxp()).Table("name", Names(slanted ? "Oblique" : "Regular"));
  return font.Table("post", PostTable().Patch("italicAngle", slanted ? 0xFFF7DEB8 : 0));  // -8.13 degrees
}

/// The good font with faults of every severity.
FontBuilder BrokenFont() {
  std::vector<Glyph> glyphs = Glyphs(false);
  glyphs[kNull].advance = kAdvance;
  glyphs[kO].record.Patch("yMax", 650);
  glyphs[kADieresis].record = ADieresis(kOffsetsInUnits | 0x1000, kOffsetsInUnits | 0x0048);
  FontBuilder font = Font(glyphs, false);
  font.Table("cmap", Cmap().Patch("version", 1)).Table("maxp", Maxp().Patch("maxPoints", 99));
  font.Table("head", Head(false).Patch("magicNumber", 0x0F0F3CF5).Patch("flags", 0x0100).Patch("yMax", 800));
  font.Table("hhea", Hhea(false).Patch("ascender", 300).Patch("caretSlopeRise", 0));
  return font.Table("name", NameTable({{1, "Vorn Sample"}, {3, "Broken"}, {4, "Vorn Sample Broken"}}));
}

/// The font's bytes with the checksum adjustment of "head — Font Header Table" in the OpenType specification.
Bytes Adjusted(const FontBuilder& font) {
  Bytes bytes = font.Build();
  const Tova::ByteView view(bytes.data(), bytes.size());
  uint32_t sum = 0;
  for (uint64_t at = 0; at < view.Size(); at += 4) sum += view.U32(at);
  uint64_t entry = 12;
  while (!view.Matches(entry, "head")) entry += 16;
  const Bytes adjustment = TableBuilder().U32(0xB1B0AFBA - sum);
  for (size_t i = 0; i < 4; ++i) bytes[view.U32(entry + 8) + 8 + i] = adjustment[i];
  return bytes;
}

struct Sample {
  std::string name;
  Bytes bytes;
};

std::vector<Sample> Samples() {
  const FontBuilder regular = Font(Glyphs(false), false);
  return {{"Good.ttf", Adjusted(regular)},
          {"Collection.ttc", BuildCollection({regular, Font(Glyphs(true), true)})},
          {"Broken.ttf", Adjusted(BrokenFont())}};
}

bool Holds(const std::string& path, const Bytes& bytes) {
  std::ifstream file(path, std::ios::binary);
  return Bytes{std::istreambuf_iterator<char>(file), {}} == bytes;
}

}  // namespace

int main(int count, char** arguments) {
  const bool check = count == 3 && std::string_view(arguments[1]) == "--check";
  if (count != 2 && !check) {
    std::fputs("Usage: sample-maker [--check] FOLDER\n", stderr);
    return 2;
  }
  for (const auto& [name, bytes] : Samples()) {
    const std::string path = std::string(arguments[count - 1]) + "/" + name;
    if (!check) {
      std::ofstream(path, std::ios::binary)
          .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    if (!Holds(path, bytes)) {
      std::fprintf(stderr, "%s is not what this program makes; the target make-samples writes it anew\n", path.c_str());
      return 1;
    }
  }
}
