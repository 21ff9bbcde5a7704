#pragma once

#include <initializer_list>

#include "TableAccess/AncillaryClasses/FTOS2Fields.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "Tests/VornFontTester.h"

/// Judges the OS/2 metrics, field by field and against the other tables. Takes the table tagged 'OS_2', else the one
/// tagged 'OS/2', which every shipped font has. A field that the version or the bytes lack is not judged.
class VornFontTesterStructure_OS_2 : public VornFontTester {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.OS_2.structure",
      .types = {TestType::kStructure},
      .target = "OS_2",
      .prefix = "OS/2",
      .name = "OS/2 metrics",
      .description =
          "Checks the fields of the 'OS/2' table one by one, and against the style bits, the characters, the "
          "advances and the pitch of the font."};
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;

 private:
  using Field = FTOS2Fields::Field;

  void CheckFields(const FTOS2Fields& iFields) const;
  void CheckSize(const FTOS2Fields& iFields) const;
  void CheckClasses(const FTOS2Fields& iFields) const;
  void CheckEmbedding(const FTOS2Fields& iFields) const;
  void CheckScriptMetrics(const FTOS2Fields& iFields) const;
  void CheckFamilyClass(const FTOS2Fields& iFields) const;
  void CheckPanose(const FTOS2Fields& iFields) const;
  void CheckVendor(const FTOS2Fields& iFields) const;
  void CheckStyleWord(const FTOS2Fields& iFields) const;
  void CheckStyleAgainstHeader(const FTOS2Fields& iFields) const;

  // Against the characters of the font.
  void CheckCharacterRanges(const FTOS2Fields& iFields) const;
  void CheckRangeBits(const FTOS2Fields& iFields) const;
  void CheckFirstAndLast(const FTOS2Fields& iFields) const;
  void CheckCodePages(const FTOS2Fields& iFields) const;
  void CheckSpecialCharacters(const FTOS2Fields& iFields) const;
  bool IsSymbolFont() const;

  // Lengths.
  void CheckLineMetrics(const FTOS2Fields& iFields) const;
  void CheckAverageWidth(const FTOS2Fields& iFields) const;
  void CheckHeights(const FTOS2Fields& iFields) const;
  void CheckOpticalSizes(const FTOS2Fields& iFields) const;
};

inline constexpr VornFontTestEntry TestStructure_OS_2 = RunTester<VornFontTesterStructure_OS_2>;
