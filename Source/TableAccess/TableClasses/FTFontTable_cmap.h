#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>
#include <optional>
#include <vector>

#include "TableAccess/AncillaryClasses/FTEncoding.h"
#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// The character mapping table. Bytes: version u16, record count u16, then records of 8 bytes (platform u16, script
/// u16, offset u32 of the subtable from the table's start), and the subtables. See "cmap — Character to Glyph Index
/// Mapping Table" of the OpenType specification. Needs no other table.
///
/// Each record gives an encoding, in the order of the records; those that do not lie wholly inside the table are left
/// out. Where the subtables lie is not judged: one that begins outside the table has no bytes.
class FTFontTable_cmap : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_cmap, FTFontTable, "cmap")
  using EncodingArray = std::vector<FTEncoding>;

  void ReadDataInternal() const override;

  virtual bool operator==(const FTFontTable_cmap& iOther) const;
  virtual bool operator!=(const FTFontTable_cmap& iOther) const { return !(*this == iOther); }
  uint16_t Version() const;
  const EncodingArray& Encodings() const;
  uint64_t EncodingCount() const { return Encodings().size(); }
  /// Null for an index beyond the last.
  const FTEncoding* GetIndEncoding(uint64_t iIndex) const;
  /// The first encoding of the platform, script and language; all bits set in one of them matches every value. Null
  /// without one; oIndex is set only with one.
  const FTEncoding* FindEncoding(uint32_t iPlatform, uint32_t iScript, uint32_t iLanguage, uint64_t& oIndex) const;
  const FTEncoding* operator[](uint64_t iIndex) const { return GetIndEncoding(iIndex); }
  /// The table's bytes anew; nothing can be changed through this accessor.
  Tova::Data RebuildDataInternal() const;

  /// The encoding that stands for Unicode: the first of platform 0, script 4, 3, 0, 2 or 1, or platform 3, script 1 or
  /// 10, tried in this order.
  const FTEncoding* FindUnicodeEncoding(uint64_t& oIndex) const;

 private:
  void FindUnicodeIndex() const;

  mutable uint16_t _fVersion = 0;
  mutable EncodingArray _fEncodings;
  mutable std::optional<uint64_t> _fUnicodeIndex;
};
