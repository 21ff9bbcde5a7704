#pragma once

#include "TableAccess/TableClasses/TagOnlyTables.h"
#include "Tests/VornFontTester.h"

/// Walks the font program, which is the whole table 'fpgm'. Needs no other table.
class VornFontTesterInstructions_fpgm : public VornFontTester {
 public:
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;
  const char* GetStringTableName() const override { return "fpgm"; }

  void CheckInstructions_fpgm(const FTFontTable_fpgm* iTable) const;
};

Tova::Array TestInstructions_fpgm(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions);
