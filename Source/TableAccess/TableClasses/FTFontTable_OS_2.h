#pragma once

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// The version and the embedding permissions of the OS/2 metrics. Bytes: version u16 at 0, fsType s16 at 8, as in
/// "OS/2 — OS/2 and Windows Metrics Table" of the OpenType specification. The class serves the tag 'OS_2', with an
/// underscore; a table tagged 'OS/2' gets a plain FTFontTable. Needs no other table.
class FTFontTable_OS_2 : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_OS_2, FTFontTable, "OS_2")

  uint16_t GetVersion() const { return Bytes().U16(0); }
  int16_t GetFSType() const { return Bytes().S16(8); }
};
