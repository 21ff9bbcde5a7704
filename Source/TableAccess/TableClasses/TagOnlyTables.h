#pragma once

#include "TableAccess/TableClasses/FTFontTable.h"

/// An accessor of a table whose fields nobody reads through it: its class tells what the table is, its users take the
/// bytes.
template <uint32_t Tag>
class FTTagOnlyTable : public FTFontTable {
 public:
  static constexpr uint32_t kTag = Tag;
  using FTFontTable::FTFontTable;
  FTTagOnlyTable() = default;
  explicit FTTagOnlyTable(const FTFontTable& iTable) : FTFontTable(iTable) {}
  uint32_t GetTag() const override { return kTag; }
};

using FTFontTable_bdat = FTTagOnlyTable<FTTag("bdat")>;
using FTFontTable_bloc = FTTagOnlyTable<FTTag("bloc")>;
using FTFontTable_CFF_ = FTTagOnlyTable<FTTag("CFF ")>;
using FTFontTable_cvt_ = FTTagOnlyTable<FTTag("cvt_")>;  // quirk: tag-spelling. 'cvt ' gets a plain FTFontTable
using FTFontTable_dsig = FTTagOnlyTable<FTTag("dsig")>;  // in lower case, likewise
using FTFontTable_EBDT = FTTagOnlyTable<FTTag("EBDT")>;
using FTFontTable_EBLC = FTTagOnlyTable<FTTag("EBLC")>;
using FTFontTable_EBSC = FTTagOnlyTable<FTTag("EBSC")>;
using FTFontTable_fpgm = FTTagOnlyTable<FTTag("fpgm")>;
using FTFontTable_prep = FTTagOnlyTable<FTTag("prep")>;
