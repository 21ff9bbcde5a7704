#include "TableAccess/TableClasses/FTFontTable_fdsc.h"

int32_t FTFontTable_fdsc::GetAngle() const {
  for (const Tova::ByteView tDescriptor : Tova::RecordArray(Bytes(), 8, Bytes().U32(4), 8)) {
    if (tDescriptor.U32(0) == FTTag("slnt")) return tDescriptor.S32(4);
  }
  return 0;
}
