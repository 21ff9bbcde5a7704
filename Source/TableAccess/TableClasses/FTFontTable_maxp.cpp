#include "TableAccess/TableClasses/FTFontTable_maxp.h"

#include <vector>

Tova::ByteView FTFontTable_maxp::FixedPart(Tova::ByteView iBytes) {
  return iBytes.U32(0) == kLongVersion ? iBytes : iBytes.Slice(0, 6);
}

Tova::Data FTFontTable_maxp::RebuildDataInternal() const {
  ReadData();
  std::vector<uint8_t> tBytes;
  const auto tPut = [&tBytes](uint32_t iValue, int iSize) {
    while (iSize-- > 0) tBytes.push_back(static_cast<uint8_t>(iValue >> (8 * iSize)));
  };
#define FT_FIELD_WRITE(type, name) tPut(name(), sizeof(type));
  FT_MAXP_FIELDS(FT_FIELD_WRITE)
#undef FT_FIELD_WRITE
  return Tova::Adopt(TovaDataCreate(tBytes.data(), tBytes.size()));
}
