#pragma once

#include "TableAccess/TableClasses/FTFontTable_vmtx.h"
#include "Tests/VornFontTesterMetricsTable.h"

/// Judges the vertical metrics of a font; see VornFontTesterMetricsTable.
class VornFontTesterStructure_vmtx : public VornFontTesterMetricsTable {
 public:
  using VornFontTesterMetricsTable::VornFontTesterMetricsTable;
  bool ExecuteTest() const override;
  const char* GetStringTableName() const override { return "vmtx"; }

  void CheckStructure_vmtx(const FTFontTable_vmtx* iTable) const;
};

Tova::Array TestUsability_vmtx(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions);
