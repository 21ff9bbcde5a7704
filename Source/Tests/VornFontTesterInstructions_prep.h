#pragma once

#include "TableAccess/TableClasses/TagOnlyTables.h"
#include "Tests/VornFontTester.h"

/// Walks the control-value program, which is the whole table 'prep'. Needs no other table.
class VornFontTesterInstructions_prep : public VornFontTester {
 public:
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;
  const char* GetStringTableName() const override { return "prep"; }

  void CheckInstructions_prep(const FTFontTable_prep* iTable) const;
};

Tova::Array TestInstructions_prep(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions);
