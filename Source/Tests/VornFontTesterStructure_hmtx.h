#pragma once

#include "TableAccess/TableClasses/FTFontTable_hmtx.h"
#include "Tests/VornFontTester.h"

/// Judges the size of 'hmtx' against the font's counts, the widths of glyphs 0 and 1, and metrics that are large for
/// the font's em. Needs 'head', 'hhea' and 'maxp'; a font of fewer than two glyphs cannot be judged.
class VornFontTesterStructure_hmtx : public VornFontTester {
 public:
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;
  const char* GetStringTableName() const override { return "hmtx"; }

  void CheckStructure_hmtx(const FTFontTable_hmtx* iTable) const;

 private:
  /// Whether the table is large enough for its metrics to be looked at.
  bool CheckSize(const FTFontTable_hmtx& iTable) const;
  void CheckGlyphs(const FTFontTable_hmtx& iTable) const;
};

Tova::Array TestUsability_hmtx(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions);
