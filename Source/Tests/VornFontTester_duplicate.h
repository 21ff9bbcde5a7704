#pragma once

#include "Tests/VornFontTester.h"

/// Asks the conduit, a service outside this process, whether another font with the font's PostScript name is installed.
/// Only fonts from files are asked about: sfnt fonts, and families without one among their outlines. Waits for the
/// conduit; without one, for as long as RundleConduitLimits says. The report is made whatever severities the caller
/// enabled.
class VornFontTester_duplicate : public VornFontTester {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.duplicates",
      .types = {TestType::kUsability},
      .prefix = "Duplicates",
      .name = "Duplicate fonts",
      .description = "Asks whether another font with the same PostScript name is installed."};
  using FontClass = FTFont;
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;

 private:
  void CheckForDuplicates() const;
  void LookForDuplicateFamily() const;
  void LookForDuplicateFont() const;
  void LookForDuplicatePostScriptName(TovaStringRef iPostScriptName) const;
};

inline constexpr VornFontTestEntry TestForDuplicates = RunTester<VornFontTester_duplicate>;
