#pragma once

#include <vector>

#include "TableAccess/TableClasses/FTFontTable_post.h"
#include "Tests/TableTester.h"

/// Judges the PostScript information: its format, whether the names of the glyphs fit in the table and serve the glyphs
/// of the font, and its memory and underline fields.
class VornFontTesterStructure_post : public TableTester<FTFontTable_post> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.post.structure",
      .types = {TestType::kStructure},
      .target = "post",
      .prefix = "post",
      .name = "PostScript information structure",
      .description =
          "Checks the format of the 'post' table, that it names every glyph with names that lie inside it, "
          "and its memory and underline fields."};
  using TableTester::TableTester;
  void CheckTable(const FTFontTable_post& iTable) const override;

 private:
  void CheckNames(const FTFontTable_post& iTable) const;
  void CheckStandardNames(const FTFontTable_post& iTable) const;
  void CheckGlyphCount(uint32_t iCount, uint32_t iGlyphCount) const;
  void CheckNameOffsets(const FTFontTable_post& iTable) const;
  void CheckStoredNames(const FTFontTable_post& iTable) const;
  void CheckNameIndices(const FTFontTable_post& iTable) const;
  void CheckNameData(const FTFontTable_post& iTable, uint32_t iNeeded) const;
  void CheckUnusedNames(const std::vector<bool>& iUsed) const;
  void CheckMemory(uint32_t iMinimum, uint32_t iMaximum) const;
  void CheckUnderline(const FTFontTable_post& iTable) const;
};

inline constexpr VornFontTestEntry TestStructure_post = RunTester<VornFontTesterStructure_post>;
