#pragma once

#include "TableAccess/TableClasses/FTFontTable_hmtx.h"

/// Vertical metrics, laid out as 'hmtx' with the number of long entries that 'vhea' gives.
class FTFontTable_vmtx : public FTFontTable_hmtx {
  FT_TABLE_CLASS(FTFontTable_vmtx, FTFontTable_hmtx, "vmtx")
};
