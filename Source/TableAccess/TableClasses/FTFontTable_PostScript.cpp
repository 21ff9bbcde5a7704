#include <limits>

#include "TableAccess/TableClasses/FTFontTable_CID_.h"
#include "TableAccess/TableClasses/FTFontTable_TYP1.h"

namespace {

bool IsSpace(uint8_t iByte) { return iByte == ' ' || (iByte >= '\t' && iByte <= '\r'); }

/// The decimal number at a position, as atoi reads it: white space, a sign, digits. Clamped to 32 bits, signed.
uint32_t DecimalAt(Tova::ByteView iBytes, uint64_t iAt) {
  while (IsSpace(iBytes.U8(iAt))) ++iAt;
  const bool tNegative = iBytes.U8(iAt) == '-';
  if (tNegative || iBytes.U8(iAt) == '+') ++iAt;
  int64_t tValue = 0;
  for (uint8_t tByte = iBytes.U8(iAt); tByte >= '0' && tByte <= '9'; tByte = iBytes.U8(++iAt)) {
    tValue = std::min<int64_t>(tValue * 10 + (tByte - '0'), std::numeric_limits<int32_t>::max());
  }
  return Tova::Wrap32(static_cast<uint64_t>(tNegative ? -tValue : tValue));
}

/// The number that follows the first place where the byte is iFirst and the text iName is found; 0 without one.
/// The name is compared from that byte on, its own first character included.
uint32_t NumberAfter(Tova::ByteView iBytes, uint8_t iFirst, std::string_view iName) {
  for (uint64_t tAt = iBytes.Find(iFirst); tAt < iBytes.Size(); tAt = iBytes.Find(iFirst, tAt + 1)) {
    if (iBytes.Matches(tAt, iName)) return DecimalAt(iBytes, tAt + iName.size());
  }
  return 0;
}

}  // namespace

void FTFontTable_CID_::ReadDataInternal() const {
  ChargeWork(Bytes().Size());
  _fGlyphCount = NumberAfter(Bytes(), '/', "/CIDCount ");
}

void FTFontTable_TYP1::ReadDataInternal() const {
  ChargeWork(Bytes().Size());
  _fGlyphCount = NumberAfter(Bytes(), '\\', "/CharStrings ");
}
