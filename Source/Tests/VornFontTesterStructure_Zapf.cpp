#include "Tests/VornFontTesterStructure_Zapf.h"

#include <algorithm>
#include <unordered_map>

#include "Tests/LayoutNames.h"

namespace {

/// In the order of the report.
enum Rank : uint16_t {
  kSize = kRankTable,
  kVersion,
  kNewVersion,
  kExtraInfo,
  kOffsetsBeyondTable,
  kNoInformation,
  kOffsetTooSmall,
  kRecordBeyondTable,
  kUnknownLength,
  kUnknownKind,
  kNotUnicode,
  kIdentifierTwice,
  kGroupBeyondTable,
  kNestedGroup,
  kGroupGlyph,
  kGroupName,
  kFeaturesBeyondTable,
  kFeatureUnnamed,
};

constexpr uint64_t kHeaderSize = FTFontTable_Zapf::kHeaderSize;
constexpr uint32_t kNone = 0xFFFFFFFF;
constexpr uint32_t kNewerVersion = 0x00020000;

// Kinds of names. Those below the first are texts, those up to the second 16-bit values; of others the length is not
// known.
constexpr uint8_t kFirstValueKind = 64;
constexpr uint8_t kFirstUnknownKind = 128;
bool IsCharacterIdentifier(uint8_t iKind) { return iKind >= 64 && iKind <= 67; }
bool IsEstablishedKind(uint8_t iKind) { return iKind <= 3 || IsCharacterIdentifier(iKind); }

// The first word of a group.
constexpr uint16_t kGroupHasFlags = 0x8000;
constexpr uint16_t kIsGroupOfGroups = 0x4000;
constexpr uint16_t kGroupCount = 0x3FFF;

}  // namespace

/// What the records of glyphs refer to, and what is wrong with them.
struct VornFontTesterStructure_Zapf::Glyphs {
  std::set<uint32_t> groups;                           // offsets from the extra information
  std::set<uint32_t> features;                         // likewise
  std::unordered_map<uint32_t, uint16_t> identifiers;  // kind and value of an identifier, and the first glyph with it
  LayoutTally withoutInformation;
  LayoutTally offsetTooSmall;
  LayoutTally beyondTable;
  LayoutTally unknownLength;
  LayoutTally unknownKind;
  LayoutTally notUnicode;
  LayoutTally identifierTwice;
};

struct VornFontTesterStructure_Zapf::Groups {
  uint64_t extraInfo;
  std::optional<std::vector<bool>> nameCodes;
  std::set<uint32_t> plain;    // offsets of the groups of named groups that were looked at
  std::set<uint32_t> members;  // offsets of members of groups of groups
  LayoutTally glyphs;
  LayoutTally names;
};

void VornFontTesterStructure_Zapf::Examine(const FTFontTable_Zapf& iTable, const LayoutTable& iBytes) const {
  if (!HasSize(iBytes, kHeaderSize, kSize)) return;
  LayoutReport& tReport = iBytes.report;
  if (iTable.Version() == kNewerVersion) {
    tReport.Report(kNewVersion, Severity::kInformation, "The table has version 2.0, which is not examined", {}, {0});
    return;
  }
  if (iTable.Version() != 0x00010000) {
    ReportVersion(iBytes, iTable.Version(), kVersion);
    return;
  }
  const uint64_t tExtraInfo = iTable.ExtraInfoOffset();
  if (tExtraInfo > iBytes.Size()) {
    tReport.Report(kExtraInfo, Severity::kFatalError,
                   "The extra information at 0x%08lX lies beyond the end of the table", {tExtraInfo}, {4});
  }
  const uint64_t tOffsetsEnd = kHeaderSize + 4 * uint64_t{iBytes.glyphCount};
  if (tOffsetsEnd > iBytes.Size()) {
    tReport.Report(kOffsetsBeyondTable, Severity::kFatalError,
                   "The glyph offsets need %lu bytes; there are only %lu in the table", {tOffsetsEnd, iBytes.Size()},
                   {kHeaderSize});
  }
  Glyphs tGlyphs;
  const uint64_t tHeld = std::min<uint64_t>(iBytes.glyphCount, (iBytes.Size() - kHeaderSize) / 4);
  for (uint64_t i = 0; i < tHeld; ++i) {
    const auto tGlyph = static_cast<uint16_t>(i);
    const uint32_t tRecord = iTable.GetGlyphInfoOffset(tGlyph);
    const LayoutWhere tWhere = {kHeaderSize + 4 * i, tGlyph};
    if (tRecord == 0 || tRecord == kNone) {
      tGlyphs.withoutInformation.Add({tGlyph}, tWhere);
    } else if (tRecord < tOffsetsEnd) {
      tGlyphs.offsetTooSmall.Add({tGlyph, tRecord}, tWhere);
    } else {
      CheckGlyph(iBytes, tGlyph, tRecord, tGlyphs);
    }
  }
  ReportGlyphs(tReport, tGlyphs);
  if (tExtraInfo > iBytes.Size()) return;
  CheckGroups(iBytes, tExtraInfo, tGlyphs.groups);
  CheckFeatures(iBytes, tExtraInfo, tGlyphs.features);
}

// The record of a glyph: offsets of its groups and features u32, from the extra information; text length u16, text in
// UTF-16; name count u16, names: kind u8, then length u8 and bytes, or a value u16.

void VornFontTesterStructure_Zapf::CheckGlyph(const LayoutTable& iBytes, uint16_t iGlyph, uint64_t iRecord,
                                              Glyphs& ioGlyphs) const {
  constexpr uint64_t kRecordHeaderSize = 10;
  const uint64_t tCount = iBytes.bytes.U16(iRecord + 8);
  if (iBytes.bytes.Holds(iRecord, kRecordHeaderSize)) {
    if (const uint32_t tGroup = iBytes.bytes.U32(iRecord); tGroup != kNone) ioGlyphs.groups.insert(tGroup);
    if (const uint32_t tFeatures = iBytes.bytes.U32(iRecord + 4); tFeatures != kNone) {
      ioGlyphs.features.insert(tFeatures);
    }
  }
  const uint64_t tText = iRecord + kRecordHeaderSize;
  bool tFits = iBytes.bytes.Holds(iRecord, kRecordHeaderSize + 2 * tCount + 2);
  if (tFits) {
    iBytes.report.Spend(1 + tCount);
    if (!IsUnicode(iBytes, tText, tCount)) ioGlyphs.notUnicode.Add({iGlyph}, {iRecord, iGlyph});
    tFits = CheckNames(iBytes, iGlyph, tText + 2 * tCount, ioGlyphs);
  }
  if (!tFits) ioGlyphs.beyondTable.Add({iGlyph}, {iRecord, iGlyph});
}

/// Whether no surrogate stands alone.
bool VornFontTesterStructure_Zapf::IsUnicode(const LayoutTable& iBytes, uint64_t iText, uint64_t iCount) {
  bool tHasHigh = false;
  for (uint64_t i = 0; i < iCount; ++i) {
    const uint16_t tUnit = iBytes.bytes.U16(iText + 2 * i);
    const bool tIsLow = tUnit >= 0xDC00 && tUnit <= 0xDFFF;
    if (tIsLow != tHasHigh) return false;
    tHasHigh = tUnit >= 0xD800 && tUnit <= 0xDBFF;
  }
  return !tHasHigh;
}

/// Whether the names lie inside the table.
bool VornFontTesterStructure_Zapf::CheckNames(const LayoutTable& iBytes, uint16_t iGlyph, uint64_t iNames,
                                              Glyphs& ioGlyphs) const {
  uint64_t tAt = iNames + 2;
  for (uint32_t i = 0; i < iBytes.bytes.U16(iNames); ++i) {
    iBytes.report.Spend(1);
    if (!iBytes.bytes.Holds(tAt, 1)) return false;
    const uint8_t tKind = iBytes.bytes.U8(tAt);
    const LayoutWhere tWhere = {tAt, iGlyph};
    if (tKind >= kFirstUnknownKind) {
      ioGlyphs.unknownLength.Add({iGlyph, tKind}, tWhere);
      return true;
    }
    const uint64_t tSize = tKind < kFirstValueKind ? 2 + uint64_t{iBytes.bytes.U8(tAt + 1)} : 3;
    if (!iBytes.bytes.Holds(tAt, tSize)) return false;
    if (!IsEstablishedKind(tKind)) ioGlyphs.unknownKind.Add({iGlyph, tKind}, tWhere);
    if (IsCharacterIdentifier(tKind)) {
      const uint16_t tValue = iBytes.bytes.U16(tAt + 1);
      const auto [tFirst, tIsNew] = ioGlyphs.identifiers.try_emplace(uint32_t{tKind} << 16 | tValue, iGlyph);
      if (!tIsNew && tFirst->second != iGlyph) ioGlyphs.identifierTwice.Add({tValue, iGlyph}, tWhere);
    }
    tAt += tSize;
  }
  return true;
}

void VornFontTesterStructure_Zapf::ReportGlyphs(LayoutReport& ioReport, const Glyphs& iGlyphs) const {
  ioReport.ReportCount(kNoInformation, Severity::kInformation, "%d glyphs have no information; the first is glyph %d",
                       iGlyphs.withoutInformation);
  ioReport.ReportCount(kOffsetTooSmall, Severity::kMajorError,
                       "%d glyph offsets are too small; the first is that of glyph %d (0x%08lX)",
                       iGlyphs.offsetTooSmall);
  ioReport.ReportCount(kRecordBeyondTable, Severity::kFatalError,
                       "%d glyph records lie beyond the end of the table; the first is that of glyph %d",
                       iGlyphs.beyondTable);
  ioReport.ReportCount(kUnknownLength, Severity::kMajorError,
                       "%d names are of a kind without a known length; the first is of glyph %d (%d)",
                       iGlyphs.unknownLength);
  ioReport.ReportCount(kUnknownKind, Severity::kInformation,
                       "%d names are of an unknown kind; the first is of glyph %d (%d)", iGlyphs.unknownKind);
  ioReport.ReportCount(kNotUnicode, Severity::kMinorError,
                       "%d glyphs have text that is not Unicode; the first is glyph %d", iGlyphs.notUnicode);
  ioReport.ReportCount(kIdentifierTwice, Severity::kMinorError,
                       "%d character identifiers are used twice; the first is %d, of glyph %d",
                       iGlyphs.identifierTwice);
}

// A group: a word with a count. Of named groups: for each flags u16 (where the word says so), name code u16, glyph
// count u16, glyphs u16. Of groups: padding u16, then for each its offset u32, from the extra information.

void VornFontTesterStructure_Zapf::CheckGroups(const LayoutTable& iBytes, uint64_t iExtraInfo,
                                               const std::set<uint32_t>& iOffsets) const {
  Groups tGroups = {iExtraInfo, ReadNameCodes(SfntFont()), {}, {}, {}, {}};
  LayoutReport& tReport = iBytes.report;
  const auto tReportBeyond = [&](uint64_t iGroup) {
    tReport.Report(kGroupBeyondTable, Severity::kFatalError, "The group at 0x%08lX lies beyond the end of the table",
                   {iGroup}, {iGroup});
  };
  const auto tIsNested = [&](uint64_t iGroup) { return (iBytes.bytes.U16(iGroup) & kIsGroupOfGroups) != 0; };
  for (const uint32_t tOffset : iOffsets) {
    const uint64_t tGroup = iExtraInfo + tOffset;
    if (tIsNested(tGroup)) {
      CheckGroupOfGroups(iBytes, tGroup, tGroups);
    } else {
      tGroups.plain.insert(tOffset);
      if (!CheckGroup(iBytes, tGroup, tGroups)) tReportBeyond(tGroup);
    }
  }
  for (const uint32_t tOffset : tGroups.members) {
    const uint64_t tGroup = iExtraInfo + tOffset;
    if (tGroups.plain.contains(tOffset)) continue;
    if (tIsNested(tGroup)) {
      tReport.Report(kNestedGroup, Severity::kMajorError, "The group of groups at 0x%08lX stands in a group of groups",
                     {tGroup}, {tGroup});
    } else if (!CheckGroup(iBytes, tGroup, tGroups)) {
      tReportBeyond(tGroup);
    }
  }
  tReport.ReportCount(kGroupGlyph, Severity::kMajorError,
                      "%d glyphs of groups are not in the font; the first is glyph %d", tGroups.glyphs);
  tReport.ReportCount(kGroupName, Severity::kMinorError,
                      "%d group names are missing from the 'name' table; the first is name %d", tGroups.names);
}

void VornFontTesterStructure_Zapf::CheckGroupOfGroups(const LayoutTable& iBytes, uint64_t iGroup,
                                                      Groups& ioGroups) const {
  const uint64_t tCount = iBytes.bytes.U16(iGroup) & kGroupCount;
  const uint64_t tMembers = iGroup + 4;
  const uint64_t tHeld = std::min(tCount, iBytes.Left(tMembers) / 4);
  if (!iBytes.bytes.Holds(iGroup, 4 + 4 * tCount)) {
    iBytes.report.Report(kGroupBeyondTable, Severity::kFatalError,
                         "The group at 0x%08lX lies beyond the end of the table", {iGroup}, {iGroup});
  }
  iBytes.report.Spend(1 + tHeld);
  for (uint64_t i = 0; i < tHeld; ++i) ioGroups.members.insert(iBytes.bytes.U32(tMembers + 4 * i));
}

/// Whether the named groups lie inside the table.
bool VornFontTesterStructure_Zapf::CheckGroup(const LayoutTable& iBytes, uint64_t iGroup, Groups& ioGroups) const {
  LayoutReport& tReport = iBytes.report;
  if (!iBytes.bytes.Holds(iGroup, 2)) return false;
  tReport.Spend(1);
  const uint16_t tWord = iBytes.bytes.U16(iGroup);
  const uint64_t tFlagsSize = (tWord & kGroupHasFlags) != 0 ? 2 : 0;
  uint64_t tAt = iGroup + 2;
  for (uint32_t i = 0; i < (tWord & kGroupCount); ++i) {
    tReport.Spend(1);
    const uint64_t tName = tAt + tFlagsSize;
    const uint64_t tCount = iBytes.bytes.U16(tName + 2);
    const uint64_t tEnd = tName + 4 + 2 * tCount;
    if (tEnd > iBytes.Size()) return false;
    tReport.Spend(tCount);
    const uint16_t tCode = iBytes.bytes.U16(tName);
    if (tCode != 0 && ioGroups.nameCodes && !(*ioGroups.nameCodes)[tCode]) ioGroups.names.Add({tCode}, {tName});
    for (uint64_t tGlyphAt = tName + 4; tGlyphAt < tEnd; tGlyphAt += 2) {
      const uint16_t tGlyph = iBytes.bytes.U16(tGlyphAt);
      if (iBytes.IsBeyondFont(tGlyph)) ioGroups.glyphs.Add({tGlyph}, {tGlyphAt, tGlyph});
    }
    tAt = tEnd;
  }
  return true;
}

// Features: context u16, count u16, then type u16 and setting u16 for each.

void VornFontTesterStructure_Zapf::CheckFeatures(const LayoutTable& iBytes, uint64_t iExtraInfo,
                                                 const std::set<uint32_t>& iOffsets) const {
  const FeatureNames tNames(SfntFont());
  LayoutTally tUnnamed;
  for (const uint32_t tOffset : iOffsets) {
    const uint64_t tAt = iExtraInfo + tOffset;
    const uint64_t tCount = iBytes.bytes.U16(tAt + 2);
    const uint64_t tHeld = std::min(tCount, iBytes.Left(tAt + 4) / 4);
    if (!iBytes.bytes.Holds(tAt, 4 + 4 * tCount)) {
      iBytes.report.Report(kFeaturesBeyondTable, Severity::kFatalError,
                           "The features at 0x%08lX lie beyond the end of the table", {tAt}, {tAt});
    }
    iBytes.report.Spend(1 + tHeld);
    for (uint64_t i = 0; i < tHeld && tNames.HasTable(); ++i) {
      const uint64_t tPair = tAt + 4 + 4 * i;
      const uint16_t tType = iBytes.bytes.U16(tPair);
      if (!tNames.Has(tType)) tUnnamed.Add({tType}, {tPair});
    }
  }
  iBytes.report.ReportCount(kFeatureUnnamed, Severity::kInformation,
                            "%d features are not in the 'feat' table; the first is feature %d", tUnnamed);
}
