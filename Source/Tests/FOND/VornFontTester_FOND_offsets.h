#pragma once

#include "Tests/FOND/VornFontTester_FOND.h"

/// Judges where the tables of a family lie, by the header as it stands, and the offset table.
class VornFontTester_FOND_offsets : public VornFontTester_FOND {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.resource.FOND.offsets.usability",
      .types = {TestType::kUsability},
      .prefix = "FOND offsets",
      .name = "Family: table offsets",
      .description =
          "Checks that the style mapping, kerning and width tables of a font family lie in the resource and "
          "behind the association table, and that the offset table points into the resource."};
  using VornFontTester_FOND::VornFontTester_FOND;

 private:
  void CheckFamily(const FTFont_FOND& iFamily) const override { CheckOffsets_FOND(iFamily); }
  void CheckOffsets_FOND(const FTFont_FOND& iFamily) const;
  void CheckStyleMapping(const FTFont_FOND& iFamily, uint32_t iFATEnd) const;
  void CheckKerningAndWidths(const FTFont_FOND& iFamily, uint32_t iFATEnd) const;
  void CheckOffsetTable(const FTFont_FOND& iFamily, int64_t iTable) const;
};

inline constexpr VornFontTestEntry TestUsability_FOND_Offsets = RunTester<VornFontTester_FOND_offsets>;
