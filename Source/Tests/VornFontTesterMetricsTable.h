#pragma once

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TableAccess/TableClasses/FTFontTable_hmtx.h"
#include "Tests/VornFontTester.h"

/// What the tests of 'hmtx' and 'vmtx' share: the size of the table against the font's counts, the advances of glyphs 0
/// and 1, and metrics that are large for the font's em. Needs 'head', the metrics header and 'maxp'; a font of fewer
/// than two glyphs cannot be judged. A subclass gives the texts of its direction.
class VornFontTesterMetricsTable : public VornFontTester {
 public:
  using VornFontTester::VornFontTester;

 protected:
  /// What is reported; the texts are formats, with the arguments that stand beside them.
  struct Texts {
    Severity tooSmall;            ///< the severity of a table that is too small
    const char* longMetricsCut;   ///< size needed, size
    const char* moreThanGlyphs;   ///< long metrics, glyphs
    const char* metricsCut;       ///< size needed, size
    const char* tooLarge;         ///< size needed, size
    const char* glyph0Zero;       ///< without arguments
    const char* glyph1NotZero;    ///< advance
    const char* beyondEm;         ///< glyph, advance, em
    const char* bearingBeyondEm;  ///< glyph, side bearing, 40 percent of the em
  };

  /// iLongCount: how many long entries the metrics header states.
  void CheckMetricsTable(const FTFontTable_hmtx& iTable, uint16_t iLongCount, const Texts& iTexts) const;

 private:
  /// Whether the table is large enough for its metrics to be looked at.
  bool CheckSize(const FTFontTable_hmtx& iTable, uint64_t iLongCount, const Texts& iTexts) const;
  void CheckFirstGlyphs(const FTFontTable_hmtx& iTable, const Texts& iTexts) const;
  void CheckGlyphs(const FTFontTable_hmtx& iTable, const Texts& iTexts) const;
};
