#pragma once

#include <cstdint>
#include <optional>

#include "TableAccess/FontClasses/FTFont_FOND.h"
#include "Tests/VornFontTester.h"

/// Base of the tests of font families. Positions in messages are offsets from the start of the resource.
class VornFontTester_FOND : public VornFontTester {
 public:
  using FontClass = FTFont_FOND;
  using VornFontTester::VornFontTester;

  bool ExecuteTest() const final {
    const At tHere(*this, {.table = FTTag("FOND")});
    CheckFamily(Family());
    return true;
  }

 protected:
  /// The header's fields as they stand, for tests that judge the header itself: offsets from the resource's start,
  /// 0 for no table.
  static uint32_t WidthOffset(const FTFont_FOND& iFamily) { return iFamily.U32At(16); }
  static uint32_t KerningOffset(const FTFont_FOND& iFamily) { return iFamily.U32At(20); }
  static uint32_t StyleMappingOffset(const FTFont_FOND& iFamily) { return iFamily.U32At(24); }

  /// Where a table must end at the latest: the nearer of the starts of two others that lie after it, else the end of
  /// the resource.
  static int64_t LimitOf(const FTFont_FOND& iFamily, int64_t iTable, FTFont_FOND::Position iOther,
                         FTFont_FOND::Position iAnother) {
    FTFont_FOND::Position tLimit;
    for (const FTFont_FOND::Position tStart : {iOther, iAnother}) {
      if (tStart > iTable && (!tLimit || tStart < tLimit)) tLimit = tStart;
    }
    return tLimit.value_or(iFamily.Length());
  }

  const FTFont_FOND& Family() const { return static_cast<const FTFont_FOND&>(*GetFont()); }
  /// The checks, in order.
  virtual void CheckFamily(const FTFont_FOND& iFamily) const = 0;
};
