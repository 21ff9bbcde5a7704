#include "TableAccess/AncillaryClasses/FTSimpleTrueTypeGlyph.h"

#include <algorithm>
#include <cstring>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/TableClasses/FTFontTable_glyf.h"

namespace {

constexpr char kSource[] = "TableAccess/AncillaryClasses/FTSimpleTrueTypeGlyph";

// Flag bits of a point.
constexpr uint8_t kShortX = 0x02;
constexpr uint8_t kShortY = 0x04;
constexpr uint8_t kRepeat = 0x08;
constexpr uint8_t kSameOrPositiveX = 0x10;
constexpr uint8_t kSameOrPositiveY = 0x20;

uint8_t ByteAt(const Tova::ByteView& iBytes, uint64_t iAt) { return iBytes.U8(iAt); }
uint8_t ByteAt(const Tova::ByteRun& iBytes, uint64_t iAt) { return iBytes[iAt]; }

/// Decodes one coordinate of each point: a byte with its sign in the flags, no byte for no change, or a signed word;
/// the running sum is kept in 16 bits. Returns where the coordinates end.
template <uint8_t Short, uint8_t SameOrPositive, class Bytes>
uint64_t DecodeCoordinates(const Bytes& iBytes, uint64_t iAt, const std::vector<uint8_t>& iFlags, uint16_t iCount,
                           std::vector<int16_t>& oValues) {
  uint16_t tSum = 0;
  for (size_t tPoint = 0; tPoint < iCount; ++tPoint) {
    const uint8_t tFlag = iFlags[tPoint];
    if (tFlag & Short) {
      const uint8_t tDelta = ByteAt(iBytes, iAt++);
      tSum = Tova::Wrap16(tFlag & SameOrPositive ? uint64_t{tSum} + tDelta : uint64_t{tSum} - tDelta);
    } else if (!(tFlag & SameOrPositive)) {
      tSum = Tova::Wrap16(uint64_t{tSum} + iBytes.U16(iAt));
      iAt += 2;
    }
    oValues[tPoint] = Tova::WrapSigned16(tSum);
  }
  return iAt;
}

template <class Bytes>
void DecodePoints(const Bytes& iBytes, uint64_t iAt, uint16_t iCount, FTGlyphPoints& oPoints) {
  const uint64_t tEndOfX = DecodeCoordinates<kShortX, kSameOrPositiveX>(iBytes, iAt, oPoints.flags, iCount, oPoints.x);
  DecodeCoordinates<kShortY, kSameOrPositiveY>(iBytes, tEndOfX, oPoints.flags, iCount, oPoints.y);
}

template <class T>
void GrowTo(std::vector<T>& ioValues, size_t iCount) {
  if (ioValues.size() < iCount) ioValues.resize(iCount);
}

}  // namespace

void FTSimpleTrueTypeGlyph::ReadDataInternal() const {
  _fContourCount = NumberOfContours();
  GetTable()->ChargeDecoding(_fContourCount);
  _fPointCount = Tova::Wrap16(uint64_t{LargestEndPoint()} + 1);
  _fInstructionByteCount = GetUnswappedEndPoints().U16(uint64_t{2} * _fContourCount);
  // The glyph's header and its end points are left out of the sum.
  const uint64_t tSize = uint64_t{_fPointCount} + _fInstructionByteCount;
  if (tSize > GetUnswappedDataLength())
    FTThrowAt("( _fPointCount + _fInstructionByteCount > GetUnswappedDataLength() )",
              "A glyph has more data than will fit in the space allocated", kSource, 120);
  GetTable()->ChargeDecoding(tSize);
  UnpackFlags(GetTable()->SharedPoints());
}

uint16_t FTSimpleTrueTypeGlyph::GetContourCount() const {
  ReadData();
  return _fContourCount;
}

uint16_t FTSimpleTrueTypeGlyph::GetPointCount() const {
  ReadData();
  return _fPointCount;
}

FTPoint FTSimpleTrueTypeGlyph::GetPoint(uint16_t iIndex) const {
  if (iIndex >= GetPointCount()) return {};
  const FTGlyphPoints& tPoints = Points();
  return {.v = tPoints.y[iIndex], .h = tPoints.x[iIndex]};
}

uint16_t FTSimpleTrueTypeGlyph::GetContourPointCount(uint16_t iContour) const {
  if (iContour >= GetContourCount()) return 0;
  if (iContour == 0) return Tova::Wrap16(uint64_t{EndPoint(0)} + 1);
  return Tova::Wrap16(uint64_t{EndPoint(iContour)} - EndPoint(static_cast<uint16_t>(iContour - 1)));
}

FTPoint FTSimpleTrueTypeGlyph::GetContourPoint(uint16_t iContour, uint16_t iIndex) const {
  if (iContour >= GetContourCount()) return {};
  if (iContour == 0) return GetPoint(iIndex);
  return GetPoint(Tova::Wrap16(uint64_t{EndPoint(static_cast<uint16_t>(iContour - 1))} + iIndex));
}

FTRect FTSimpleTrueTypeGlyph::ComputeBoundingBox() const {
  const uint16_t tCount = GetPointCount();
  if (tCount == 0) return {};
  const FTGlyphPoints& tPoints = Points();
  const auto [tMinX, tMaxX] = std::minmax_element(tPoints.x.begin(), tPoints.x.begin() + tCount);
  const auto [tMinY, tMaxY] = std::minmax_element(tPoints.y.begin(), tPoints.y.begin() + tCount);
  return {.top = *tMaxY, .left = *tMinX, .bottom = *tMinY, .right = *tMaxX};
}

uint16_t FTSimpleTrueTypeGlyph::GetInstructionByteCount() const {
  ReadData();
  return _fInstructionByteCount;
}

Tova::ByteView FTSimpleTrueTypeGlyph::GetUnswappedEndPoints() const { return GetUnswappedData().From(kHeaderSize); }

Tova::ByteView FTSimpleTrueTypeGlyph::GetInstructionData() const {
  return GetUnswappedEndPoints().From(uint64_t{2} * GetContourCount() + 2);
}

std::span<const uint8_t> FTSimpleTrueTypeGlyph::GetFlagData() const {
  const uint16_t tCount = GetPointCount();
  return std::span(Flags().flags).first(tCount);
}

void FTSimpleTrueTypeGlyph::ClearData() const {
  FTGlyphPoints& tPoints = GetTable()->SharedPoints();
  if (tPoints.glyph == this) tPoints.glyph = nullptr;
  _fContourCount = _fInstructionByteCount = _fPointCount = 0;
}

uint16_t FTSimpleTrueTypeGlyph::EndPoint(uint16_t iContour) const {
  return GetUnswappedEndPoints().U16(uint64_t{2} * iContour);
}

uint16_t FTSimpleTrueTypeGlyph::LargestEndPoint() const {
  const Tova::ByteView tEndPoints = GetUnswappedEndPoints();
  uint16_t tLargest = 0;
  for (uint64_t tContour = 0; tContour < _fContourCount; ++tContour)
    tLargest = std::max(tLargest, tEndPoints.U16(2 * tContour));
  return tLargest;
}

void FTSimpleTrueTypeGlyph::UnpackFlags(FTGlyphPoints& oPoints) const {
  oPoints.glyph = nullptr;
  GrowTo(oPoints.flags, _fPointCount);
  const Tova::ByteView tBytes = GetUnswappedData();
  uint64_t tAt = kHeaderSize + uint64_t{2} * _fContourCount + 2 + _fInstructionByteCount;
  for (size_t tDone = 0; tDone < _fPointCount;) {
    if (tAt >= GetUnswappedDataLength())
      FTThrowAt("tReturnValue >= iDataLimit", "Glyph data exceeded data limit when unzipping flags", kSource, 286);
    const uint8_t tFlag = tBytes.U8(tAt++);
    if (!(tFlag & kRepeat)) {
      oPoints.flags[tDone++] = tFlag;
      continue;
    }
    const size_t tRepeats = size_t{tBytes.U8(tAt++)} + 1;
    if (tRepeats > _fPointCount - tDone)
      FTThrowAt("tFlags >= tFlagsEnd", "Flag data exceeded flag data limit when unzipping flags", kSource, 292);
    std::memset(&oPoints.flags[tDone], tFlag, tRepeats);
    tDone += tRepeats;
  }
  oPoints.glyph = this;
  oPoints.haveCoordinates = false;
  oPoints.coordinatesAt = tAt;
}

const FTGlyphPoints& FTSimpleTrueTypeGlyph::Flags() const {
  FTGlyphPoints& tPoints = GetTable()->SharedPoints();
  if (tPoints.glyph != this) UnpackFlags(tPoints);
  return tPoints;
}

const FTGlyphPoints& FTSimpleTrueTypeGlyph::Points() const {
  Flags();
  FTGlyphPoints& tPoints = GetTable()->SharedPoints();
  if (tPoints.haveCoordinates) return tPoints;
  GrowTo(tPoints.x, _fPointCount);
  GrowTo(tPoints.y, _fPointCount);
  const Tova::ByteView tBytes = GetUnswappedData();
  const uint64_t tMost = tPoints.coordinatesAt + uint64_t{4} * _fPointCount;
  // Only the last glyphs of a table are so near its end that every read has to be checked.
  if (const auto tRun = tBytes.Run(0, tMost))
    DecodePoints(*tRun, tPoints.coordinatesAt, _fPointCount, tPoints);
  else
    DecodePoints(tBytes, tPoints.coordinatesAt, _fPointCount, tPoints);
  tPoints.haveCoordinates = true;
  return tPoints;
}
