#pragma once

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TableAccess/TableClasses/FTFontTable_maxp.h"
#include "Tests/VornFontTester.h"

/// Judges the maximum profile: its size and version for the font's kind of outlines and, when minor errors are asked
/// for, its maxima against those of the TrueType glyphs. Needs 'glyf' for the maxima, and walks as many glyphs as the
/// table itself states.
class VornFontTesterStructure_maxp : public VornFontTester {
 public:
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;
  const char* GetStringTableName() const override { return "maxp"; }

 private:
  struct Maxima;

  void CheckSize(uint64_t iSize, uint64_t iExpected) const;
  void CheckShortForm(const FTFontTable_maxp& iTable) const;
  void CheckLongForm(const FTFontTable_maxp& iTable) const;
  static Maxima MeasureGlyphs(const FTFont_sfnt& iFont, uint16_t iGlyphCount);
  void CheckMaxima(const FTFontTable_maxp& iTable, const Maxima& iMaxima) const;
};

Tova::Array TestStructure_maxp(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions);
