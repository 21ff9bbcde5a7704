#pragma once

#include "TableAccess/TableClasses/FTFontTable_kern.h"
#include "Tests/LayoutTester.h"

/// Judges the kerning subtables of both dialects: their headers, pairs, class tables, state tables and index arrays,
/// and the values in them. Needs the glyph count, the units per em, and 'gvar' for variations.
class VornFontTesterStructure_kern : public LayoutTester<FTFontTable_kern> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.kern.structure",
      .types = {TestType::kStructure},
      .target = "kern",
      .prefix = "kern",
      .name = "Kerning structure",
      .description =
          "Checks the subtables of the 'kern' table in all their formats: bounds, order of pairs, classes, "
          "state machines and values."};
  using LayoutTester::LayoutTester;

 protected:
  void Examine(const FTFontTable_kern& iTable, const LayoutTable& iBytes) const override;

 private:
  /// A subtable, and what the table around it says.
  struct Subtable {
    FTKernSubtable fields;
    uint64_t storedLength;
    bool isVersion1;
    bool isLast;
    bool IsCrossStream() const;
  };
  void CheckSubtables(const FTFontTable_kern& iTable, const LayoutTable& iBytes) const;
  void CheckSubtable(const LayoutTable& iBytes, const Subtable& iSubtable) const;
  void CheckCoverage(const LayoutTable& iBytes, const Subtable& iSubtable) const;
  bool CheckFormatHeader(const LayoutTable& iBytes, const Subtable& iSubtable, uint64_t iFields) const;
  void CheckPairs(const LayoutTable& iBytes, const Subtable& iSubtable) const;
  void CheckLengthOfPairs(const LayoutTable& iBytes, const Subtable& iSubtable, uint64_t iPairs) const;
  void CheckSearchWords(const LayoutTable& iBytes, uint64_t iBody) const;

  // Format 2.
  struct ClassTable;
  void CheckClassArray(const LayoutTable& iBytes, const Subtable& iSubtable) const;
  ClassTable ReadClassTable(const LayoutTable& iBytes, uint64_t iAt) const;
  void CheckClassValues(const LayoutTable& iBytes, const Subtable& iSubtable, const ClassTable& iLeft,
                        const ClassTable& iRight) const;
  void CheckArrayEnd(const LayoutTable& iBytes, const Subtable& iSubtable, const ClassTable& iLeft,
                     const ClassTable& iRight) const;

  // Format 3.
  void CheckIndexArray(const LayoutTable& iBytes, const Subtable& iSubtable) const;

  void CheckValues(const LayoutTable& iBytes, const Subtable& iSubtable, uint64_t iAt, uint64_t iCount,
                   uint64_t iStride) const;
};

inline constexpr VornFontTestEntry TestStructure_kern = RunTester<VornFontTesterStructure_kern>;
