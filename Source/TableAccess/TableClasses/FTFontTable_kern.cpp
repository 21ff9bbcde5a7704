#include "TableAccess/TableClasses/FTFontTable_kern.h"

FTKernSubtable FTFontTable_kern::ReadSubtable(uint64_t iAt) const {
  const Tova::ByteView tBytes = Bytes().From(iAt);
  FTKernSubtable tSubtable;
  tSubtable.offset = iAt;
  tSubtable.headerSize = SubtableHeaderSize();
  tSubtable.coverage = tBytes.U16(4);
  if (IsVersion1()) {
    tSubtable.length = tBytes.U32(0);
    tSubtable.format = static_cast<uint8_t>(tSubtable.coverage);
    tSubtable.tupleIndex = tBytes.U16(6);
  } else {
    tSubtable.length = tBytes.U16(2);
    tSubtable.format = static_cast<uint8_t>(tSubtable.coverage >> 8);
  }
  return tSubtable;
}

bool FTFontTable_kern::GetIndSubtable(uint64_t iIndex, FTKernSubtable& oSubtable) const {
  if (iIndex >= GetSubtableCount()) return false;
  uint64_t tAt = HeaderSize();
  for (uint64_t i = 0; Bytes().Holds(tAt, SubtableHeaderSize()); ++i) {
    FTKernSubtable tSubtable = ReadSubtable(tAt);
    if (!IsVersion1() && tSubtable.format == 0 && i + 1 == GetSubtableCount()) {
      tSubtable.length = LengthOfPairs(tSubtable);
    }
    if (i == iIndex) {
      oSubtable = tSubtable;
      return true;
    }
    if (tSubtable.length < tSubtable.headerSize) return false;
    tAt += tSubtable.length;
  }
  return false;
}
