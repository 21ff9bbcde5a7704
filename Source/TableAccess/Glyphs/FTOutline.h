#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Platform/ByteView.h"
#include "TableAccess/Glyphs/FTGeometry.h"

struct FTGlyphRecord;

/// The contours of one simple glyph, unpacked; room that is used for one glyph after another and only grows.
///
/// Bytes of a simple glyph after the header of its record: the end point of each contour (u16), instructionLength u16,
/// the instructions, a flag byte for each point (repeats packed), the x coordinates, the y coordinates; a coordinate is
/// 0, 1 or 2 bytes, as its flag says, and relative to the one before. See "Simple Glyph Description" of the OpenType
/// specification's 'glyf'. Coordinates are in font units.
class FTOutline {
 public:
  static constexpr uint8_t kOnCurve = 0x01;

  /// Unpacks the glyph and measures it. iBytes reach from the record's start to the end of the table; iLength is the
  /// record's length, which may be more. Needs the contours, points and instruction bytes of the glyph's record and
  /// fills in the rest. Only the flags have to lie inside the record; throws FTException where they do not.
  void Unpack(Tova::ByteView iBytes, uint64_t iLength, FTGlyphRecord& ioRecord);

  /// From the first end point to the end of the table.
  Tova::ByteView EndPoints() const { return _fEndPoints; }
  uint16_t EndPoint(uint16_t iContour) const { return _fEndPoints.U16(uint64_t{2} * iContour); }
  uint16_t PointCount() const { return _fPointCount; }
  std::span<const uint8_t> Flags() const { return std::span(_fFlags).first(_fPointCount); }
  bool IsOnCurve(size_t iPoint) const { return iPoint < _fPointCount && (_fFlags[iPoint] & kOnCurve); }
  /// (0, 0) for an index that is not below the point count.
  FTPoint Point(uint16_t iIndex) const;
  /// The difference of the contour's end point to the one before, in 16 bits; 0 for a contour that does not exist.
  uint16_t ContourPointCount(uint16_t iContour) const;
  /// For every contour but the first, index 0 is the end point of the contour before it. (0, 0) for a contour that does
  /// not exist.
  FTPoint ContourPoint(uint16_t iContour, uint16_t iIndex) const;
  /// Whether the contour, by the numbers of ContourPoint, starts and stops at the same point, while of the flags of its
  /// true first and last point one is on the curve and one is not.
  bool HasMixedEnds(uint16_t iContour) const;

 private:
  uint64_t UnpackFlags(Tova::ByteView iBytes, uint64_t iLength, uint64_t& ioAt);
  template <class Bytes>
  void UnpackPoints(const Bytes& iBytes, uint64_t iAtX, uint64_t iAtY);

  Tova::ByteView _fEndPoints;
  uint16_t _fContourCount = 0;
  uint16_t _fPointCount = 0;
  // At least as long as the glyph has points.
  std::vector<uint8_t> _fFlags;
  std::vector<FTPoint> _fPoints;
};
