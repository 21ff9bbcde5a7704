#include "TableAccess/FontClasses/FTFont_Type1.h"

namespace {

bool IsText(uint8_t iByte) {
  return (iByte >= 0x20 && iByte <= 0x7E) || iByte == '\t' || iByte == '\n' || iByte == '\r';
}

}  // namespace

const void* FTFont_Type1::TestBasicUsability() const {
  uint64_t tAt = Bytes().Find('%');
  while (tAt < Bytes().Size() && IsText(Bytes().U8(tAt))) ++tAt;
  const Tova::ByteView tRest = Bytes().From(tAt);
  return tRest.Empty() ? static_cast<const void*>(this) : tRest.Data();
}
