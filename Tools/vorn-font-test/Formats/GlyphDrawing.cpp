#include "Formats/GlyphDrawing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <utility>

#include "Formats/FreeTypeLibrary.h"

namespace tool {
namespace {

constexpr FT_ULong Tag(const char (&tag)[5]) {
  return FT_MAKE_TAG(static_cast<uint8_t>(tag[0]), static_cast<uint8_t>(tag[1]), static_cast<uint8_t>(tag[2]),
                     static_cast<uint8_t>(tag[3]));
}

std::string Refusal(FT_Error error) { return "FreeType: " + std::string(ErrorText(error)); }

int32_t Position(FT_Pos value) {
  return static_cast<int32_t>(std::clamp<FT_Pos>(value, -kMaximumDrawnPosition, kMaximumDrawnPosition));
}

/// The box of points; none when there is none.
std::optional<GlyphBox> BoxOf(std::span<const GlyphPoint> points) {
  if (points.empty()) return std::nullopt;
  GlyphBox box{points[0].x, points[0].y, points[0].x, points[0].y};
  for (const GlyphPoint& point : points) {
    box = {std::min(box.xMin, point.x), std::min(box.yMin, point.y), std::max(box.xMax, point.x),
           std::max(box.yMax, point.y)};
  }
  return box;
}

PointKind KindOf(char tag) {
  return FT_CURVE_TAG(tag) == FT_CURVE_TAG_ON      ? PointKind::kOn
         : FT_CURVE_TAG(tag) == FT_CURVE_TAG_CUBIC ? PointKind::kCubic
                                                   : PointKind::kQuadratic;
}

/// Points with their contours, which begin at index 0.
struct Contours {
  std::vector<GlyphPoint> points;
  std::vector<size_t> ends;

  void Append(const Contours& other) {
    for (size_t end : other.ends) ends.push_back(points.size() + end);
    points.insert(points.end(), other.points.begin(), other.points.end());
  }
};

/// Takes an outline over, moved to the right. Returns why it cannot be; empty when it was.
std::string TakeOutline(const FT_Outline& outline, FT_Pos shift, Contours& to) {
  if (outline.n_points < 0 || outline.n_contours < 0) return "FreeType: invalid outline";
  const std::span points(outline.points, static_cast<size_t>(outline.n_points));
  if (points.size() > kMaximumDrawnPoints) return std::to_string(points.size()) + " points are too many to draw";
  const std::span tags(outline.tags, points.size());
  for (size_t i = 0; i < points.size(); ++i) {
    to.points.push_back({Position(points[i].x + shift), Position(points[i].y), KindOf(static_cast<char>(tags[i]))});
  }
  for (const auto end : std::span(outline.contours, static_cast<size_t>(outline.n_contours))) {
    to.ends.push_back(std::min(static_cast<size_t>(end) + 1, to.points.size()));
  }
  return {};
}

/// A component as the composite glyph states it.
struct Placement {
  FT_Int glyph = 0;
  FT_UInt flags = 0;
  FT_Int first = 0;   ///< x offset, or index of a point placed before
  FT_Int second = 0;  ///< y offset, or index of the component's point that is to meet it
  FT_Matrix matrix{};

  bool ByPoints() const { return (flags & FT_SUBGLYPH_FLAG_ARGS_ARE_XY_VALUES) == 0; }
};

/// At most one more than may be drawn.
std::vector<Placement> PlacementsOf(FT_GlyphSlot slot) {
  std::vector<Placement> placements(std::min<size_t>(slot->num_subglyphs, kMaximumDrawnComponents + 1));
  for (size_t i = 0; i < placements.size(); ++i) {
    Placement& to = placements[i];
    if (GetFreeType().GetSubGlyphInfo(slot, static_cast<FT_UInt>(i), &to.glyph, &to.flags, &to.first, &to.second,
                                      &to.matrix)) {
      placements.resize(i);
      break;
    }
  }
  return placements;
}

/// A row of a matrix of 16.16 numbers times a vector, each product rounded as FreeType does, halves away from 0.
int32_t Fixed(int32_t x, FT_Fixed a, int32_t y, FT_Fixed b) {
  const auto product = [](int64_t one, int64_t other) {
    const int64_t exact = one * other;
    return (exact + 0x8000 - (exact < 0 ? 1 : 0)) >> 16;
  };
  return Position(product(x, a) + product(y, b));
}

/// An offset scaled as far as a matrix, of 16.16 numbers, scales along its axis.
FT_Pos Scaled(FT_Pos offset, FT_Fixed a, FT_Fixed b) {
  return std::lround(static_cast<double>(offset) * std::hypot(static_cast<double>(a), static_cast<double>(b)) / 65536);
}

/// Transforms the component's points and moves them to their place among those that lie there already. Returns where
/// its origin is then.
GlyphPoint Place(const Placement& placement, const Contours& before, Contours& component) {
  constexpr FT_UInt kOffsetIsScaled = 0x0800;
  for (GlyphPoint& point : component.points) {
    const FT_Matrix& m = placement.matrix;
    point = {Fixed(point.x, m.xx, point.y, m.xy), Fixed(point.x, m.yx, point.y, m.yy), point.kind};
  }
  FT_Vector offset{placement.first, placement.second};
  if (placement.ByPoints()) {
    const auto anchor = static_cast<uint32_t>(placement.first), point = static_cast<uint32_t>(placement.second);
    const bool exist = anchor < before.points.size() && point < component.points.size();
    offset = exist ? FT_Vector{before.points[anchor].x - component.points[point].x,
                               before.points[anchor].y - component.points[point].y}
                   : FT_Vector{0, 0};
  } else if ((placement.flags & kOffsetIsScaled) != 0) {
    const FT_Matrix& matrix = placement.matrix;
    offset = {Scaled(offset.x, matrix.xx, matrix.xy), Scaled(offset.y, matrix.yy, matrix.yx)};
  }
  for (GlyphPoint& point : component.points) {
    point = {Position(point.x + offset.x), Position(point.y + offset.y), point.kind};
  }
  return {Position(offset.x), Position(offset.y)};
}

/// A table of a font, of which FreeType hands out parts. It checks them against the file only; here, against the table.
class SfntTable {
 public:
  SfntTable() = default;
  SfntTable(FT_Face face, FT_ULong tag) : face_(face), tag_(tag) {
    if (GetFreeType().LoadSfntTable(face, tag, 0, nullptr, &size_)) size_ = 0;
  }

  bool Empty() const { return size_ == 0; }
  bool Holds(uint64_t at, uint64_t count) const { return count <= size_ && at <= size_ - count; }
  /// A part of the table; zeros when it is not all there.
  template <size_t kSize>
  std::array<uint8_t, kSize> Read(uint64_t at) const {
    std::array<uint8_t, kSize> bytes{};
    FT_ULong size = kSize;
    if (!Holds(at, kSize) || GetFreeType().LoadSfntTable(face_, tag_, static_cast<FT_Long>(at), bytes.data(), &size))
      return {};
    return bytes;
  }

 private:
  FT_Face face_ = nullptr;
  FT_ULong tag_ = 0;
  FT_ULong size_ = 0;
};

uint16_t U16(std::span<const uint8_t, 2> bytes) { return static_cast<uint16_t>(bytes[0] << 8 | bytes[1]); }
int16_t S16(std::span<const uint8_t, 2> bytes) { return static_cast<int16_t>(U16(bytes)); }
uint32_t U32(std::span<const uint8_t, 4> bytes) { return uint32_t{U16(bytes.first<2>())} << 16 | U16(bytes.last<2>()); }

struct CloseFace {
  void operator()(FT_Face face) const { GetFreeType().DoneFace(face); }
};
using Face = std::unique_ptr<FT_FaceRec_, CloseFace>;

struct CloseLibrary {
  void operator()(FT_Library library) const { GetFreeType().DoneFreeType(library); }
};
using Library = std::unique_ptr<FT_LibraryRec_, CloseLibrary>;

}  // namespace

/// A font as FreeType opens it, or why it does not.
class GlyphDrawer::Font {
 public:
  Font(const std::string& path, size_t fonts, size_t index, std::string_view postScriptName)
      : index_(index), path_(path), library_(NewLibrary()) {
    if (!library_) return;
    face_ = fonts == 1 ? OpenFace(0) : OpenOneOf(fonts, static_cast<FT_Long>(index), postScriptName);
    if (!face_) return;
    glyf_ = SfntTable(face_.get(), Tag("glyf"));
    loca_ = SfntTable(face_.get(), Tag("loca"));
    hmtx_ = SfntTable(face_.get(), Tag("hmtx"));
    const auto* hhea = static_cast<const TT_HoriHeader*>(GetFreeType().GetSfntTable(face_.get(), FT_SFNT_HHEA));
    longMetrics_ = hhea ? hhea->number_Of_HMetrics : 0;
    const auto* head = static_cast<const TT_Header*>(GetFreeType().GetSfntTable(face_.get(), FT_SFNT_HEAD));
    longOffsets_ = head && head->Index_To_Loc_Format != 0;
  }

  size_t Index() const { return index_; }
  const std::string& WhyNotOpen() const { return refusal_; }
  int32_t UnitsPerEm() const { return face_ ? face_->units_per_EM : 0; }
  GlyphDrawing Draw(int64_t glyph);

 private:
  Library NewLibrary() {
    refusal_ = GetFreeType().refusal;
    if (!refusal_.empty()) return nullptr;
    FT_Library library = nullptr;
    if (const FT_Error error = GetFreeType().InitFreeType(&library)) refusal_ = Refusal(error);
    return Library(library);
  }

  /// Null and a refusal when it cannot be opened.
  Face OpenFace(FT_Long index) {
    FT_Face face = nullptr;
    const FT_Error error = GetFreeType().NewFace(library_.get(), path_.c_str(), index, &face);
    refusal_ = error ? Refusal(error) : std::string();
    return Face(error ? nullptr : face);
  }

  /// A font of several by its place; by its name in a file of resources, the fonts of which FreeType counts
  /// differently.
  Face OpenOneOf(size_t fonts, FT_Long index, std::string_view postScriptName) {
    constexpr FT_Long kMaximumFaces = 64;
    const Face probe = OpenFace(-1);
    if (!probe) return nullptr;
    if (std::cmp_equal(probe->num_faces, fonts)) return OpenFace(index);
    for (FT_Long i = 0; i < std::min(probe->num_faces, kMaximumFaces); ++i) {
      Face face = OpenFace(i);
      const char* name = face ? GetFreeType().GetPostscriptName(face.get()) : nullptr;
      if (name && name == postScriptName) return face;
    }
    refusal_ = "FreeType: no font of this name in the file";
    return nullptr;
  }

  std::optional<GlyphBox> StoredBox(uint32_t glyph) const;
  FT_Pos Shift(uint32_t glyph) const;
  std::string Compose(uint32_t glyph, size_t depth, Contours& to, GlyphDrawing* drawing);
  std::string AddComponents(const std::vector<Placement>& placements, size_t depth, Contours& to,
                            GlyphDrawing* drawing);

  size_t index_;
  std::string path_;
  std::string refusal_;
  Library library_;
  Face face_;
  SfntTable glyf_;
  SfntTable loca_;
  SfntTable hmtx_;
  uint64_t longMetrics_ = 0;  ///< how many records of 'hmtx' have an advance
  bool longOffsets_ = false;
  size_t components_ = 0;  ///< how many the glyph that is being drawn has so far
};

/// The box in the header of a TrueType glyph, without which FreeType gets along. 'glyf', OpenType 1.9, Glyph headers.
std::optional<GlyphBox> GlyphDrawer::Font::StoredBox(uint32_t glyph) const {
  constexpr uint64_t kHeaderSize = 10;
  const uint64_t entry = longOffsets_ ? 4 : 2;
  if (!loca_.Holds(glyph * entry, 2 * entry)) return std::nullopt;
  const auto offset = [&](uint64_t at) -> uint64_t {
    return longOffsets_ ? U32(loca_.Read<4>(at)) : U16(loca_.Read<2>(at)) * uint64_t{2};
  };
  const uint64_t begin = offset(glyph * entry), end = offset((glyph + uint64_t{1}) * entry);
  if (end < begin || end - begin < kHeaderSize || !glyf_.Holds(begin, kHeaderSize)) return std::nullopt;
  const std::array<uint8_t, kHeaderSize> bytes = glyf_.Read<kHeaderSize>(begin);
  const std::span header(bytes);
  return GlyphBox{S16(header.subspan<2, 2>()), S16(header.subspan<4, 2>()), S16(header.subspan<6, 2>()),
                  S16(header.subspan<8, 2>())};
}

/// How far to the left FreeType moves a TrueType outline: so that the stored box begins at the stored side bearing.
FT_Pos GlyphDrawer::Font::Shift(uint32_t glyph) const {
  const std::optional<GlyphBox> stored = StoredBox(glyph);
  if (!stored) return 0;
  const uint64_t at = glyph < longMetrics_ ? glyph * uint64_t{4} + 2 : longMetrics_ * 4 + (glyph - longMetrics_) * 2;
  return stored->xMin - (longMetrics_ > 0 ? S16(hmtx_.Read<2>(at)) : 0);
}

/// Adds a glyph's outline; of a composite glyph, the outlines of its components. Those of the glyph that is drawn are
/// noted there. Returns why something is missing.
std::string GlyphDrawer::Font::Compose(uint32_t glyph, size_t depth, Contours& to, GlyphDrawing* drawing) {
  if (glyph >= static_cast<uint64_t>(face_->num_glyphs)) {
    return "there is no glyph " + std::to_string(glyph) + ": FreeType counts " + std::to_string(face_->num_glyphs);
  }
  // Components are put together here, to see where each is, and what is left when one of them is refused.
  const FT_Int32 flags = glyf_.Empty() ? FT_LOAD_NO_SCALE : FT_LOAD_NO_SCALE | FT_LOAD_NO_RECURSE;
  if (const FT_Error error = GetFreeType().LoadGlyph(face_.get(), glyph, flags)) return Refusal(error);
  const FT_GlyphSlot slot = face_->glyph;
  if (drawing) drawing->advance = Position(slot->metrics.horiAdvance);
  if (slot->format == FT_GLYPH_FORMAT_OUTLINE) return TakeOutline(slot->outline, glyf_.Empty() ? 0 : Shift(glyph), to);
  if (slot->format == FT_GLYPH_FORMAT_COMPOSITE) return AddComponents(PlacementsOf(slot), depth, to, drawing);
  return "FreeType: not an outline";
}

std::string GlyphDrawer::Font::AddComponents(const std::vector<Placement>& placements, size_t depth, Contours& to,
                                             GlyphDrawing* drawing) {
  if (depth == kMaximumComponentDepth) return "components lie too deep in one another to draw";
  std::string refusal;
  for (const Placement& placement : placements) {
    if (++components_ > kMaximumDrawnComponents) return "too many components to draw";
    Contours part;
    const auto glyph = static_cast<uint32_t>(placement.glyph);
    const std::string missing = Compose(glyph, depth + 1, part, nullptr);
    if (to.points.size() + part.points.size() > kMaximumDrawnPoints) return "too many points to draw";
    const GlyphPoint origin = Place(placement, to, part);
    if (refusal.empty()) refusal = missing;
    if (drawing) {
      drawing->components.push_back({glyph, placement.ByPoints(), origin.x, origin.y, BoxOf(part.points), missing});
    }
    to.Append(part);
  }
  return refusal;
}

GlyphDrawing GlyphDrawer::Font::Draw(int64_t glyph) {
  GlyphDrawing drawing;
  drawing.refusal = refusal_;
  if (!face_) return drawing;
  const auto index = glyph < 0 ? UINT32_MAX : static_cast<uint32_t>(std::min<int64_t>(glyph, UINT32_MAX));
  Contours contours;
  components_ = 0;
  drawing.refusal = Compose(index, 0, contours, &drawing);
  drawing.found = BoxOf(contours.points);
  drawing.points = std::move(contours.points);
  drawing.contourEnds = std::move(contours.ends);
  if (!glyf_.Empty()) drawing.stored = StoredBox(index);
  return drawing;
}

void LoadFreeType() { GetFreeType(); }

GlyphDrawer::GlyphDrawer(const std::string& path, size_t fonts) : path_(path), fonts_(fonts) {}

GlyphDrawer::~GlyphDrawer() = default;

const std::string& GlyphDrawer::Open(size_t font, std::string_view postScriptName) {
  if (!font_ || font_->Index() != font) font_ = std::make_unique<Font>(path_, fonts_, font, postScriptName);
  return font_->WhyNotOpen();
}

int32_t GlyphDrawer::UnitsPerEm() const { return font_ ? font_->UnitsPerEm() : 0; }

GlyphDrawing GlyphDrawer::Draw(int64_t glyph) { return font_ ? font_->Draw(glyph) : GlyphDrawing{}; }

}  // namespace tool
