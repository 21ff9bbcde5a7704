#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// How a point lies on its outline.
enum class PointKind : uint8_t { kQuadratic, kOn, kCubic };

/// Positions are in font units, y upwards.
struct GlyphPoint {
  int32_t x = 0;
  int32_t y = 0;
  PointKind kind = PointKind::kOn;
};

struct GlyphBox {
  int32_t xMin = 0;
  int32_t yMin = 0;
  int32_t xMax = 0;
  int32_t yMax = 0;
};

/// A glyph that is a part of another one.
struct GlyphComponent {
  uint32_t glyph = 0;
  bool byPoints = false;  ///< placed by letting two points meet, not by an offset
  int32_t x = 0;          ///< where its origin comes to lie
  int32_t y = 0;
  std::optional<GlyphBox> box;  ///< of its points where they come to lie; none without points
  std::string refusal;          ///< why it cannot be drawn; empty when it can
};

/// What is to be seen of a glyph.
struct GlyphDrawing {
  std::vector<GlyphPoint> points;
  std::vector<size_t> contourEnds;  ///< for each contour one past the index of its last point
  std::optional<int32_t> advance;
  std::optional<GlyphBox> stored;  ///< the box in the header of a TrueType glyph
  std::optional<GlyphBox> found;   ///< the box of the points; none without points
  std::vector<GlyphComponent> components;
  std::string refusal;  ///< why nothing, or not all, is drawn; empty when all is
};

/// Bounds on drawings, so that no font makes a report huge or slow.
inline constexpr size_t kMaximumDrawnPoints = 5'000;         ///< of one glyph with its components
inline constexpr size_t kMaximumDrawnComponents = 128;       ///< of one glyph, those of components included
inline constexpr size_t kMaximumComponentDepth = 8;          ///< how deep glyphs may lie in one another
inline constexpr int32_t kMaximumDrawnPosition = 1'000'000;  ///< points further out are moved to this distance

/// Loads the library that reads outlines. To be called before the process gives up the right to; drawing fails later,
/// and says so, when it cannot be loaded.
void LoadFreeType();

/// Reads glyphs of the fonts of one file with FreeType, unscaled and as they are stored: outlines only. A font is
/// opened when the first glyph of it is asked for, and stays open until another font is.
class GlyphDrawer {
 public:
  /// A file in which the report found so many fonts.
  GlyphDrawer(const std::string& path, size_t fonts);
  ~GlyphDrawer();

  /// Opens a font of the file, by its place there and, where places are counted differently, by its PostScript name.
  /// Returns why it cannot be opened; an empty text when it can.
  const std::string& Open(size_t font, std::string_view postScriptName);
  /// The units of the em of the open font; 0 when there is none.
  int32_t UnitsPerEm() const;
  /// A glyph of the open font.
  GlyphDrawing Draw(int64_t glyph);

 private:
  class Font;

  std::string path_;
  size_t fonts_;
  std::unique_ptr<Font> font_;
};

}  // namespace tool
