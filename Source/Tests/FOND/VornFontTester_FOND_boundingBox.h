#pragma once

#include "Tests/FOND/VornFontTester_FOND.h"

/// Judges whether the bounding boxes of a family, where it has some, lie in the resource.
class VornFontTester_FOND_boundingBox : public VornFontTester_FOND {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.resource.FOND.boundingbox.usability",
      .types = {TestType::kUsability},
      .prefix = "FOND bounding boxes",
      .name = "Family: bounding boxes",
      .description = "Checks that the bounding-box table of a font family lies in the resource."};
  using VornFontTester_FOND::VornFontTester_FOND;

 private:
  void CheckFamily(const FTFont_FOND& iFamily) const override { CheckBoundingBox_FOND(iFamily); }
  void CheckBoundingBox_FOND(const FTFont_FOND& iFamily) const;
};

inline constexpr VornFontTestEntry TestUsability_FOND_BoundingBox = RunTester<VornFontTester_FOND_boundingBox>;
