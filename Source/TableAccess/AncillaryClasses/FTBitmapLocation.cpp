#include "TableAccess/AncillaryClasses/FTBitmapLocation.h"

#include <algorithm>

#include "TableAccess/AncillaryClasses/FTException.h"

namespace {

FTBitmapLineMetrics ReadLineMetrics(Tova::ByteView iBytes) {
  return {iBytes.S8(0),
          iBytes.S8(1),
          iBytes.U8(2),
          iBytes.S8(3),
          iBytes.S8(4),
          iBytes.S8(5),
          iBytes.S8(6),
          iBytes.S8(7),
          iBytes.S8(8),
          iBytes.S8(9),
          {iBytes.U8(10), iBytes.U8(11)}};
}

void RequireIndex(bool iHolds, const char* iAssertion, FTSourcePlace iPlace = FTSourcePlace::Current()) {
  constexpr char kDetail[] = "An attempt was made to access an array element outside of the array bounds";
  if (!iHolds) FTThrow(iAssertion, kDetail, iPlace);
}

}  // namespace

uint64_t FTBitmapSubtable::EntryCount() const {
  switch (IndexFormat()) {
    case 1:
    case 2:
    case 3:
      return firstGlyph <= lastGlyph ? uint64_t{1} + lastGlyph - firstGlyph : 0;
    case 4:
      return bytes.U32(8);
    case 5:
      return bytes.U32(20);
    default:
      return 0;
  }
}

uint64_t FTBitmapSubtable::Size() const {
  switch (IndexFormat()) {
    case 1:
      return 12 + 4 * EntryCount();
    case 2:
      return 20;
    case 3:
      return 10 + 2 * EntryCount();
    case 4:
      return 16 + 4 * EntryCount();
    case 5:
      return 24 + 2 * EntryCount();
    default:
      return kHeaderSize;
  }
}

FTBitmapImage FTBitmapSubtable::Image(uint64_t iEntry) const {
  FTBitmapImage tImage{static_cast<uint32_t>(firstGlyph + iEntry), ImageFormat(), ImageDataOffset(), 0};
  const auto tSetRange = [&tImage](uint32_t iStart, uint32_t iEnd) {
    tImage.start += iStart;
    tImage.length = int64_t{iEnd} - iStart;
  };
  switch (IndexFormat()) {
    case 1:
      tSetRange(bytes.U32(8 + 4 * iEntry), bytes.U32(12 + 4 * iEntry));
      break;
    case 3:
      tSetRange(bytes.U16(8 + 2 * iEntry), bytes.U16(10 + 2 * iEntry));
      break;
    case 4:
      tImage.glyph = bytes.U16(12 + 4 * iEntry);
      tSetRange(bytes.U16(14 + 4 * iEntry), bytes.U16(18 + 4 * iEntry));
      break;
    default:
      if (IndexFormat() == 5) tImage.glyph = bytes.U16(24 + 2 * iEntry);
      tImage.start += iEntry * ImageSize();
      tImage.length = ImageSize();
  }
  return tImage;
}

uint32_t FTBitmapLocation::StrikeCount() const {
  const uint64_t tRoom = _fLocation.Size() > kHeaderSize ? (_fLocation.Size() - kHeaderSize) / kStrikeSize : 0;
  return static_cast<uint32_t>(std::min<uint64_t>(ClaimedStrikes(), tRoom));
}

FTBitmapStrike FTBitmapLocation::GetStrike(uint32_t iIndex) const {
  RequireIndex(iIndex < StrikeCount(), "iIndex < StrikeCount()");
  const Tova::ByteView tBytes = _fLocation.Slice(kHeaderSize + kStrikeSize * iIndex, kStrikeSize);
  return {tBytes.U32(0),
          tBytes.U32(4),
          tBytes.U32(8),
          tBytes.U32(12),
          ReadLineMetrics(tBytes.From(16)),
          ReadLineMetrics(tBytes.From(28)),
          tBytes.U16(40),
          tBytes.U16(42),
          tBytes.U8(44),
          tBytes.U8(45),
          tBytes.U8(46),
          tBytes.U8(47)};
}

uint32_t FTBitmapLocation::CountSubtables(const FTBitmapStrike& iStrike) const {
  const uint64_t tRoom = _fLocation.From(iStrike.indexSubTableArrayOffset).Size() / kElementSize;
  return static_cast<uint32_t>(std::min<uint64_t>(iStrike.numberOfIndexSubTables, tRoom));
}

FTBitmapSubtable FTBitmapLocation::GetSubtable(const FTBitmapStrike& iStrike, uint32_t iIndex) const {
  RequireIndex(iIndex < CountSubtables(iStrike), "iIndex < CountSubtables(iStrike)");
  const uint64_t tArray = iStrike.indexSubTableArrayOffset;
  const Tova::ByteView tElement = _fLocation.Slice(tArray + kElementSize * iIndex, kElementSize);
  const uint64_t tPosition = tArray + tElement.U32(4);
  return {tElement.U16(0), tElement.U16(2), tPosition, _fLocation.From(tPosition)};
}

std::optional<FTBitmapImage> FTBitmapLocation::FindImage(const FTBitmapStrike& iStrike, uint32_t iGlyph) const {
  for (uint32_t i = 0; i < CountSubtables(iStrike); ++i) {
    const FTBitmapSubtable tSubtable = GetSubtable(iStrike, i);
    if (!tSubtable.HoldsGlyph(iGlyph)) continue;
    const uint64_t tHeld = std::min(tSubtable.EntryCount(), tSubtable.bytes.Size());  // an entry takes a byte at least
    uint64_t tEntry = iGlyph - tSubtable.firstGlyph;
    if (tSubtable.HasGlyphList()) {
      for (tEntry = 0; tEntry < tHeld && tSubtable.Image(tEntry).glyph != iGlyph;) ++tEntry;
      if (tEntry == tHeld) return std::nullopt;
    }
    if (tEntry >= tSubtable.EntryCount()) return std::nullopt;
    const FTBitmapImage tImage = tSubtable.Image(tEntry);
    return tImage.length > 0 ? std::optional(tImage) : std::nullopt;
  }
  return std::nullopt;
}
