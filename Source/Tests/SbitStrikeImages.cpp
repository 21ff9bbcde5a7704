#include "Tests/SbitStrikeImages.h"

#include <algorithm>

namespace {

/// Image formats with small and big metrics, with rows that end on bytes or run on, and with components.
constexpr bool HasComponents(uint16_t iFormat) { return iFormat == 8 || iFormat == 9; }
constexpr bool HasSmallMetrics(uint16_t iFormat) { return iFormat == 1 || iFormat == 2 || iFormat == 8; }
constexpr bool IsBitAligned(uint16_t iFormat) { return iFormat == 2 || iFormat == 5 || iFormat == 7; }
constexpr uint16_t kCompressed = 4;
constexpr uint16_t kMetricsInIndex = 5;

constexpr uint64_t kSmallMetricsSize = 5;
constexpr uint64_t kBigMetricsSize = 8;

/// What stands before the pixels or the components, in bytes: metrics; of components a pad byte with small ones, and
/// their number.
constexpr uint64_t BytesBefore(uint16_t iFormat) {
  if (HasComponents(iFormat)) return HasSmallMetrics(iFormat) ? kSmallMetricsSize + 3 : kBigMetricsSize + 2;
  return HasSmallMetrics(iFormat) ? kSmallMetricsSize : kBigMetricsSize;
}

}  // namespace

void SbitStrikeImages::Count(Fault iFault, const std::array<uint64_t, 5>& iCase, uint64_t iCount) {
  Tally& tTally = _fTallies[iFault];
  if (tTally.count == 0) tTally.firstCase = iCase;
  tTally.count += iCount;
}

bool SbitStrikeImages::BitDepthIsKnown() const {
  return _fStrike.bitDepth == 1 || _fStrike.bitDepth == 2 || _fStrike.bitDepth == 4 || _fStrike.bitDepth == 8;
}

bool SbitStrikeImages::Examine(Budget& ioBudget) {
  const uint32_t tCount = _fLocation.CountSubtables(_fStrike);
  if (!ioBudget.Spend(tCount)) return false;
  for (uint32_t i = 0; i < tCount; ++i) _fSubtables.push_back(_fLocation.GetSubtable(_fStrike, i));
  _fSkipped.resize(tCount);
  for (uint32_t i = 0; i < tCount; ++i) {
    const Subtable& tSubtable = _fSubtables[i];
    _fSkipped[i] = !CheckSubtable(i, tSubtable);
    if (_fSkipped[i]) continue;
    if (tSubtable.IndexFormat() != 2 && !ioBudget.Spend(tSubtable.EntryCount())) return false;
    if (tSubtable.HasGlyphList()) CheckGlyphList(i, tSubtable);
    if (tSubtable.HasImageSize()) {
      CheckImagesOfOneSize(i, tSubtable);
    } else {
      CheckImages(i, tSubtable);
    }
  }
  if (_fCandidates.empty()) return true;
  FindOwners();
  SelectComposites();
  return CheckComponents(ioBudget);
}

/// Whether the subtable's images can be looked at.
bool SbitStrikeImages::CheckSubtable(uint32_t iIndex, const Subtable& iSubtable) {
  const uint64_t tTableSize = _fLocation.Location().Size();
  const uint32_t tFirst = iSubtable.firstGlyph;
  const uint32_t tLast = iSubtable.lastGlyph;
  if (tFirst > tLast) {
    Count(kRangeReversed, {iIndex, tFirst, tLast});
    return false;
  }
  if (_fGlyphCount > 0 && tLast >= _fGlyphCount) Count(kRangeBeyondFont, {iIndex, tLast, _fGlyphCount});
  const bool tStrikeIsInOrder = _fStrike.startGlyphIndex <= _fStrike.endGlyphIndex;
  if (tStrikeIsInOrder && (tFirst < _fStrike.startGlyphIndex || tLast > _fStrike.endGlyphIndex)) {
    Count(kRangeOutsideStrike, {_fStrike.startGlyphIndex, _fStrike.endGlyphIndex, iIndex, tFirst, tLast});
  }
  if (iSubtable.position % 4 != 0) Count(kUnaligned, {iIndex});
  if (iSubtable.position + Subtable::kHeaderSize > tTableSize) {
    Count(kSubtableCutOff, {tTableSize, iIndex, iSubtable.position + Subtable::kHeaderSize});
    return false;
  }
  if (!CheckFormats(iIndex, iSubtable)) return false;
  if (iSubtable.position + iSubtable.Size() > tTableSize) {
    Count(kSubtableCutOff, {tTableSize, iIndex, iSubtable.position + iSubtable.Size()});
    return false;
  }
  if (iSubtable.ImageFormat() == kMetricsInIndex && !iSubtable.HasImageSize()) {
    Count(kNoMetrics, {iIndex});
    return false;
  }
  return true;
}

bool SbitStrikeImages::CheckFormats(uint32_t iIndex, const Subtable& iSubtable) {
  const uint16_t tIndexFormat = iSubtable.IndexFormat();
  const uint16_t tImageFormat = iSubtable.ImageFormat();
  if (tIndexFormat < 1 || tIndexFormat > 5) {
    Count(kUnknownIndexFormat, {iIndex, tIndexFormat});
    return false;
  }
  const bool tIsKnown =
      tImageFormat >= 1 && tImageFormat <= 9 && tImageFormat != 3 && (tImageFormat != kCompressed || _fIsVeltrin);
  if (!tIsKnown) Count(kUnknownImageFormat, {iIndex, tImageFormat});
  return tIsKnown;
}

void SbitStrikeImages::CheckGlyphList(uint32_t iIndex, const Subtable& iSubtable) {
  std::optional<uint32_t> tOutOfOrder;
  std::optional<uint32_t> tOutside;
  uint32_t tBefore = 0;
  for (uint64_t i = 0; i < iSubtable.EntryCount(); ++i) {
    const uint32_t tGlyph = iSubtable.Image(i).glyph;
    if (i > 0 && tGlyph <= tBefore && !tOutOfOrder) tOutOfOrder = tGlyph;
    if (!iSubtable.HoldsGlyph(tGlyph) && !tOutside) tOutside = tGlyph;
    tBefore = tGlyph;
  }
  if (tOutOfOrder) Count(kListOutOfOrder, {iIndex, *tOutOfOrder});
  if (tOutside) Count(kListOutsideRange, {iIndex, *tOutside, iSubtable.firstGlyph, iSubtable.lastGlyph});
}

void SbitStrikeImages::CheckImages(uint32_t iIndex, const Subtable& iSubtable) {
  const uint64_t tDataSize = _fLocation.Data().Size();
  for (uint64_t i = 0; i < iSubtable.EntryCount(); ++i) {
    const FTBitmapImage tImage = iSubtable.Image(i);
    if (tImage.length < 0) Count(kImageReversed, {tImage.glyph});
    if (tImage.length <= 0) continue;
    const uint64_t tEnd = tImage.start + static_cast<uint64_t>(tImage.length);
    if (tEnd > tDataSize) {
      Count(kImageBeyondData, {tDataSize, tImage.glyph, tEnd});
    } else {
      MeasureImage(iIndex, i, tImage);
    }
  }
}

/// Images that are found by calculation, and not looked at one by one.
void SbitStrikeImages::CheckImagesOfOneSize(uint32_t iIndex, const Subtable& iSubtable) {
  const uint64_t tDataSize = _fLocation.Data().Size();
  const uint64_t tStart = iSubtable.ImageDataOffset();
  const uint64_t tSize = iSubtable.ImageSize();
  const uint64_t tCount = iSubtable.EntryCount();
  if (tSize == 0 || tCount == 0) return;
  const uint64_t tInside = std::min(tCount, tStart < tDataSize ? (tDataSize - tStart) / tSize : 0);
  if (tInside < tCount) {
    Count(kImageBeyondData, {tDataSize, iSubtable.Image(tInside).glyph, tStart + tSize * (tInside + 1)},
          tCount - tInside);
  }
  if (iSubtable.ImageFormat() == kMetricsInIndex) {
    CheckConstantMetrics(iSubtable);
  } else if (tInside > 0) {
    MeasureImage(iIndex, 0, iSubtable.Image(0));
  }
}

void SbitStrikeImages::CheckConstantMetrics(const Subtable& iSubtable) {
  if (!BitDepthIsKnown()) return;
  Judge(kMetricsInIndex, iSubtable.Image(0).glyph, SizeOfPixels(iSubtable.Width(), iSubtable.Height(), true),
        iSubtable.ImageSize(), iSubtable.EntryCount());
}

void SbitStrikeImages::MeasureImage(uint32_t iIndex, uint64_t iEntry, const FTBitmapImage& iImage) {
  if (iImage.format == kCompressed || !BitDepthIsKnown()) return;
  Judge(iImage.format, iImage.glyph, SizeOf(iImage), static_cast<uint64_t>(iImage.length), 1);
  if (HasComponents(iImage.format)) _fCandidates.push_back({iIndex, iEntry, iImage});
}

void SbitStrikeImages::Judge(uint16_t iFormat, uint32_t iGlyph, const Size& iSize, uint64_t iLength, uint64_t iCount) {
  if (iLength < iSize.bytes) {
    Count(kImageCutOff, {iGlyph, iSize.width, iSize.height, iSize.bytes, iLength}, iCount);
  } else if (iLength > iSize.bytes) {
    const bool tLooksByteAligned = (iFormat == 2 || iFormat == 7) && iLength == iSize.byteAligned;
    if (tLooksByteAligned) {
      Count(kImageByteAligned, {iGlyph}, iCount);
    } else {
      Count(kImageTooLong, {iGlyph, iSize.bytes, iLength}, iCount);
    }
  }
}

SbitStrikeImages::Size SbitStrikeImages::SizeOfPixels(uint64_t iWidth, uint64_t iHeight, bool iBitAligned) const {
  const uint64_t tBitAligned = (iWidth * iHeight * _fStrike.bitDepth + 7) / 8;
  const uint64_t tByteAligned = (iWidth * _fStrike.bitDepth + 7) / 8 * iHeight;
  return {iWidth, iHeight, iBitAligned ? tBitAligned : tByteAligned, tByteAligned};
}

/// What an image in the data takes, by the metrics that it begins with.
SbitStrikeImages::Size SbitStrikeImages::SizeOf(const FTBitmapImage& iImage) const {
  const Tova::ByteView tBytes = _fLocation.Data().Slice(iImage.start, static_cast<uint64_t>(iImage.length));
  const uint64_t tBefore = BytesBefore(iImage.format);
  if (tBytes.Size() < tBefore) return {0, 0, tBefore, tBefore};
  const uint64_t tHeight = tBytes.U8(0);
  const uint64_t tWidth = tBytes.U8(1);
  if (HasComponents(iImage.format)) {
    const uint64_t tBytesNeeded = tBefore + uint64_t{4} * tBytes.U16(tBefore - 2);
    return {tWidth, tHeight, tBytesNeeded, tBytesNeeded};
  }
  Size tSize = SizeOfPixels(tWidth, tHeight, IsBitAligned(iImage.format));
  tSize.bytes += tBefore;
  tSize.byteAligned += tBefore;
  return tSize;
}
