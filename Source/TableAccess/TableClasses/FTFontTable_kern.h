#pragma once

#include <cstdint>

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// A subtable of 'kern'.
struct FTKernSubtable {
  uint64_t offset = 0;      ///< bytes from the start of the table
  uint64_t headerSize = 0;  ///< bytes: 6 in version 0, 8 in version 1.0
  uint64_t length = 0;      ///< bytes, header included
  uint8_t format = 0;
  uint16_t coverage = 0;
  uint16_t tupleIndex = 0;  ///< version 1.0: of the global coordinate that its values are for

  uint64_t Body() const { return offset + headerSize; }
  uint64_t End() const { return offset + length; }
};

/// The kerning table, in two dialects. Bytes, version 0: version u16 (0), subtable count u16, subtables of version u16,
/// length u16, coverage u16, body; as in "kern — Kerning" of the OpenType specification. Version 1.0: version 16.16,
/// subtable count u32, subtables of length u32, coverage u16, tuple index u16, body; as in "The 'kern' table" of the
/// TrueType reference. Needs no other table.
///
/// The length of a version 0 format 0 subtable that is the last is that of its pairs, whatever its 16 bits say: large
/// ones exist.
class FTFontTable_kern : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_kern, FTFontTable, "kern")

  static constexpr uint32_t kVersion1 = 0x00010000;
  static constexpr uint64_t kPairsHeaderSize = 8;
  static constexpr uint64_t kPairSize = 6;

  /// 0, or the whole first u32.
  virtual uint32_t Version() const { return Bytes().U16(0) == 0 ? 0 : Bytes().U32(0); }
  uint64_t GetSubtableCount() const { return IsVersion1() ? Bytes().U32(4) : Bytes().U16(2); }
  /// False when the header does not fit, or one before it has a length that is too small for its header.
  bool GetIndSubtable(uint64_t iIndex, FTKernSubtable& oSubtable) const;

  bool IsVersion1() const { return Version() == kVersion1; }
  uint64_t HeaderSize() const { return IsVersion1() ? 8 : 4; }
  uint64_t SubtableHeaderSize() const { return IsVersion1() ? 8 : 6; }
  /// The subtable at an offset, with the length as it is stored.
  FTKernSubtable ReadSubtable(uint64_t iAt) const;
  /// 14 + 6 for each pair, for a subtable of version 0 and format 0.
  uint64_t LengthOfPairs(const FTKernSubtable& iSubtable) const {
    return iSubtable.headerSize + kPairsHeaderSize + kPairSize * Bytes().U16(iSubtable.Body());
  }
};
