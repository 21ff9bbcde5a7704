#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <vector>

#include "TableAccess/TableClasses/FTFontTable_Chains.h"
#include "Tests/LayoutNames.h"
#include "Tests/StateMachine.h"

/// The examination of the chains of 'morx' or 'mort', which the tests of both tables share: the chains and subtables,
/// the features that switch them on, the lookups and state machines in them, and glyphs that are made on the way and
/// not replaced again.
class ChainsExamination {
 public:
  /// Where the texts of both tests stand in a report; those of the table's header come first.
  enum Rank : uint16_t {
    kBothTables = kRankTable,
    kSize,
    kVersion,
    kReserved,
    kEmpty,
    kChainBeyondTable,
    kTrailingBytes,
    kChainLengthUnaligned,
    kChainLength,
    kFeaturesBeyondTable,
    kFeaturesBeyondChain,
    kLastFeature,
    kFeatureTwice,
    kFeatureIdle,
    kFeatureUnnamed,
    kSettingUnnamed,
    kNoFeat,
    kSubtableBeyondTable,
    kSubtableBeyondChain,
    kSubtableLengthInTable,
    kSubtableLengthInChain,
    kSubtableLengthUnaligned,
    kReservedCoverage,
    kUnknownType,
    kNoFeature,
    kNeverOn,
    kCoverageBeyondTable,
    kCoverageBeyondChain,
    kCoverageEmpty,
    kBytesAfterSubtables,
    kReplacedByItself,
    kNothingReplaced,
    kTemporaryGlyphs,
  };

  /// iHasGlyphCoverage: each chain ends with a list of glyph coverage bitmaps, as in 'morx' version 3.
  ChainsExamination(const FTFontTable_Chains& iTable, const LayoutTable& iBytes, StateTableWidth iWidth,
                    bool iHasGlyphCoverage);

  void Examine();

 private:
  /// Who made a glyph that the font does not have.
  struct Maker {
    uint32_t subtable;
    uint32_t chain;
  };
  void ExamineChain(uint32_t iIndex, const FTLayoutChain& iChain);
  bool CheckChainLength(const FTLayoutChain& iChain);
  bool CheckFeatureBounds(const FTLayoutChain& iChain);
  uint32_t CheckFeatures(const FTLayoutChain& iChain, bool iAllHeld);
  void CheckFeatureInFeat(const FTLayoutFeature& iFeature, uint64_t iAt, std::set<uint16_t>& ioUnnamed);
  const std::set<uint16_t>& SettingsOf(const FTFeatureName& iName);
  uint32_t FlagsOfSubtables(const FTLayoutChain& iChain);
  void ExamineSubtables(uint32_t iIndex, const FTLayoutChain& iChain, uint32_t iFlags);
  bool CheckSubtableHeader(const FTLayoutChain& iChain, uint64_t iAt);
  bool CheckSubtableLength(const FTLayoutChain& iChain, const FTLayoutSubtable& iSubtable);
  void CheckSubtableFlags(const FTLayoutSubtable& iSubtable, uint32_t iFlags);
  void ExamineBody(const FTLayoutSubtable& iSubtable, const Maker& iMaker);
  void CheckNoncontextual(const FTLayoutSubtable& iSubtable, const Maker& iMaker);
  void CheckGlyphCoverage(const FTLayoutChain& iChain, uint64_t iList);
  void CheckBitmap(const FTLayoutChain& iChain, uint32_t iSubtable, uint64_t iOffsetAt, uint64_t iList);
  void TakeIn(const std::vector<LookupPiece>& iPieces);
  void ReportTemporaries();

  const LayoutTable _fBytes;
  const FTLayoutChains _fChains;
  const StateTableWidth _fWidth;
  const bool _fHasGlyphCoverage;
  LayoutReport& _fReport;
  FeatureNames _fNames;
  std::map<uint16_t, std::set<uint16_t>> _fSettings;  // of the features that were looked up, by type
  bool _fHasFeatures = false;                         // beside those of type 0
  std::map<uint16_t, Maker> _fMade;                   // glyphs beyond the font's last that are in the text
};
