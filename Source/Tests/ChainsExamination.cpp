#include "Tests/ChainsExamination.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace {

constexpr uint64_t kFeatureSize = FTLayoutFeature::kSize;

/// The feature whose setting "off" ends the list of a chain's features.
constexpr uint16_t kAllTypographicFeatures = 0;
constexpr uint16_t kAllOff = 1;

struct CoverageBits {
  uint32_t reserved;
  uint32_t type;
};
constexpr CoverageBits kClassicCoverage = {0x1FF8, 0x0007};
constexpr CoverageBits kExtendedCoverage = {0x0FFFFF00, 0x000000FF};

const CoverageBits& CoverageOf(StateTableWidth iWidth) {
  return iWidth == StateTableWidth::kExtended ? kExtendedCoverage : kClassicCoverage;
}

// Types of subtables.
constexpr uint32_t kRearrangement = 0;
constexpr uint32_t kContextual = 1;
constexpr uint32_t kLigature = 2;
constexpr uint32_t kNoncontextual = 4;
constexpr uint32_t kInsertion = 5;

}  // namespace

ChainsExamination::ChainsExamination(const FTFontTable_Chains& iTable, const LayoutTable& iBytes,
                                     StateTableWidth iWidth, bool iHasGlyphCoverage)
    : _fBytes{iBytes.bytes, iBytes.glyphCount, false, iBytes.report},
      _fChains(iTable.Chains()),
      _fWidth(iWidth),
      _fHasGlyphCoverage(iHasGlyphCoverage),
      _fReport(iBytes.report),
      _fNames(*iTable.GetFont()) {}

void ChainsExamination::Examine() {
  const uint32_t tCount = _fChains.CountChains();
  if (tCount == 0) _fReport.Report(kEmpty, Severity::kMinorError, "The table has no chains", {}, {4});
  uint64_t tAt = FTLayoutChains::kTableHeaderSize;
  uint32_t tIndex = 0;
  bool tGoesOn = true;
  for (; tIndex < tCount && tGoesOn && _fBytes.bytes.Holds(tAt, _fChains.ChainHeaderSize()); ++tIndex) {
    const FTLayoutChain tChain = _fChains.ReadChain(tAt);
    _fReport.Enter("Chain %d", {tIndex});
    _fReport.Spend(1);
    tGoesOn = CheckChainLength(tChain);
    if (tGoesOn) ExamineChain(tIndex, tChain);
    tAt += tChain.length;
  }
  _fReport.Leave();
  if (tGoesOn && tIndex < tCount) {
    _fReport.Report(kChainBeyondTable, Severity::kFatalError, "Chain %d of %lu lies beyond the end of the table",
                    {tIndex, tCount}, {tAt});
  } else if (tGoesOn && _fBytes.Left(tAt) > 3) {
    _fReport.Report(kTrailingBytes, Severity::kTechnicalError, "%lu bytes follow the last chain", {_fBytes.Left(tAt)},
                    {tAt});
  }
  if (_fHasFeatures && !_fNames.HasTable()) {
    _fReport.Report(kNoFeat, Severity::kInformation, "The font has no 'feat' table to name its features", {});
  }
  ReportTemporaries();
}

bool ChainsExamination::CheckChainLength(const FTLayoutChain& iChain) {
  if (iChain.length % 4 != 0) {
    _fReport.Report(kChainLengthUnaligned, Severity::kTechnicalError,
                    "The length of the chain, %lu, is not a multiple of four", {iChain.length}, {iChain.offset});
  }
  if (_fChains.HasSoundLength(iChain)) return true;
  _fReport.Report(kChainLength, Severity::kFatalError,
                  "The length of the chain, %lu, is wrong; %lu bytes are left in the table",
                  {iChain.length, _fBytes.Left(iChain.offset)}, {iChain.offset});
  return false;
}

void ChainsExamination::ExamineChain(uint32_t iIndex, const FTLayoutChain& iChain) {
  const bool tHasAllFeatures = CheckFeatureBounds(iChain);
  const uint32_t tFlags = iChain.defaultFlags | CheckFeatures(iChain, tHasAllFeatures);
  if (tHasAllFeatures) ExamineSubtables(iIndex, iChain, tFlags);
}

// Features.

/// Whether the table holds all the entries, and the subtables behind them can be found.
bool ChainsExamination::CheckFeatureBounds(const FTLayoutChain& iChain) {
  const uint64_t tNeeded = kFeatureSize * iChain.featureCount;
  const uint64_t tLeft = _fBytes.Left(iChain.Features());
  const uint64_t tLeftInChain = iChain.length - iChain.headerSize;
  if (tNeeded > tLeft) {
    _fReport.Report(kFeaturesBeyondTable, Severity::kFatalError,
                    "The feature entries need %lu bytes; only %lu are left in the table", {tNeeded, tLeft},
                    {iChain.Features()});
    return false;
  }
  if (tNeeded > tLeftInChain) {
    _fReport.Report(kFeaturesBeyondChain, Severity::kMajorError,
                    "The feature entries need %lu bytes; only %lu are left in the chain", {tNeeded, tLeftInChain},
                    {iChain.Features()});
  }
  return true;
}

/// Judges the entries that the table holds; returns all the flags that they can switch on.
uint32_t ChainsExamination::CheckFeatures(const FTLayoutChain& iChain, bool iAllHeld) {
  const uint64_t tHeld = std::min<uint64_t>(iChain.featureCount, _fBytes.Left(iChain.Features()) / kFeatureSize);
  _fReport.Spend(tHeld);
  const uint32_t tSubtableFlags = iAllHeld ? FlagsOfSubtables(iChain) : 0;
  uint32_t tEnableFlags = 0;
  std::unordered_set<uint32_t> tSeen;  // type and setting
  std::set<uint16_t> tUnnamed;         // types that 'feat' lacks
  FTLayoutFeature tFeature;
  for (uint64_t i = 0; i < tHeld; ++i) {
    const uint64_t tAt = iChain.Features() + i * kFeatureSize;
    tFeature = FTLayoutFeature::Read(_fBytes.bytes, tAt);
    tEnableFlags |= tFeature.fEnableFlags;
    if (!tSeen.insert(uint32_t{tFeature.fType} << 16 | tFeature.fSetting).second) {
      _fReport.Report(kFeatureTwice, Severity::kMinorError, "Feature %d, setting %d stands twice",
                      {tFeature.fType, tFeature.fSetting}, {tAt});
    }
    if (tFeature.fType == kAllTypographicFeatures) continue;
    _fHasFeatures = true;
    const uint32_t tIdle = tFeature.fEnableFlags & ~tSubtableFlags;
    if (iAllHeld && tIdle != 0) {
      _fReport.Report(kFeatureIdle, Severity::kInformation,
                      "Feature %d, setting %d switches on nothing for its flags 0x%08lX",
                      {tFeature.fType, tFeature.fSetting, tIdle}, {tAt});
    }
    if (_fNames.HasTable()) CheckFeatureInFeat(tFeature, tAt, tUnnamed);
  }
  const bool tEndsOff = tFeature.fType == kAllTypographicFeatures && tFeature.fSetting == kAllOff;
  if (iAllHeld && tHeld != 0 && !tEndsOff) {
    _fReport.Report(kLastFeature, Severity::kInformation, "The last feature entry is %d, %d and not 0, 1",
                    {tFeature.fType, tFeature.fSetting}, {iChain.Features() + (tHeld - 1) * kFeatureSize});
  }
  return tEnableFlags;
}

void ChainsExamination::CheckFeatureInFeat(const FTLayoutFeature& iFeature, uint64_t iAt,
                                           std::set<uint16_t>& ioUnnamed) {
  const FTFeatureName* tName = _fNames.Find(iFeature.fType);
  if (!tName) {
    if (!ioUnnamed.insert(iFeature.fType).second) return;
    _fReport.Report(kFeatureUnnamed, Severity::kInformation, "Feature %d is not in the 'feat' table", {iFeature.fType},
                    {iAt});
    return;
  }
  // 'feat' lists the settings that switch on; where they are not exclusive, the next odd number switches off.
  const uint16_t tSetting = tName->IsExclusive() ? iFeature.fSetting : iFeature.fSetting & 0xFFFE;
  if (!SettingsOf(*tName).contains(tSetting)) {
    _fReport.Report(kSettingUnnamed, Severity::kInformation, "Feature %d: setting %d is not in the 'feat' table",
                    {iFeature.fType, iFeature.fSetting}, {iAt});
  }
}

const std::set<uint16_t>& ChainsExamination::SettingsOf(const FTFeatureName& iName) {
  const auto [tKept, tIsNew] = _fSettings.try_emplace(iName.fFeatureType);
  if (tIsNew) {
    const uint64_t tCount = _fNames.CountSettings(iName);
    _fReport.Spend(tCount);
    for (uint64_t i = 0; i < tCount; ++i) tKept->second.insert(_fNames.GetSetting(iName, i));
  }
  return tKept->second;
}

/// The flags for which some subtable of the chain runs, as far as their lengths lead from one to the next.
uint32_t ChainsExamination::FlagsOfSubtables(const FTLayoutChain& iChain) {
  uint32_t tFlags = 0;
  uint64_t tAt = iChain.Subtables();
  for (uint32_t i = 0; i < iChain.subtableCount && _fBytes.bytes.Holds(tAt, _fChains.SubtableHeaderSize()); ++i) {
    _fReport.Spend(1);
    const FTLayoutSubtable tSubtable = _fChains.ReadSubtable(tAt);
    tFlags |= tSubtable.subFeatureFlags;
    if (tSubtable.length < tSubtable.headerSize) break;
    tAt += tSubtable.length;
  }
  return tFlags;
}

// Subtables.

/// iFlags: all that the chain's flags can be.
void ChainsExamination::ExamineSubtables(uint32_t iIndex, const FTLayoutChain& iChain, uint32_t iFlags) {
  uint64_t tAt = iChain.Subtables();
  for (uint32_t i = 0; i < iChain.subtableCount; ++i) {
    _fReport.Enter("Chain %d, subtable %d", {iIndex, i});
    _fReport.Spend(1);
    if (!CheckSubtableHeader(iChain, tAt)) return;
    const FTLayoutSubtable tSubtable = _fChains.ReadSubtable(tAt);
    if (!CheckSubtableLength(iChain, tSubtable)) return;
    CheckSubtableFlags(tSubtable, iFlags);
    ExamineBody(tSubtable, {i, iIndex});
    tAt += tSubtable.length;
  }
  _fReport.Enter("Chain %d", {iIndex});
  if (_fHasGlyphCoverage) {
    CheckGlyphCoverage(iChain, tAt);
  } else if (const uint64_t tEnd = iChain.offset + iChain.length; tEnd > tAt + 3) {
    _fReport.Report(kBytesAfterSubtables, Severity::kTechnicalError, "%lu bytes follow the last subtable of the chain",
                    {tEnd - tAt}, {tAt});
  }
}

bool ChainsExamination::CheckSubtableHeader(const FTLayoutChain& iChain, uint64_t iAt) {
  if (!_fBytes.bytes.Holds(iAt, _fChains.SubtableHeaderSize())) {
    _fReport.Report(kSubtableBeyondTable, Severity::kFatalError, "The subtable lies beyond the end of the table", {},
                    {iAt});
    return false;
  }
  if (iAt + _fChains.SubtableHeaderSize() > iChain.offset + iChain.length) {
    _fReport.Report(kSubtableBeyondChain, Severity::kMajorError, "The subtable lies beyond the end of the chain", {},
                    {iAt});
    return false;
  }
  return true;
}

/// False when the next subtable cannot be found.
bool ChainsExamination::CheckSubtableLength(const FTLayoutChain& iChain, const FTLayoutSubtable& iSubtable) {
  const uint64_t tLength = iSubtable.length;
  const uint64_t tLeft = _fBytes.Left(iSubtable.offset);
  const uint64_t tLeftInChain = iChain.offset + iChain.length - iSubtable.offset;
  const LayoutWhere tWhere = {iSubtable.offset};
  if (tLength < iSubtable.headerSize || tLength > tLeft) {
    _fReport.Report(kSubtableLengthInTable, Severity::kFatalError,
                    "The length of the subtable, %lu, is wrong; %lu bytes are left in the table", {tLength, tLeft},
                    tWhere);
    return false;
  }
  if (tLength > tLeftInChain) {
    _fReport.Report(kSubtableLengthInChain, Severity::kMajorError,
                    "The length of the subtable, %lu, is wrong; %lu bytes are left in the chain",
                    {tLength, tLeftInChain}, tWhere);
  }
  if (tLength % 4 != 0) {
    _fReport.Report(kSubtableLengthUnaligned, Severity::kTechnicalError,
                    "The length of the subtable, %lu, is not a multiple of four", {tLength}, tWhere);
  }
  return true;
}

void ChainsExamination::CheckSubtableFlags(const FTLayoutSubtable& iSubtable, uint32_t iFlags) {
  const LayoutWhere tWhere = {iSubtable.offset};
  if ((iSubtable.coverage & CoverageOf(_fWidth).reserved) != 0) {
    _fReport.Report(kReservedCoverage, Severity::kTechnicalError, "Reserved coverage bits are set (0x%08lX)",
                    {iSubtable.coverage}, tWhere);
  }
  if (iSubtable.subFeatureFlags == 0) {
    _fReport.Report(kNoFeature, Severity::kMinorError, "The subtable belongs to no feature and never runs", {}, tWhere);
  } else if ((iSubtable.subFeatureFlags & iFlags) == 0) {
    _fReport.Report(kNeverOn, Severity::kMinorError, "No feature switches the subtable on (0x%08lX)",
                    {iSubtable.subFeatureFlags}, tWhere);
  }
}

void ChainsExamination::ExamineBody(const FTLayoutSubtable& iSubtable, const Maker& iMaker) {
  StateMachineKind tKind = StateMachineKind::kRearrangement;
  const uint32_t tType = iSubtable.coverage & CoverageOf(_fWidth).type;
  switch (tType) {
    case kNoncontextual:
      CheckNoncontextual(iSubtable, iMaker);
      return;
    case kRearrangement:
      break;
    case kContextual:
      tKind = StateMachineKind::kContextual;
      break;
    case kLigature:
      tKind = StateMachineKind::kLigature;
      break;
    case kInsertion:
      tKind = StateMachineKind::kInsertion;
      break;
    default:
      _fReport.Report(kUnknownType, Severity::kMajorError, "The subtable has the unknown type %d", {tType},
                      {iSubtable.offset});
      return;
  }
  const uint64_t tBody = iSubtable.offset + iSubtable.headerSize;
  const uint64_t tLimit = iSubtable.offset + iSubtable.length;
  const auto tMachine = _fWidth == StateTableWidth::kExtended
                            ? VornFontTester::TestSTXStateTable(_fBytes, tBody, tLimit, tKind)
                            : VornFontTester::TestStateTable(_fBytes, tBody, tLimit, tKind);
  if (!tMachine) return;
  TakeIn(tMachine->glyphsTaken);
  for (const uint16_t tGlyph : tMachine->glyphsMade) _fMade[tGlyph] = iMaker;
}

/// A lookup of substitutes, without a machine.
void ChainsExamination::CheckNoncontextual(const FTLayoutSubtable& iSubtable, const Maker& iMaker) {
  const uint64_t tBody = iSubtable.offset + iSubtable.headerSize;
  const LookupPieces tPieces = LookupChecker(_fBytes, tBody, iSubtable.offset + iSubtable.length, "lookup").Check();
  LayoutTally tItself;
  for (const LookupPiece& tPiece : tPieces) {
    if (tPiece.first <= tPiece.value && tPiece.value <= tPiece.last) tItself.Add({tPiece.value}, {tBody, tPiece.value});
  }
  _fReport.ReportCount(kReplacedByItself, Severity::kInformation,
                       "%d glyphs are replaced by themselves; the first is glyph %d", tItself);
  if (tPieces.empty()) {
    _fReport.Report(kNothingReplaced, Severity::kMinorError, "No glyph is ever replaced", {}, {tBody});
  }
  TakeIn(tPieces);
  for (const LookupPiece& tPiece : tPieces) {
    if (_fBytes.IsBeyondFont(tPiece.value)) _fMade[tPiece.value] = iMaker;
  }
}

// The bitmaps of version 3, which tell what glyphs a subtable is for: a u32 offset for each subtable from the list's
// start, then a bit for each glyph of the font.

void ChainsExamination::CheckGlyphCoverage(const FTLayoutChain& iChain, uint64_t iList) {
  for (uint32_t i = 0; i < iChain.subtableCount; ++i) {
    const uint64_t tOffsetAt = iList + 4 * uint64_t{i};
    if (!_fBytes.bytes.Holds(tOffsetAt, 4)) {
      _fReport.Report(kCoverageBeyondTable, Severity::kFatalError,
                      "The glyph coverage of subtable %d lies beyond the end of the table", {i}, {tOffsetAt});
      return;
    }
    CheckBitmap(iChain, i, tOffsetAt, iList);
  }
}

void ChainsExamination::CheckBitmap(const FTLayoutChain& iChain, uint32_t iSubtable, uint64_t iOffsetAt,
                                    uint64_t iList) {
  const uint32_t tOffset = _fBytes.bytes.U32(iOffsetAt);
  const bool tHasBitmap = tOffset != 0 && tOffset != 0xFFFFFFFF;
  const uint64_t tBitmap = iList + tOffset;
  const uint64_t tSize = (uint64_t{_fBytes.glyphCount} + 7) / 8;
  if (tHasBitmap && !_fBytes.bytes.Holds(tBitmap, tSize)) {
    _fReport.Report(kCoverageBeyondTable, Severity::kFatalError,
                    "The glyph coverage of subtable %d lies beyond the end of the table", {iSubtable}, {iOffsetAt});
    return;
  }
  const uint64_t tEnd = std::max(iOffsetAt + 4, tHasBitmap ? tBitmap + tSize : 0);
  if (tEnd > iChain.offset + iChain.length) {
    _fReport.Report(kCoverageBeyondChain, Severity::kTechnicalError,
                    "The glyph coverage of subtable %d lies beyond the end of the chain", {iSubtable}, {iOffsetAt});
  }
  if (!tHasBitmap || tSize == 0) return;
  _fReport.Spend(tSize);
  for (uint64_t i = 0; i < tSize; ++i) {
    if (_fBytes.bytes.U8(tBitmap + i) != 0) return;
  }
  _fReport.Report(kCoverageEmpty, Severity::kMinorError, "The glyph coverage of subtable %d is empty; it never runs",
                  {iSubtable}, {tBitmap});
}

// Glyphs that the font does not have: subtables may use them among themselves.

void ChainsExamination::TakeIn(const std::vector<LookupPiece>& iPieces) {
  if (_fMade.empty()) return;
  for (const LookupPiece& tPiece : iPieces) {
    _fMade.erase(_fMade.lower_bound(tPiece.first), _fMade.upper_bound(tPiece.last));
  }
}

void ChainsExamination::ReportTemporaries() {
  LayoutTally tLeft;
  for (const auto& [tGlyph, tMaker] : _fMade) {
    tLeft.Add({tGlyph, tMaker.subtable, tMaker.chain}, {std::nullopt, tGlyph});
  }
  _fReport.ReportCount(kTemporaryGlyphs, Severity::kMinorError,
                       "%d glyphs that the font does not have are made and not replaced again; the first is glyph %d, "
                       "made by subtable %d of chain %d",
                       tLeft);
}
