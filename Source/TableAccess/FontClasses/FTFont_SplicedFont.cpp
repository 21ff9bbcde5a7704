#include "TableAccess/FontClasses/FTFont_SplicedFont.h"

#include <bit>

TovaStringRef FTFont_SplicedFont::GetIdentifier() const {
  if (!_fIdentifier) {
    constexpr bool kLittle = std::endian::native == std::endian::little;
    uint32_t tSum = 0;
    for (uint64_t tAt = 0; Bytes().Holds(tAt, 4); tAt += 4) {
      tSum = Tova::Wrap32(uint64_t{tSum} + (kLittle ? Bytes().LittleU32(tAt) : Bytes().U32(tAt)));
    }
    _fIdentifier = Tova::Format("%08X", {tSum});
  }
  return _fIdentifier.get();
}
