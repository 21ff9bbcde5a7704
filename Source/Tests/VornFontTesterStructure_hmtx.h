#pragma once

#include "TableAccess/TableClasses/FTFontTable_hmtx.h"
#include "Tests/VornFontTesterMetricsTable.h"

/// Judges the horizontal metrics of a font; see VornFontTesterMetricsTable.
class VornFontTesterStructure_hmtx : public VornFontTesterMetricsTable {
 public:
  using VornFontTesterMetricsTable::VornFontTesterMetricsTable;
  bool ExecuteTest() const override;
  const char* GetStringTableName() const override { return "hmtx"; }

  void CheckStructure_hmtx(const FTFontTable_hmtx* iTable) const;
};

Tova::Array TestUsability_hmtx(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions);
