#pragma once

#include <map>
#include <set>
#include <tuple>
#include <utility>

#include "TableAccess/AncillaryClasses/FTBitmapLocation.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "Tests/SbitStrikeImages.h"
#include "Tests/VornFontTester.h"

/// Judges embedded bitmaps: that the tables 'EBLC' and 'EBDT' or 'bloc' and 'bdat' go together, their strikes, the
/// index subtables of each strike and the images that these lead to, and the sizes that 'EBSC' has scaled. What is
/// wrong with many images of a strike is reported once, with the number of them and the first.
class VornFontTesterStructure_sbit : public VornFontTester {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.sbit.structure",
      .types = {TestType::kStructure},
      .target = nullptr,
      .prefix = "sbit",
      .name = "Embedded bitmaps",
      .description =
          "Checks that the tables of embedded bitmaps go together, their strikes and index subtables, and "
          "that every image lies inside the data and has the bytes it needs."};
  using VornFontTester::VornFontTester;
  bool ExecuteTest() const override;

 private:
  /// A location table and its data table.
  struct Pair {
    const char* locationName;
    uint32_t location;
    const char* dataName;
    uint32_t data;
  };
  static const Pair kVeltrinPair;
  static const Pair kMicrosoftPair;

  using Size = std::tuple<uint8_t, uint8_t, uint8_t>;  // ppemY, ppemX, bit depth
  using PixelsPerEm = std::pair<uint8_t, uint8_t>;     // across, down
  struct Strikes;

  bool Has(uint32_t iTag) const { return SfntFont().HasTaggedTable(iTag); }
  bool IsWhole(const Pair& iPair) const { return Has(iPair.location) && Has(iPair.data); }

  void CheckPairs() const;
  void CheckHeaders() const;
  void CheckPair(const Pair& iPair) const;
  bool CheckTableHeaders(const Pair& iPair, const FTBitmapLocation& iLocation) const;
  bool CheckStrikeCount(const Pair& iPair, const FTBitmapLocation& iLocation) const;
  void CheckStrike(uint32_t iIndex, const FTBitmapStrike& iStrike, Strikes& ioStrikes) const;
  void CheckStrikeFlags(uint32_t iIndex, const FTBitmapStrike& iStrike) const;
  void CheckStrikeOrder(uint32_t iIndex, const FTBitmapStrike& iStrike, Strikes& ioStrikes) const;
  void CheckStrikeFields(uint32_t iIndex, const FTBitmapStrike& iStrike) const;
  bool CheckIndexPlace(uint32_t iIndex, const FTBitmapStrike& iStrike, uint64_t iTableSize) const;
  void ReportIndexOrder(uint32_t iIndex, const SbitStrikeImages& iImages) const;
  void ReportImages(uint32_t iIndex, const SbitStrikeImages& iImages) const;

  void CheckScaledSizes() const;
  void CheckScaledSize(uint32_t iIndex, Tova::ByteView iRecord, const std::set<PixelsPerEm>* iStrikes) const;
};

inline constexpr VornFontTestEntry TestStructure_sbit = RunTester<VornFontTesterStructure_sbit>;
