#pragma once

#include "TableAccess/TableClasses/FTFontTable_glyf.h"
#include "Tests/VornFontTester.h"

/// Walks the instructions of every simple glyph; those of compound glyphs are not looked at. Needs the glyphs' tables.
class VornFontTesterInstructions_glyf : public VornFontTester {
 public:
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;
  const char* GetStringTableName() const override { return "glyf"; }

  void CheckInstructions_glyf(const FTFontTable_glyf* iTable) const;
};

Tova::Array TestInstructions_glyf(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions);
