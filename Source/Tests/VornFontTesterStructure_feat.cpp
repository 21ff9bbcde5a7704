#include "Tests/VornFontTesterStructure_feat.h"

#include <algorithm>
#include <set>
#include <utility>

#include "TableAccess/TableClasses/FTFontTable_mort.h"
#include "TableAccess/TableClasses/FTFontTable_morx.h"
#include "Tests/LayoutNames.h"

namespace {

/// In the order of the report.
enum Rank : uint16_t {
  kSize = kRankTable,
  kVersion,
  kReserved,
  kEmpty,
  kNamesBeyondTable,
  kOrder,
  kSettingsBeyondTable,
  kSettingsOffset,
  kReservedFlags,
  kDefaultNotExclusive,
  kDefaultIndex,
  kNoSettings,
  kSettingOrder,
  kOffSetting,
  kNameCodeRange,
  kNameMissing,
  kGap,
  kUnused,
};

constexpr uint64_t kHeaderSize = FTFontTable_feat::kHeaderSize;
constexpr uint64_t kNameSize = FTFontTable_feat::kNameSize;
constexpr uint64_t kSettingSize = FTFontTable_feat::kSettingSize;

/// Features that chains need not have: all typographic features at once, and the language of the text.
constexpr uint16_t kAllTypographicFeatures = 0;
constexpr uint16_t kLanguageTag = 39;

}  // namespace

/// Judges name codes against the range that fonts may use and the names that the font has.
class VornFontTesterStructure_feat::NameCodeCheck {
 public:
  explicit NameCodeCheck(const FTFont_sfnt& iFont) : _fCodes(ReadNameCodes(iFont)) {}

  void Check(int16_t iCode, uint16_t iFeature, uint64_t iAt) {
    constexpr int16_t kFirstOwnCode = 256;
    if (iCode < kFirstOwnCode) {
      _fOutOfRange.Add({iCode, iFeature}, {iAt});
    } else if (_fCodes && !(*_fCodes)[static_cast<size_t>(iCode)]) {
      _fMissing.Add({iCode, iFeature}, {iAt});
    }
  }
  void Report(LayoutReport& ioReport) const {
    ioReport.ReportCount(kNameCodeRange, Severity::kTechnicalError,
                         "%d name indices are not in the range 256 to 32767; the first is %d, of feature %d",
                         _fOutOfRange);
    ioReport.ReportCount(kNameMissing, Severity::kMinorError,
                         "%d names are missing from the 'name' table; the first is name %d, of feature %d", _fMissing);
  }

 private:
  std::optional<std::vector<bool>> _fCodes;
  LayoutTally _fOutOfRange;
  LayoutTally _fMissing;
};

void VornFontTesterStructure_feat::Examine(const FTFontTable_feat& iTable, const LayoutTable& iBytes) const {
  if (!HasSize(iBytes, kHeaderSize, kSize)) return;
  if (iTable.Version() != 0x00010000) {
    ReportVersion(iBytes, iTable.Version(), kVersion);
    return;
  }
  LayoutReport& tReport = iBytes.report;
  const uint16_t tReserved = iBytes.bytes.U16(6);
  const uint32_t tReservedLong = iBytes.bytes.U32(8);
  if (tReserved != 0 || tReservedLong != 0) {
    tReport.Report(kReserved, Severity::kTechnicalError, "The reserved fields (0x%04X, 0x%08lX) are not zero",
                   {tReserved, tReservedLong}, {6});
  }
  if (iTable.GetNameCount() == 0) {
    tReport.Report(kEmpty, Severity::kMinorError, "The table has no features", {}, {4});
  }
  const uint64_t tNamesEnd = kHeaderSize + kNameSize * iTable.GetNameCount();
  if (tNamesEnd > iBytes.Size()) {
    tReport.Report(kNamesBeyondTable, Severity::kFatalError,
                   "The feature names need %lu bytes; there are only %lu in the table", {tNamesEnd, iBytes.Size()},
                   {kHeaderSize});
  }
  CheckNames(iTable, iBytes);
  CheckUse(iTable, iBytes);
}

void VornFontTesterStructure_feat::CheckNames(const FTFontTable_feat& iTable, const LayoutTable& iBytes) const {
  const uint64_t tNamesEnd = kHeaderSize + kNameSize * iTable.GetNameCount();
  NameCodeCheck tNameCodes(SfntFont());
  LayoutTally tOutOfOrder;
  std::optional<uint64_t> tLowestSettings;
  int32_t tTypeBefore = -1;
  FTFeatureName tName;
  for (uint64_t i = 0; iTable.GetIndNameData(i, tName); ++i) {
    const uint64_t tAt = kHeaderSize + i * kNameSize;
    iBytes.report.Spend(1);
    if (tName.fFeatureType <= tTypeBefore) tOutOfOrder.Add({i, tName.fFeatureType}, {tAt});
    tTypeBefore = tName.fFeatureType;
    CheckName(iBytes, tName, tAt, tNamesEnd);
    tNameCodes.Check(tName.fNameIndex, tName.fFeatureType, tAt);
    CheckSettings(iBytes, tName, tNameCodes);
    if (tName.fSettingCount != 0) {
      tLowestSettings = std::min<uint64_t>(tLowestSettings.value_or(tName.fSettingTable), tName.fSettingTable);
    }
  }
  iBytes.report.ReportCount(kOrder, Severity::kMajorError,
                            "%d features are out of order; the first is entry %d with type %d", tOutOfOrder);
  tNameCodes.Report(iBytes.report);
  if (tLowestSettings && *tLowestSettings > tNamesEnd) {
    iBytes.report.Report(kGap, Severity::kInformation, "There are %lu bytes between the feature names and the settings",
                         {*tLowestSettings - tNamesEnd}, {tNamesEnd});
  }
}

void VornFontTesterStructure_feat::CheckName(const LayoutTable& iBytes, const FTFeatureName& iName, uint64_t iAt,
                                             uint64_t iNamesEnd) const {
  LayoutReport& tReport = iBytes.report;
  const uint16_t tType = iName.fFeatureType;
  const LayoutWhere tWhere = {iAt};
  if (iName.fSettingCount != 0) {
    if (iName.fSettingTable + kSettingSize * iName.fSettingCount > iBytes.Size()) {
      tReport.Report(kSettingsBeyondTable, Severity::kFatalError,
                     "Feature %d: the settings lie beyond the end of the table", {tType}, tWhere);
    }
    if (iName.fSettingTable < iNamesEnd) {
      tReport.Report(kSettingsOffset, Severity::kMajorError, "Feature %d: the settings offset 0x%08lX is too small",
                     {tType, iName.fSettingTable}, tWhere);
    }
  } else {
    tReport.Report(kNoSettings, Severity::kInformation, "Feature %d has no settings", {tType}, tWhere);
  }
  if ((iName.fFlags & FTFeatureName::kReserved) != 0) {
    tReport.Report(kReservedFlags, Severity::kTechnicalError, "Feature %d: reserved flags are set (0x%04X)",
                   {tType, iName.fFlags}, tWhere);
  }
  constexpr uint16_t kDefault = FTFeatureName::kHasDefaultIndex | FTFeatureName::kDefaultIndex;
  if (!iName.IsExclusive() && (iName.fFlags & kDefault) != 0) {
    tReport.Report(kDefaultNotExclusive, Severity::kTechnicalError,
                   "Feature %d has a default setting but its settings do not exclude one another", {tType}, tWhere);
  }
  if (iName.IsExclusive() && iName.fSettingCount != 0 && iName.GetDefaultIndex() >= iName.fSettingCount) {
    tReport.Report(kDefaultIndex, Severity::kMajorError,
                   "Feature %d: the default setting has the index %d; there are only %d settings",
                   {tType, iName.GetDefaultIndex(), iName.fSettingCount}, tWhere);
  }
}

void VornFontTesterStructure_feat::CheckSettings(const LayoutTable& iBytes, const FTFeatureName& iName,
                                                 NameCodeCheck& ioNameCodes) const {
  const uint64_t tHeld = std::min<uint64_t>(iName.fSettingCount, iBytes.Left(iName.fSettingTable) / kSettingSize);
  iBytes.report.Spend(tHeld);
  const uint16_t tType = iName.fFeatureType;
  bool tIsOrdered = true;
  bool tHasOff = false;  // settings that switch something off have odd numbers, where settings are not exclusive
  int32_t tBefore = -1;
  for (uint64_t i = 0; i < tHeld; ++i) {
    const uint64_t tAt = iName.fSettingTable + kSettingSize * i;
    const uint16_t tSetting = iBytes.bytes.U16(tAt);
    if (tSetting <= tBefore && std::exchange(tIsOrdered, false)) {
      iBytes.report.Report(kSettingOrder, Severity::kMinorError, "Feature %d: setting %d follows setting %d",
                           {tType, tSetting, tBefore}, {tAt});
    }
    if (!iName.IsExclusive() && tSetting % 2 != 0 && !std::exchange(tHasOff, true)) {
      iBytes.report.Report(kOffSetting, Severity::kInformation, "Feature %d lists the off setting %d",
                           {tType, tSetting}, {tAt});
    }
    ioNameCodes.Check(iBytes.bytes.S16(tAt + 2), tType, tAt);
    tBefore = tSetting;
  }
}

/// Features that no chain of the font has.
void VornFontTesterStructure_feat::CheckUse(const FTFontTable_feat& iTable, const LayoutTable& iBytes) const {
  std::set<uint16_t> tUsed = {kAllTypographicFeatures, kLanguageTag};
  bool tHasChains = false;
  for (const uint32_t tTag : {FTFontTable_morx::kTag, FTFontTable_mort::kTag}) {
    if (!SfntFont().HasTaggedTable(tTag)) continue;
    tHasChains = true;
    const auto* tTable = dynamic_cast<const FTFontTable_Chains*>(SfntFont().GetTaggedTable(tTag));
    for (const FTLayoutChain& tChain : tTable->Chains().ReadSoundChains()) {
      const uint64_t tRoom = (tChain.length - tChain.headerSize) / FTLayoutFeature::kSize;
      for (uint64_t i = 0; i < std::min<uint64_t>(tChain.featureCount, tRoom); ++i) {
        tUsed.insert(tTable->Bytes().U16(tChain.Features() + i * FTLayoutFeature::kSize));
      }
    }
  }
  if (!tHasChains || !iBytes.report.Wants(Severity::kInformation)) return;
  std::set<uint16_t> tUnused;
  FTFeatureName tName;
  for (uint64_t i = 0; iTable.GetIndNameData(i, tName); ++i) {
    if (!tUsed.contains(tName.fFeatureType)) tUnused.insert(tName.fFeatureType);
  }
  for (const uint16_t tType : tUnused) {
    iBytes.report.Report(kUnused, Severity::kInformation, "Feature %d is not used by any chain", {tType});
  }
}
