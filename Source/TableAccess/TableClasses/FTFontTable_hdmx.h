#pragma once

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

#define FT_HDMX_FIELDS(FIELD)           \
  FIELD(uint16_t, GetVersion)           \
  FIELD(uint16_t, GetDeviceRecordCount) \
  FIELD(uint32_t, GetDeviceRecordSize)

/// Device metrics. Bytes: a header of 8, then the device records, all of one size: ppem u8, greatest width u8, a width
/// in pixels (u8) for each glyph, padding. As in "hdmx — Horizontal Device Metrics" of the OpenType specification.
/// Needs no other table.
class FTFontTable_hdmx : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_hdmx, FTFontTable, "hdmx")
  FT_FIXED_LAYOUT(FT_HDMX_FIELDS, 8)

  /// The records' bytes, all of them.
  Tova::ByteView GetDeviceRecords() const { return Bytes().From(8); }
  /// The bytes from the start of a record to the end of the table; an empty view without data for an index that is not
  /// below the record count.
  Tova::ByteView GetDeviceRecord(uint64_t iIndex) const {
    if (iIndex >= GetDeviceRecordCount()) return {};
    return GetDeviceRecords().From(iIndex * GetDeviceRecordSize());
  }
};
