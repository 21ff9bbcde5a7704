#pragma once

#include "TableAccess/FontClasses/FTFont_NFNT.h"
#include "Tests/VornFontTester.h"

/// Judges the header of a bitmap font resource.
class VornFontTester_NFNT : public VornFontTester {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.resource.NFNT.usability",
      .types = {TestType::kUsability},
      .prefix = "NFNT",
      .name = "Bitmap font",
      .description = "Checks that a bitmap font resource holds a header with a sound range of characters."};
  using FontClass = FTFont_NFNT;
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;

 private:
  void CheckNFNT(const FTFont_NFNT& iFont) const;
};

inline constexpr VornFontTestEntry TestUsability_NFNT = RunTester<VornFontTester_NFNT>;
