#include "TableAccess/Glyphs/FTOutline.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/Glyphs/FTGlyphRecord.h"

namespace {

constexpr uint64_t kHeaderSize = 10;

// Flag bits of a point.
constexpr uint8_t kShortX = 0x02;
constexpr uint8_t kShortY = 0x04;
constexpr uint8_t kRepeat = 0x08;
constexpr uint8_t kSameOrPositiveX = 0x10;
constexpr uint8_t kSameOrPositiveY = 0x20;

/// How a coordinate is read, without a branch: the word at its place, shifted and masked, is its amount; the sign is
/// all bits set for a negative one.
struct Coordinate {
  uint8_t size;
  uint8_t shift;
  uint16_t mask;
  uint16_t sign;
};

constexpr Coordinate HowToRead(bool iShort, bool iSameOrPositive) {
  if (iShort) return {1, 8, 0x00FF, iSameOrPositive ? uint16_t{0} : uint16_t{0xFFFF}};
  return iSameOrPositive ? Coordinate{0, 0, 0, 0} : Coordinate{2, 0, 0xFFFF, 0};
}

/// By the flag's bits for x and y, which are bits 1, 2, 4 and 5.
constexpr std::array<std::array<Coordinate, 2>, 64> kCoordinates = [] {
  std::array<std::array<Coordinate, 2>, 64> tRows = {};
  for (uint8_t i = 0; i < tRows.size(); ++i)
    tRows[i] = {HowToRead(i & kShortX, i & kSameOrPositiveX), HowToRead(i & kShortY, i & kSameOrPositiveY)};
  return tRows;
}();

const std::array<Coordinate, 2>& HowToRead(uint8_t iFlag) { return kCoordinates[iFlag & 0x3F]; }

/// The word at a coordinate's place. In a run it is there, though the coordinate may be shorter.
uint32_t WordAt(const Tova::ByteRun& iBytes, uint64_t iAt, const Coordinate&) { return iBytes.U16(iAt); }
uint32_t WordAt(const Tova::ByteView& iBytes, uint64_t iAt, const Coordinate& iHow) {
  return iHow.size == 2 ? iBytes.U16(iAt) : uint32_t{iBytes.U8(iAt)} << 8;
}

/// The box of the points, all 0 without points. A loop of its own, which compilers turn into a few vector operations.
FTRect BoxOf(std::span<const FTPoint> iPoints) {
  if (iPoints.empty()) return {};
  FTRect tBox = {.top = INT16_MIN, .left = INT16_MAX, .bottom = INT16_MAX, .right = INT16_MIN};
  for (const FTPoint& tPoint : iPoints) {
    tBox.top = std::max(tBox.top, tPoint.v);
    tBox.left = std::min(tBox.left, tPoint.h);
    tBox.bottom = std::min(tBox.bottom, tPoint.v);
    tBox.right = std::max(tBox.right, tPoint.h);
  }
  return tBox;
}

template <class T>
void GrowTo(std::vector<T>& ioValues, size_t iCount) {
  if (ioValues.size() < iCount) ioValues.resize(iCount);
}

}  // namespace

void FTOutline::Unpack(Tova::ByteView iBytes, uint64_t iLength, FTGlyphRecord& ioRecord) {
  _fEndPoints = iBytes.From(kHeaderSize);
  _fContourCount = ioRecord.contours;
  _fPointCount = ioRecord.points;
  GrowTo(_fFlags, _fPointCount);
  GrowTo(_fPoints, _fPointCount);
  uint64_t tAtX = kHeaderSize + uint64_t{2} * _fContourCount + 2 + ioRecord.instructionBytes;
  const uint64_t tAtY = UnpackFlags(iBytes, iLength, tAtX);
  // Only the last glyphs of a table are so near its end that every read has to be checked. Both coordinates of a point
  // are read as words, be they shorter.
  const auto tRun = iBytes.Run(0, tAtY + uint64_t{2} * _fPointCount + 2);
  if (tRun) {
    UnpackPoints(*tRun, tAtX, tAtY);
  } else {
    UnpackPoints(iBytes, tAtX, tAtY);
  }
  ioRecord.measuredBox = BoxOf(std::span(_fPoints).first(_fPointCount));
  ioRecord.hasMixedEnds = false;
  for (uint16_t i = 0; i < _fContourCount && !ioRecord.hasMixedEnds; ++i) ioRecord.hasMixedEnds = HasMixedEnds(i);
}

/// Unpacks the flags that begin at ioAt, which is left behind them: where the x coordinates begin. Returns where the y
/// coordinates do.
uint64_t FTOutline::UnpackFlags(Tova::ByteView iBytes, uint64_t iLength, uint64_t& ioAt) {
  const std::span tFlags = std::span(_fFlags).first(_fPointCount);
  uint64_t tAt = ioAt;
  uint64_t tSizeOfX = 0;
  for (size_t tDone = 0; tDone < tFlags.size();) {
    if (tAt >= iLength) FTThrow(FTFaults::kFlagsCut);
    const uint8_t tFlag = iBytes.U8(tAt++);
    const uint64_t tSize = HowToRead(tFlag)[0].size;
    if (!(tFlag & kRepeat)) {
      tFlags[tDone++] = tFlag;
      tSizeOfX += tSize;
      continue;
    }
    const size_t tRepeats = size_t{iBytes.U8(tAt++)} + 1;
    if (tRepeats > tFlags.size() - tDone) FTThrow(FTFaults::kTooManyFlags);
    std::memset(&tFlags[tDone], tFlag, tRepeats);
    tDone += tRepeats;
    tSizeOfX += tRepeats * tSize;
  }
  ioAt = tAt;
  return tAt + tSizeOfX;
}

/// Decodes both coordinates of each point; the running sums are kept in 16 bits.
template <class Bytes>
void FTOutline::UnpackPoints(const Bytes& iBytes, uint64_t iAtX, uint64_t iAtY) {
  const auto tRead = [&iBytes](const Coordinate& iHow, uint64_t& ioAt) {
    const uint32_t tAmount = WordAt(iBytes, ioAt, iHow) >> iHow.shift & iHow.mask;
    ioAt += iHow.size;
    return (tAmount ^ iHow.sign) - iHow.sign;
  };
  const std::span tFlags = std::span(_fFlags).first(_fPointCount);
  FTPoint* tPoint = _fPoints.data();
  uint32_t tX = 0;
  uint32_t tY = 0;
  for (const uint8_t tFlag : tFlags) {
    const auto& tHow = HowToRead(tFlag);
    tX += tRead(tHow[0], iAtX);
    tY += tRead(tHow[1], iAtY);
    *tPoint++ = {.v = Tova::WrapSigned16(tY), .h = Tova::WrapSigned16(tX)};
  }
}

FTPoint FTOutline::Point(uint16_t iIndex) const { return iIndex < _fPointCount ? _fPoints[iIndex] : FTPoint(); }

uint16_t FTOutline::ContourPointCount(uint16_t iContour) const {
  if (iContour >= _fContourCount) return 0;
  if (iContour == 0) return Tova::Wrap16(uint64_t{EndPoint(0)} + 1);
  return Tova::Wrap16(uint64_t{EndPoint(iContour)} - EndPoint(static_cast<uint16_t>(iContour - 1)));
}

FTPoint FTOutline::ContourPoint(uint16_t iContour, uint16_t iIndex) const {
  if (iContour >= _fContourCount) return {};
  if (iContour == 0) return Point(iIndex);
  return Point(Tova::Wrap16(uint64_t{EndPoint(static_cast<uint16_t>(iContour - 1))} + iIndex));
}

/// quirk: contour-ends. For all contours but the first the points that are compared are one before the ones whose flags
/// are.
bool FTOutline::HasMixedEnds(uint16_t iContour) const {
  // quirk: contour-ends. For all contours but the first the points compared are one before the ones whose flags are.
  const size_t tFirst = iContour == 0 ? 0 : size_t{EndPoint(static_cast<uint16_t>(iContour - 1))} + 1;
  if (IsOnCurve(tFirst) == IsOnCurve(EndPoint(iContour))) return false;
  const auto tLast = static_cast<uint16_t>(ContourPointCount(iContour) - 1);
  return ContourPoint(iContour, 0) == ContourPoint(iContour, tLast);
}
