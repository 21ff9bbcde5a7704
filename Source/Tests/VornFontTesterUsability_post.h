#pragma once

#include <optional>
#include <string>
#include <vector>

#include "TableAccess/TableClasses/FTFontTable_post.h"
#include "Tests/VornFontTester.h"

/// Judges whether the names of the glyphs serve: each glyph has one of its own, of characters that programs take, that
/// says what the glyph is mapped from; and whether angle, pitch and underline agree with the rest of the font.
class VornFontTesterUsability_post : public VornFontTester {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.post.usability",
      .types = {TestType::kUsability},
      .target = "post",
      .prefix = "post",
      .name = "Glyph names",
      .description =
          "Checks that the names of the 'post' table are usable, one for each glyph and true to the "
          "character mapping, and that italic angle, pitch and underline fit the font."};
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;

 private:
  using Names = std::vector<std::optional<std::string>>;  // by glyph, in UTF-8
  static Names CollectNames(const FTFontTable_post& iTable, uint32_t iGlyphCount);

  void CheckNames(const Names& iNames) const;
  void CheckReservedNames(const Names& iNames) const;
  template <class Rule>
  void CheckEachName(Severity iSeverity, const Names& iNames, const char* iFormat, Rule iBreaksRule) const;
  void CheckSpelling(const Names& iNames) const;
  void CheckLengths(const Names& iNames) const;
  void CheckRepetition(const Names& iNames) const;
  void CheckNamesOfAscii(const Names& iNames) const;
  void CheckUnicodeNames(const Names& iNames) const;
  void CheckItalicAngle(const FTFontTable_post& iTable) const;
  void CheckPitch(const FTFontTable_post& iTable) const;
  void CheckVariablePitch() const;
  void CheckFixedPitch() const;
};

inline constexpr VornFontTestEntry TestUsability_post = RunTester<VornFontTesterUsability_post>;
