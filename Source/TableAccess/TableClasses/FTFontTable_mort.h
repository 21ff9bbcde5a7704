#pragma once

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// The glyph metamorphosis table, by which fonts substitute and rearrange glyphs. Bytes: version 16.16, chain count
/// u32, then the chains (see FeatureChains). Needs no other table.
class FTFontTable_mort : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_mort, FTFontTable, "mort")

  /// The number of features that are on by default; throws when the chains leave the table.
  virtual uint64_t CountDefaultFeatures() const;
};
