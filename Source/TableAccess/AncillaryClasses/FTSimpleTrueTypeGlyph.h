#pragma once

#include <cstdint>
#include <span>

#include "TableAccess/AncillaryClasses/FTTrueTypeGlyph.h"

struct FTGlyphPoints;

/// A glyph with contours.
///
/// Bytes after the glyph header: the end point of each contour (u16), instructionLength u16, the instructions, a flag
/// byte for each point (repeats packed), the x coordinates, the y coordinates; a coordinate is 0, 1 or 2 bytes, as its
/// flag says, and relative to the one before. See "Simple Glyph Description" of the OpenType specification's 'glyf'.
///
/// Reading the glyph checks counts and flags; coordinates are decoded when they are asked for, into the room that all
/// glyphs of the table share (FTGlyphPoints), so a simple glyph has to have a table.
class FTSimpleTrueTypeGlyph : public FTTrueTypeGlyph {
 public:
  static constexpr uint8_t kOnCurve = 0x01;

  using FTTrueTypeGlyph::FTTrueTypeGlyph;

  bool IsSimpleGlyph() const override { return true; }
  bool IsEmptyGlyph() const override { return false; }
  void ReadDataInternal() const override;

  virtual uint16_t GetContourCount() const;
  virtual uint16_t GetPointCount() const;
  /// (0, 0) for an index that is not below the point count.
  virtual FTPoint GetPoint(uint16_t iIndex) const;
  /// The difference of the contour's end point to the one before, in 16 bits; 0 for a contour that does not exist.
  virtual uint16_t GetContourPointCount(uint16_t iContour) const;
  /// For every contour but the first, index 0 is the end point of the contour before it. (0, 0) for a contour that does
  /// not exist.
  virtual FTPoint GetContourPoint(uint16_t iContour, uint16_t iIndex) const;
  /// The box of the points themselves; all 0 without points.
  virtual FTRect ComputeBoundingBox() const;
  virtual uint16_t GetInstructionByteCount() const;
  /// The end points (u16 each), from the first to the end of the table.
  virtual Tova::ByteView GetUnswappedEndPoints() const;
  /// From the first instruction to the end of the table.
  virtual Tova::ByteView GetInstructionData() const;
  /// A flag for each point; valid until another glyph of the table is asked anything.
  virtual std::span<const uint8_t> GetFlagData() const;

  /// Forgets what has been decoded.
  void ClearData() const;

 private:
  uint16_t EndPoint(uint16_t iContour) const;
  uint16_t LargestEndPoint() const;
  void UnpackFlags(FTGlyphPoints& oPoints) const;
  const FTGlyphPoints& Flags() const;
  const FTGlyphPoints& Points() const;

  mutable uint16_t _fContourCount = 0;
  mutable uint16_t _fInstructionByteCount = 0;
  mutable uint16_t _fPointCount = 0;
};
