#pragma once

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable_Chains.h"

/// The glyph metamorphosis table, which 'morx' extends. Bytes: version 16.16, chain count u32, then the chains.
class FTFontTable_mort : public FTFontTable_Chains {
  FT_TABLE_CLASS(FTFontTable_mort, FTFontTable_Chains, "mort")

  uint32_t Version() const override { return Bytes().U32(0); }
  FTLayoutChains Chains() const override { return {Bytes(), FTLayoutChains::Width::kClassic}; }

 private:
  const char* SourceFile() const override { return "TableAccess/TableClasses/FTFontTable_mort"; }
};
