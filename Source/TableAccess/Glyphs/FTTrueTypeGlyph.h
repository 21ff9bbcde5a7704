#pragma once

#include <cstdint>
#include <span>

#include "TableAccess/Glyphs/FTGlyphSet.h"

/// One glyph of a font, or none: a handle of two words, to be copied, valid as long as the glyphs of its table. Decoded
/// at the first question that needs it; every question throws FTException when the glyph cannot be decoded.
///
/// What all kinds have in common; a glyph of a known kind is looked at through FTSimpleTrueTypeGlyph or
/// FTCompoundTrueTypeGlyph.
class FTTrueTypeGlyph {
 public:
  using Kind = FTGlyphRecord::Kind;
  using State = FTGlyphRecord::State;

  FTTrueTypeGlyph() = default;
  FTTrueTypeGlyph(FTGlyphSet& ioGlyphs, uint16_t iIndex) : _fGlyphs(&ioGlyphs), _fIndex(iIndex) {}
  explicit operator bool() const { return _fGlyphs != nullptr; }

  Kind GetKind() const { return _fGlyphs->Peek(_fIndex).kind; }
  bool IsCompoundGlyph() const { return GetKind() == Kind::kCompound; }
  bool IsSimpleGlyph() const { return GetKind() == Kind::kSimple; }
  /// Draws nothing.
  bool IsEmptyGlyph() const { return GetKind() == Kind::kEmpty; }
  /// From the record's start to the end of the table.
  Tova::ByteView GetUnswappedData() const { return _fGlyphs->BytesOf(_fIndex); }
  uint64_t GetUnswappedDataLength() const { return _fGlyphs->LengthOf(_fIndex); }
  /// The header's box.
  FTRect GetBounds() const { return Read().storedBox; }
  /// The header's numberOfContours, unsigned: 65535 for a compound glyph.
  uint16_t RawComponentCount() const { return Read().kind == Kind::kCompound ? uint16_t{0xFFFF} : Read().contours; }
  bool ReadingData() const { return _fGlyphs->Peek(_fIndex).state == State::kBeingRead; }
  bool DataRead() const { return _fGlyphs->Peek(_fIndex).state == State::kRead; }
  void ReadData() const { Read(); }

 protected:
  const FTGlyphRecord& Read() const { return _fGlyphs->Read(_fIndex); }
  FTGlyphSet& Glyphs() const { return *_fGlyphs; }
  uint16_t Index() const { return _fIndex; }

 private:
  FTGlyphSet* _fGlyphs = nullptr;
  uint16_t _fIndex = 0;
};

/// A glyph with contours. Its counts and its boxes stand in its record; asking for points, or for flags, unpacks them
/// into the room that all glyphs share.
class FTSimpleTrueTypeGlyph : public FTTrueTypeGlyph {
 public:
  explicit FTSimpleTrueTypeGlyph(const FTTrueTypeGlyph& iGlyph) : FTTrueTypeGlyph(iGlyph) {}

  uint16_t GetContourCount() const { return Read().contours; }
  uint16_t GetPointCount() const { return Read().points; }
  uint16_t GetInstructionByteCount() const { return Read().instructionBytes; }
  /// The box of the points themselves; all 0 without points.
  FTRect ComputeBoundingBox() const { return Read().measuredBox; }
  /// Whether FTOutline::HasMixedEnds holds for a contour.
  bool HasMixedEnds() const { return Read().hasMixedEnds; }
  /// The end points (u16 each), from the first to the end of the table.
  Tova::ByteView GetUnswappedEndPoints() const { return GetUnswappedData().From(10); }
  /// From the first instruction to the end of the table.
  Tova::ByteView GetInstructionData() const {
    return GetUnswappedEndPoints().From(uint64_t{2} * GetContourCount() + 2);
  }
  /// The points and flags; valid until another glyph of the font is asked for its own.
  const FTOutline& GetOutline() const { return Glyphs().OutlineOf(Index()); }
  FTPoint GetPoint(uint16_t iIndex) const { return GetOutline().Point(iIndex); }
  uint16_t GetContourPointCount(uint16_t iContour) const { return GetOutline().ContourPointCount(iContour); }
  FTPoint GetContourPoint(uint16_t iContour, uint16_t iIndex) const {
    return GetOutline().ContourPoint(iContour, iIndex);
  }
  /// A flag for each point.
  std::span<const uint8_t> GetFlagData() const { return GetOutline().Flags(); }
};

/// A glyph made of other glyphs.
class FTCompoundTrueTypeGlyph : public FTTrueTypeGlyph {
 public:
  explicit FTCompoundTrueTypeGlyph(const FTTrueTypeGlyph& iGlyph) : FTTrueTypeGlyph(iGlyph) {}

  /// The number of component records.
  uint16_t GetComponentCount() const { return Read().components; }
  uint16_t GetSubcomponentCount() const { return Read().components; }
  /// 0xFFFF where there is no such component, and before the glyph was read.
  uint16_t GetComponentID(uint16_t iIndex) const { return Component(iIndex).glyph; }
  uint16_t GetComponentFlags(uint16_t iIndex) const { return Component(iIndex).flags; }
  /// Points and contours of all simple glyphs beneath, and the levels of compound glyphs: 1 over simple ones.
  uint16_t GetComponentPointCount() const { return Read().points; }
  uint16_t GetComponentContourCount() const { return Read().contours; }
  uint16_t GetComponentDepth() const { return Read().depth; }

 private:
  FTComponent Component(uint16_t iIndex) const {
    if (Glyphs().Peek(Index()).state == State::kUnread) return {0xFFFF, 0xFFFF};
    const auto& tComponents = Glyphs().ComponentsOf(Index());
    return iIndex < tComponents.size() ? tComponents[iIndex] : FTComponent{0xFFFF, 0xFFFF};
  }
};
