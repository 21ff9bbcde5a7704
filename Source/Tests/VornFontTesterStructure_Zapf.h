#pragma once

#include <optional>
#include <set>
#include <vector>

#include "TableAccess/TableClasses/FTFontTable_Zapf.h"
#include "Tests/LayoutTester.h"

/// Judges what 'Zapf' tells of each glyph: its text, its names, and the groups and features that it belongs to. Needs
/// the glyph count, and 'name' and 'feat' for names and features.
class VornFontTesterStructure_Zapf : public LayoutTester<FTFontTable_Zapf> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.Zapf.structure",
      .types = {TestType::kStructure},
      .target = "Zapf",
      .prefix = "Zapf",
      .name = "Glyph information",
      .description =
          "Checks the records of the 'Zapf' table: texts, names and character identifiers of glyphs, their "
          "groups and features."};
  using LayoutTester::LayoutTester;

 protected:
  void Examine(const FTFontTable_Zapf& iTable, const LayoutTable& iBytes) const override;

 private:
  struct Glyphs;
  struct Groups;
  void CheckGlyph(const LayoutTable& iBytes, uint16_t iGlyph, uint64_t iRecord, Glyphs& ioGlyphs) const;
  bool CheckNames(const LayoutTable& iBytes, uint16_t iGlyph, uint64_t iNames, Glyphs& ioGlyphs) const;
  static bool IsUnicode(const LayoutTable& iBytes, uint64_t iText, uint64_t iCount);
  void ReportGlyphs(LayoutReport& ioReport, const Glyphs& iGlyphs) const;

  void CheckGroups(const LayoutTable& iBytes, uint64_t iExtraInfo, const std::set<uint32_t>& iOffsets) const;
  void CheckGroupOfGroups(const LayoutTable& iBytes, uint64_t iGroup, Groups& ioGroups) const;
  bool CheckGroup(const LayoutTable& iBytes, uint64_t iGroup, Groups& ioGroups) const;
  void CheckFeatures(const LayoutTable& iBytes, uint64_t iExtraInfo, const std::set<uint32_t>& iOffsets) const;
};

inline constexpr VornFontTestEntry TestStructure_Zapf = RunTester<VornFontTesterStructure_Zapf>;
