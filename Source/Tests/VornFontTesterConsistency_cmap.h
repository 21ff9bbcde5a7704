#pragma once

#include "TableAccess/AncillaryClasses/FTUnicodeMap.h"
#include "TableAccess/TableClasses/FTFontTable_cmap.h"
#include "Tests/TableTester.h"

/// Compares the Unicode encodings of a font with one another, and the Roman encoding of platform 1 with them: the same
/// character should have the same glyph in each, and none should lack what another has.
class VornFontTesterConsistency_cmap : public TableTester<FTFontTable_cmap> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.cmap.consistency",
      .types = {TestType::kConsistency},
      .target = "cmap",
      .prefix = "cmap",
      .name = "Encodings agree",
      .description =
          "Compares the Unicode encodings of the font with one another and with the Roman encoding of the "
          "Valdor platform."};
  using TableTester::TableTester;
  void CheckTable(const FTFontTable_cmap& iTable) const override;

 private:
  using Encoding = FTUnicodeMap::Encoding;
  void CheckPair(const Encoding& iFirst, const Encoding& iSecond) const;
  void CheckRoman(const FTFontTable_cmap& iTable) const;
};

inline constexpr VornFontTestEntry TestConsistency_cmap = RunTester<VornFontTesterConsistency_cmap>;
