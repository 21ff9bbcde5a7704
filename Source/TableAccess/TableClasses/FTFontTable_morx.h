#pragma once

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable_Chains.h"

/// The extended glyph metamorphosis table. Bytes: version u16 (2 or 3), unused u16, chain count u32, then the chains;
/// in version 3 each ends with a list of glyph coverage bitmaps.
class FTFontTable_morx : public FTFontTable_Chains {
  FT_TABLE_CLASS(FTFontTable_morx, FTFontTable_Chains, "morx")

  uint32_t Version() const override { return Bytes().U16(0); }
  FTLayoutChains Chains() const override { return {Bytes(), FTLayoutChains::Width::kExtended}; }

 private:
  const char* SourceFile() const override { return "TableAccess/TableClasses/FTFontTable_morx"; }
};
