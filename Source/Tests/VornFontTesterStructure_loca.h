#pragma once

#include "TableAccess/TableClasses/FTFontTable_loca.h"
#include "Tests/VornFontTester.h"

/// Judges the size of 'loca', and the order and the range of its offsets. Needs 'head' and 'glyf'; the offset that ends
/// the last glyph is not looked at.
class VornFontTesterStructure_loca : public VornFontTester {
 public:
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;
  const char* GetStringTableName() const override { return "loca"; }

  void CheckStructure_loca(const FTFontTable_loca* iTable) const;

 private:
  void CheckSize(uint64_t iSize, uint64_t iExpected) const;
  void CheckOffsets(const FTFontTable_loca& iTable, uint16_t iGlyphCount, uint64_t iGlyfSize) const;
};

Tova::Array TestUsability_loca(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions);
