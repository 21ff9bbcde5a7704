#pragma once

#include <set>

#include "TableAccess/TableClasses/FTFontTable_just.h"
#include "Tests/LayoutTester.h"

/// Judges the justification data for horizontal and vertical text: width deltas, the state machine that gives glyphs
/// their justification classes, and the postcompensation actions. Needs the glyph count, and 'fvar' for axes.
class VornFontTesterStructure_just : public LayoutTester<FTFontTable_just> {
 public:
  static constexpr TestIdentity kIdentity = {
      .identifier = "veltrin.TrueType.just.structure",
      .types = {TestType::kStructure},
      .target = "just",
      .prefix = "just",
      .name = "Justification",
      .description =
          "Checks the width deltas, the class machine and the postcompensation actions of the 'just' table."};
  using LayoutTester::LayoutTester;

  /// The texts of the test, in the order of the report.
  enum Rank : uint16_t {
    kSize = kRankTable,
    kVersion,
    kFormat,
    kNoData,
    kOffsetTooSmall,
    kDataBeyondTable,
    kClassTableTooBig,
    kWidthDeltasTooBig,
    kPostcompensationTooBig,
    kNoWidthDeltas,
    kClusterBeyondTable,
    kDeltaClass,
    kDeltaClassTwice,
    kDeltaDirection,
    kDeltaFlags,
    kClassTableLength,
    kClassWithoutDelta,
    kActionsBeyondTable,
    kActionLength,
    kActionData,
    kActionUnaligned,
    kActionType,
    kActionClass,
    kActionGlyph,
    kActionLimits,
    kActionAxisLimits,
    kActionAxis,
    kActionFlags,
  };

 protected:
  void Examine(const FTFontTable_just& iTable, const LayoutTable& iBytes) const override;

 private:
  static constexpr uint32_t kHighestClass = 127;

  /// The data for one direction of text; offsets are bytes from the start of the table, 0 for none.
  struct Data {
    uint64_t at;
    uint16_t classTable;
    uint16_t widthDeltas;
    uint16_t postcompensation;
    std::set<uint32_t> classesInUse = {};  ///< that width deltas or actions have
  };
  /// What all clusters together do wrong.
  struct DeltaTallies {
    LayoutTally badClass;
    LayoutTally badDirection;
    LayoutTally badFlags;
  };
  /// An action, and what its header says.
  struct Action {
    uint64_t at;
    uint16_t glyphClass;
    uint16_t type;
    uint32_t length;
  };
  void CheckData(const LayoutTable& iBytes, uint16_t iOffset) const;
  uint16_t CheckTableOffset(const LayoutTable& iBytes, uint64_t iField, uint16_t iRank, const char* iTooBig) const;
  void CheckWidthDeltas(const LayoutTable& iBytes, Data& ioData) const;
  void CheckCluster(const LayoutTable& iBytes, uint64_t iCluster, Data& ioData, DeltaTallies& ioTallies) const;
  void CheckDelta(Tova::ByteView iDelta, uint64_t iAt, uint64_t iCluster, DeltaTallies& ioTallies) const;
  void CheckClassMachine(const LayoutTable& iBytes, const Data& iData) const;
  void CheckPostcompensation(const LayoutTable& iBytes, Data& ioData) const;
  void CheckActions(const LayoutTable& iBytes, uint64_t iList, Data& ioData) const;
  void CheckAction(const LayoutTable& iBytes, const Action& iAction) const;
  bool CheckActionData(const LayoutTable& iBytes, const Action& iAction) const;
  void CheckActionGlyphs(const LayoutTable& iBytes, const Action& iAction) const;
  void CheckActionValues(const LayoutTable& iBytes, const Action& iAction) const;
  bool HasAxis(uint32_t iTag) const;
};

inline constexpr VornFontTestEntry TestStructure_just = RunTester<VornFontTesterStructure_just>;
