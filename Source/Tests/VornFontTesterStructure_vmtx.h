#pragma once

#include "TableAccess/TableClasses/FTFontTable_vmtx.h"
#include "Tests/VornFontTester.h"

/// Judges the size of 'vmtx' against the font's counts, the heights of glyphs 0 and 1, and metrics that are large for
/// the font's em. Needs 'head', 'vhea' and 'maxp'; a font of fewer than two glyphs cannot be judged.
class VornFontTesterStructure_vmtx : public VornFontTester {
 public:
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;
  const char* GetStringTableName() const override { return "vmtx"; }

  void CheckStructure_vmtx(const FTFontTable_vmtx* iTable) const;

 private:
  /// Whether the table is large enough for its metrics to be looked at.
  bool CheckSize(const FTFontTable_vmtx& iTable) const;
  void CheckGlyphs(const FTFontTable_vmtx& iTable) const;
};

Tova::Array TestUsability_vmtx(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions);
