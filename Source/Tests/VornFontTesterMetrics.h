#pragma once

#include "TableAccess/TableClasses/FTFontTable_hdmx.h"
#include "TableAccess/TableClasses/FTFontTable_hmtx.h"
#include "Tests/VornFontTester.h"

/// Compares the device widths in 'hdmx' with the advances in 'hmtx', scaled to each record's size in pixels per em.
/// Needs the em from 'head'; a font whose em is 0 is not judged.
///
/// Records may overlap, so that a small table could ask for billions of comparisons: their number is limited, and so is
/// that of the messages, beyond which only the severity is recorded.
class VornFontTesterMetrics : public VornFontTester {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.metrics.consistency",
      .types = {TestType::kConsistency},
      .target = "hdmx",
      .prefix = "hdmx",
      .name = "Device widths against advances",
      .description =
          "Compares the widths of the 'hdmx' table with the advances of the 'hmtx' table scaled to the same size."};
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;

  void CheckMetrics(const FTFontTable_hdmx* iTable_hdmx, const FTFontTable_hmtx* iTable_hmtx) const;

 private:
  void CompareWidth(uint16_t iGlyph, uint16_t iAdvance, uint16_t iEm, Tova::ByteView iRecord) const;
};

inline constexpr VornFontTestEntry TestMetricsConsistency = RunTester<VornFontTesterMetrics>;
