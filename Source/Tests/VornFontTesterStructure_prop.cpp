#include "Tests/VornFontTesterStructure_prop.h"

#include <algorithm>

namespace {

using Prop = FTFontTable_prop;

/// In the order of the report.
enum Rank : uint16_t {
  kSize = kRankTable,
  kVersion,
  kFormat,
  kTrailingBytes,
  kDefaultPartner,
  kReserved,
  kAttachesOnRight,
  kDirection,
  kFloaterAdvance,
  kOwnPartner,
  kPartnerOutside,
  kPartnerElsewhere,
  kUnusedOffset,
};

constexpr uint32_t kVersion1 = 0x00010000;
constexpr uint32_t kVersion2 = 0x00020000;
constexpr uint32_t kVersion3 = 0x00030000;
constexpr int32_t kNoValue = -1;
/// Stands for the default in texts.
constexpr int32_t kDefaultGlyph = -1;

LayoutWhere WhereOf(int32_t iGlyph) {
  if (iGlyph == kDefaultGlyph) return {6};
  return {Prop::kHeaderSize, static_cast<uint32_t>(iGlyph)};
}

}  // namespace

struct VornFontTesterStructure_prop::Tallies {
  LayoutTally reserved;
  LayoutTally attachesOnRight;
  LayoutTally direction;
  LayoutTally floaterAdvance;
  LayoutTally ownPartner;
  LayoutTally partnerOutside;
  LayoutTally partnerElsewhere;
  LayoutTally unusedOffset;
};

void VornFontTesterStructure_prop::Examine(const FTFontTable_prop& iTable, const LayoutTable& iBytes) const {
  if (!HasSize(iBytes, Prop::kHeaderSize, kSize)) return;
  LayoutReport& tReport = iBytes.report;
  const uint32_t tVersion = iTable.Version();
  if (tVersion != kVersion1 && tVersion != kVersion2 && tVersion != kVersion3) {
    tReport.Report(kVersion, Severity::kTechnicalError,
                   "Bad version number: 0x%08lX; the table was not examined further", {tVersion}, {0});
    return;
  }
  if (iTable.Format() > 1) {
    tReport.Report(kFormat, Severity::kMajorError, "Bad format: %d", {iTable.Format()}, {4});
    return;
  }
  if (iTable.Format() == 0 && iBytes.Size() > Prop::kHeaderSize + 3) {
    tReport.Report(kTrailingBytes, Severity::kTechnicalError, "%lu bytes follow the header of a table without a lookup",
                   {iBytes.Size() - Prop::kHeaderSize}, {Prop::kHeaderSize});
  }
  if ((iTable.DefaultProperties() & Prop::kHasPartner) != 0) {
    tReport.Report(kDefaultPartner, Severity::kTechnicalError, "The default properties have a bracket partner", {},
                   {6});
  }
  LookupPieces tPieces;
  if (iTable.Format() == 1) {
    tPieces = LookupChecker(iBytes, Prop::kHeaderSize, iBytes.Size(), "property table").Check();
  }
  CheckValues(iTable, iBytes, tPieces);
}

void VornFontTesterStructure_prop::CheckValues(const FTFontTable_prop& iTable, const LayoutTable& iBytes,
                                               const LookupPieces& iPieces) const {
  Values tValues(iBytes.glyphCount, kNoValue);
  for (const LookupPiece& tPiece : iPieces) {
    const uint32_t tEnd = std::min(tPiece.last + uint32_t{1}, iBytes.glyphCount);
    for (uint32_t tGlyph = tPiece.first; tGlyph < tEnd; ++tGlyph) tValues[tGlyph] = tPiece.value;
  }
  Tallies tTallies;
  CheckProperties(iTable.Version(), kDefaultGlyph, iTable.DefaultProperties(), tTallies);
  for (uint32_t i = 0; i < iBytes.glyphCount; ++i) {
    if (tValues[i] == kNoValue) continue;
    const auto tGlyph = static_cast<int32_t>(i);
    const auto tProperties = static_cast<uint16_t>(tValues[i]);
    CheckProperties(iTable.Version(), tGlyph, tProperties, tTallies);
    if ((tProperties & Prop::kFloater) != 0 && AdvanceOf(tGlyph) != 0) {
      tTallies.floaterAdvance.Add({tGlyph}, WhereOf(tGlyph));
    }
    CheckBracket(iTable, tGlyph, tProperties, tValues, tTallies);
  }
  LayoutReport& tReport = iBytes.report;
  tReport.ReportCount(kReserved, Severity::kTechnicalError,
                      "%d glyphs have reserved bits set; the first is glyph %d (0x%04X)", tTallies.reserved);
  tReport.ReportCount(kAttachesOnRight, Severity::kTechnicalError,
                      "%d glyphs attach on the right, which version 1 does not know; the first is glyph %d",
                      tTallies.attachesOnRight);
  tReport.ReportCount(kDirection, Severity::kMinorError,
                      "%d glyphs have an unknown direction class; the first is glyph %d (%d)", tTallies.direction);
  tReport.ReportCount(kFloaterAdvance, Severity::kMinorError,
                      "%d floating glyphs have an advance; the first is glyph %d", tTallies.floaterAdvance);
  tReport.ReportCount(kOwnPartner, Severity::kTechnicalError,
                      "%d glyphs are their own bracket partner; the first is glyph %d", tTallies.ownPartner);
  tReport.ReportCount(kPartnerOutside, Severity::kMinorError,
                      "%d glyphs have a bracket partner that is not in the font; the first is glyph %d (%d)",
                      tTallies.partnerOutside);
  tReport.ReportCount(kPartnerElsewhere, Severity::kTechnicalError,
                      "%d bracket partners do not point back; the first is that of glyph %d",
                      tTallies.partnerElsewhere);
  tReport.ReportCount(kUnusedOffset, Severity::kInformation,
                      "%d glyphs have an unused bracket offset; the first is glyph %d", tTallies.unusedOffset);
}

/// What can be said of properties alone, be they those of a glyph or the default.
void VornFontTesterStructure_prop::CheckProperties(uint32_t iVersion, int32_t iGlyph, uint16_t iProperties,
                                                   Tallies& ioTallies) const {
  const uint16_t tDirection = iProperties & Prop::kDirectionClass;
  const uint16_t tLastDirection = iVersion == kVersion3 ? 18 : 11;
  if ((iProperties & Prop::kReserved) != 0) ioTallies.reserved.Add({iGlyph, iProperties}, WhereOf(iGlyph));
  if (iVersion == kVersion1 && (iProperties & Prop::kAttachesOnRight) != 0) {
    ioTallies.attachesOnRight.Add({iGlyph}, WhereOf(iGlyph));
  }
  if (tDirection > tLastDirection) ioTallies.direction.Add({iGlyph, tDirection}, WhereOf(iGlyph));
}

/// Partners have to name each other.
void VornFontTesterStructure_prop::CheckBracket(const FTFontTable_prop& iTable, int32_t iGlyph, uint16_t iProperties,
                                                const Values& iValues, Tallies& ioTallies) const {
  const int tOffset = Prop::PartnerOffsetOf(iProperties);
  if ((iProperties & Prop::kHasPartner) == 0) {
    if (tOffset != 0) ioTallies.unusedOffset.Add({iGlyph}, WhereOf(iGlyph));
    return;
  }
  const int32_t tPartner = iGlyph + tOffset;
  if (tOffset == 0) {
    ioTallies.ownPartner.Add({iGlyph}, WhereOf(iGlyph));
  } else if (tPartner < 0 || static_cast<size_t>(tPartner) >= iValues.size()) {
    ioTallies.partnerOutside.Add({iGlyph, tPartner}, WhereOf(iGlyph));
  } else {
    const int32_t tValue = iValues[static_cast<size_t>(tPartner)];
    const bool tHasValue = tValue != kNoValue;
    const uint16_t tOfPartner = tHasValue ? static_cast<uint16_t>(tValue) : iTable.DefaultProperties();
    const bool tPointsBack =
        (tOfPartner & Prop::kHasPartner) != 0 && (!tHasValue || Prop::PartnerOffsetOf(tOfPartner) == -tOffset);
    if (!tPointsBack) ioTallies.partnerElsewhere.Add({iGlyph}, WhereOf(iGlyph));
  }
}

/// From the bytes of 'hmtx': 0 where it is not known.
uint16_t VornFontTesterStructure_prop::AdvanceOf(int32_t iGlyph) const {
  const uint16_t tLongMetrics = SfntFont().CountHorizontalLongMetrics();
  if (tLongMetrics == 0 || !SfntFont().HasTaggedTable(FTTag("hmtx"))) return 0;
  const uint64_t tMetric = std::min<uint64_t>(static_cast<uint64_t>(iGlyph), tLongMetrics - 1u);
  return SfntFont().GetTaggedTable(FTTag("hmtx"))->Bytes().U16(4 * tMetric);
}
