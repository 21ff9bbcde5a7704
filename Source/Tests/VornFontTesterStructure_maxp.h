#pragma once

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TableAccess/TableClasses/FTFontTable_maxp.h"
#include "Tests/TableTester.h"

/// Judges the maximum profile: its size and version for the font's kind of outlines and, when minor errors are asked
/// for, its maxima against those of the TrueType glyphs. Needs 'glyf' for the maxima, and walks as many glyphs as the
/// table itself states.
class VornFontTesterStructure_maxp : public TableTester<FTFontTable_maxp> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.maxp.structure",
      .types = {TestType::kStructure},
      .target = "maxp",
      .prefix = "maxp",
      .name = "Maximum profile",
      .description =
          "Checks the size and the version of the 'maxp' table and compares its maxima with those of the glyphs."};
  using TableTester::TableTester;
  void CheckTable(const FTFontTable_maxp& iTable) const override;

 private:
  struct Maxima;

  void CheckSize(uint64_t iSize, uint64_t iExpected) const;
  void CheckShortForm(const FTFontTable_maxp& iTable) const;
  void CheckLongForm(const FTFontTable_maxp& iTable) const;
  static Maxima MeasureGlyphs(const FTFont_sfnt& iFont, uint16_t iGlyphCount);
  void CheckMaxima(const FTFontTable_maxp& iTable, const Maxima& iMaxima) const;
};

inline constexpr VornFontTestEntry TestStructure_maxp = RunTester<VornFontTesterStructure_maxp>;
