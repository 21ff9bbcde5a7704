#pragma once

#include <cstdint>
#include <limits>

#include "TableAccess/TableClasses/FTFontTable_head.h"
#include "TableAccess/TableClasses/FTFontTable_hhea.h"
#include "Tests/TableTester.h"

/// Judges the horizontal header: its line metrics against the em, its extremes against the glyphs (when minor errors
/// are asked for), its caret against 'post' and 'fdsc', and its reserved words. Needs 'head'; 'hmtx', 'glyf' and 'loca'
/// for the extremes. A bitmap-only font should have no such table, and is not judged further.
class VornFontTesterStructure_hhea : public TableTester<FTFontTable_hhea> {
 public:
  /// The extremes that the header states, in font units, as 16-bit arithmetic gives them.
  struct ExtremeMetrics {
    int16_t advanceMax = 0;
    int16_t sideBearingMin = std::numeric_limits<int16_t>::max();
    int16_t otherSideBearingMin = std::numeric_limits<int16_t>::max();
    int16_t extentMax = std::numeric_limits<int16_t>::min();
  };

  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.hhea.structure",
      .types = {TestType::kStructure},
      .target = "hhea",
      .prefix = "hhea",
      .name = "Horizontal header",
      .description =
          "Checks the fields of the 'hhea' table against the em, the glyphs and their metrics, and its caret "
          "against 'post' and 'fdsc'."};
  using TableTester::TableTester;
  void CheckTable(const FTFontTable_hhea& iTable) const override;

  /// Measures every glyph: advances and side bearings in 'hmtx', widths of boxes in 'glyf'; 0 without the table.
  static ExtremeMetrics GetHorizontalExtremeGlyphMetrics(const FTFont_sfnt& iFont);

 private:
  void CheckLineMetrics(const FTFontTable_hhea& iTable, uint16_t iEm) const;
  void CheckExtremes(const FTFontTable_hhea& iTable, const ExtremeMetrics& iExtremes) const;
  void CheckCaretSlope(const FTFontTable_hhea& iTable) const;
  void CheckCaretAgainstPost(const FTFontTable_hhea& iTable, const FTFont_sfnt& iFont) const;
  void CheckCaretAgainstFdsc(const FTFontTable_hhea& iTable, const FTFont_sfnt& iFont) const;
  void CheckReservedWords(const FTFontTable_hhea& iTable) const;
  void CheckLongMetrics(const FTFontTable_hhea& iTable, uint16_t iGlyphCount) const;
};

inline constexpr VornFontTestEntry TestStructure_hhea = RunTester<VornFontTesterStructure_hhea>;
