#include "support/GlyphBuilder.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace test {

namespace {

constexpr uint8_t kRepeat = 0x08;

/// Appends a coordinate's change and returns its flag bits, where shortBit says one byte and sameBit no byte or plus.
uint8_t Encode(int change, uint8_t shortBit, uint8_t sameBit, PointEncoding encoding, TableBuilder& out) {
  if (encoding == PointEncoding::kPacked && change == 0) return sameBit;
  if (encoding == PointEncoding::kWords || std::abs(change) > 255) {
    out.S16(change);
    return 0;
  }
  out.U8(static_cast<uint64_t>(std::abs(change)));
  return static_cast<uint8_t>(shortBit | (change > 0 ? sameBit : 0));
}

void AppendFlags(const std::vector<uint8_t>& flags, PointEncoding encoding, TableBuilder& out) {
  for (size_t i = 0; i < flags.size();) {
    size_t end = i + 1;
    while (encoding == PointEncoding::kPacked && end < flags.size() && end - i < 256 && flags[end] == flags[i]) ++end;
    out.U8(end - i > 1 ? flags[i] | kRepeat : flags[i]);
    if (end - i > 1) out.U8(end - i - 1);
    i = end;
  }
}

}  // namespace

TableBuilder SimpleGlyph(const std::vector<Contour>& contours, const Bytes& instructions, PointEncoding encoding) {
  TableBuilder ends, xs, ys, flags;
  std::vector<uint8_t> flagBytes;
  GlyphPoint previous = {0, 0}, low = contours.at(0).at(0), high = low;
  for (size_t i = 0; i < contours.size(); ++i) {
    for (const GlyphPoint& point : contours[i]) {
      const uint8_t x = Encode(point.x - previous.x, 0x02, 0x10, encoding, xs);
      const uint8_t y = Encode(point.y - previous.y, 0x04, 0x20, encoding, ys);
      flagBytes.push_back(static_cast<uint8_t>(x | y | (point.onCurve ? 1 : 0)));
      low = {std::min(low.x, point.x), std::min(low.y, point.y)};
      high = {std::max(high.x, point.x), std::max(high.y, point.y)};
      previous = point;
    }
    ends.U16(flagBytes.size() - 1);
  }
  AppendFlags(flagBytes, encoding, flags);

  TableBuilder glyph;
  glyph.U16(contours.size(), "numberOfContours");
  glyph.S16(low.x, "xMin").S16(low.y, "yMin").S16(high.x, "xMax").S16(high.y, "yMax");
  for (size_t i = 0; i < contours.size(); ++i) {
    glyph.U16(uint64_t{ends.Data()[2 * i]} << 8 | ends.Data()[2 * i + 1], "end" + std::to_string(i));
  }
  glyph.U16(instructions.size(), "instructionLength").Append(instructions, "instructions");
  return glyph.Append(flags, "flags").Append(xs, "coordinates").Append(ys);
}

TableBuilder SquareGlyph(int side, const Bytes& instructions) {
  return SimpleGlyph({{{0, 0}, {0, side}, {side, side}, {side, 0}}}, instructions);
}

TableBuilder CompoundGlyph(const std::vector<Component>& components) {
  TableBuilder glyph;
  glyph.S16(-1, "numberOfContours").Zeros(8);
  for (size_t i = 0; i < components.size(); ++i) {
    const auto [flags, id] = components[i];
    glyph.U16(flags | (i + 1 < components.size() ? 0x20u : 0u)).U16(id);
    const size_t transform = flags & 0x80 ? 8 : flags & 0x40 ? 4 : flags & 0x08 ? 2 : 0;
    glyph.Zeros((flags & 1 ? 4 : 2) + transform);
  }
  return glyph;
}

FontBuilder OutlineFont(const std::vector<Bytes>& glyphs, bool padded) {
  TableBuilder glyf, loca;
  for (const Bytes& glyph : glyphs) {
    loca.U32(glyf.Size());
    glyf.Append(glyph).Zeros(padded ? glyph.size() % 2 : 0);
  }
  loca.U32(glyf.Size());
  const auto count = static_cast<uint16_t>(glyphs.size());
  FontBuilder font;
  font.Table("glyf", glyf).Table("head", HeadTable()).Table("hhea", HheaTable(count));
  font.Table("hmtx", MetricsTable({glyphs.size(), {uint16_t{600}, int16_t{0}}}));
  return font.Table("loca", loca).Table("maxp", MaxpTable(count));
}

}  // namespace test
