#include "Tests/VornFontTesterStructure_sbit.h"

#include <algorithm>
#include <optional>

const VornFontTesterStructure_sbit::Pair VornFontTesterStructure_sbit::kVeltrinPair = {"bloc", FTTag("bloc"), "bdat",
                                                                                       FTTag("bdat")};
const VornFontTesterStructure_sbit::Pair VornFontTesterStructure_sbit::kMicrosoftPair = {"EBLC", FTTag("EBLC"), "EBDT",
                                                                                         FTTag("EBDT")};

#include "TableAccess/FTLimits.h"

namespace {

constexpr uint64_t kDataHeaderSize = 4;
constexpr uint8_t kDirections = FTBitmapStrike::kHorizontal | FTBitmapStrike::kVertical;

}  // namespace

/// What is known of all strikes of a pair.
struct VornFontTesterStructure_sbit::Strikes {
  std::map<Size, uint32_t> firstOfSize;
  std::optional<Size> before;
};

bool VornFontTesterStructure_sbit::ExecuteTest() const {
  const uint32_t tTags[] = {FTTag("bloc"), FTTag("bdat"), FTTag("EBLC"), FTTag("EBDT"), FTTag("EBSC"), FTTag("bhed")};
  if (std::ranges::none_of(tTags, [this](uint32_t iTag) { return Has(iTag); })) return false;
  CheckPairs();
  CheckHeaders();
  if (Has(FTTag("EBSC")) && !Has(FTTag("EBLC"))) {
    ReportResult(Severity::kMajorError, "The font scales embedded bitmaps ('EBSC'), but has no 'EBLC' table");
  }
  for (const Pair* tPair : {&kVeltrinPair, &kMicrosoftPair}) {
    if (IsWhole(*tPair)) CheckPair(*tPair);
  }
  if (Has(FTTag("EBSC"))) CheckScaledSizes();
  return true;
}

void VornFontTesterStructure_sbit::CheckPairs() const {
  constexpr const char* kFormat = "The font has a '%@' table, but no '%@' table";
  for (const Pair* tPair : {&kVeltrinPair, &kMicrosoftPair}) {
    if (Has(tPair->location) && !Has(tPair->data)) {
      ReportResult(Severity::kFatalError, kFormat,
                   {Tova::MakeString(tPair->locationName), Tova::MakeString(tPair->dataName)});
    } else if (!Has(tPair->location) && Has(tPair->data)) {
      ReportResult(Severity::kFatalError, kFormat,
                   {Tova::MakeString(tPair->dataName), Tova::MakeString(tPair->locationName)});
    }
  }
  if (IsWhole(kVeltrinPair) && IsWhole(kMicrosoftPair)) {
    ReportResult(Severity::kMinorError, "The font has two sets of embedded bitmaps");
  }
}

void VornFontTesterStructure_sbit::CheckHeaders() const {
  const bool tHasBhed = Has(FTTag("bhed"));
  const bool tHasHead = Has(FTTag("head"));
  if (SfntFont().IsSbitOnly()) {
    if (!tHasBhed && !tHasHead) {
      ReportResult(Severity::kFatalError, "The font has no header, neither 'bhed' nor 'head'");
    } else if (!tHasBhed && Has(FTTag("bloc"))) {
      ReportResult(Severity::kMajorError, "A bitmap-only font with a 'bloc' table needs a 'bhed' table");
    }
  }
  const bool tHasOutlines =
      SfntFont().HasTrueTypeGlyphs() || SfntFont().HasOTPostScriptGlyphs() || SfntFont().HasType1PostScriptGlyphs();
  if (tHasBhed && tHasOutlines) {
    ReportResult(Severity::kMinorError, "The font has outlines, but the header of a bitmap-only font");
  }
  if (tHasBhed && tHasHead) {
    ReportResultIfAsked(Severity::kTechnicalError, "The font has two headers, 'bhed' and 'head'");
  }
}

void VornFontTesterStructure_sbit::CheckPair(const Pair& iPair) const {
  const FTBitmapLocation tLocation(SfntFont().GetTaggedTable(iPair.location)->Bytes(),
                                   SfntFont().GetTaggedTable(iPair.data)->Bytes());
  const At tHere(*this, {.table = iPair.location});
  if (!CheckTableHeaders(iPair, tLocation) || !CheckStrikeCount(iPair, tLocation)) return;
  const uint64_t tTableSize = tLocation.Location().Size();
  SbitStrikeImages::Budget tBudget{FTLimits::Get().bitmapStepsAllowed +
                                   FTLimits::Get().bitmapStepsAllowedPerByte * (tTableSize + tLocation.Data().Size())};
  Strikes tStrikes;
  for (uint32_t i = 0; i < tLocation.StrikeCount(); ++i) {
    const At tHereToo(*this, {.offset = FTBitmapLocation::kHeaderSize + FTBitmapLocation::kStrikeSize * i});
    const FTBitmapStrike tStrike = tLocation.GetStrike(i);
    SfntFont().SpendWork(kFTStepsOfStrike);
    CheckStrike(i, tStrike, tStrikes);
    if (!CheckIndexPlace(i, tStrike, tTableSize)) continue;
    SbitStrikeImages tImages(tLocation, tStrike, SfntFont().CountFontGlyphs(), &iPair == &kVeltrinPair);
    const uint64_t tBudgetBefore = tBudget.left;
    const bool tExamined = tImages.Examine(tBudget);
    SfntFont().SpendWork(tBudgetBefore - tBudget.left);
    if (!tExamined) {
      ReportResult(Severity::kMajorError,
                   "The indexes of the '%@' table overlap so much that the images from strike %d on were not examined",
                   {Tova::MakeString(iPair.locationName), i});
      return;
    }
    ReportIndexOrder(i, tImages);
    ReportImages(i, tImages);
  }
}

bool VornFontTesterStructure_sbit::CheckTableHeaders(const Pair& iPair, const FTBitmapLocation& iLocation) const {
  const auto tCheckSize = [this](const char* iName, Tova::ByteView iTable, uint64_t iLeast) {
    if (iTable.Size() >= iLeast) return true;
    ReportResult(Severity::kFatalError, "The '%@' table is too short for its header (%d bytes)",
                 {Tova::MakeString(iName), iTable.Size()});
    return false;
  };
  const auto tCheckVersion = [this](const char* iName, Tova::ByteView iTable) {
    if (iTable.U32(0) == FTBitmapLocation::kVersion) return;
    ReportResult(Severity::kMajorError, "The '%@' table has the version 0x%08X; it should be 0x%08X",
                 {Tova::MakeString(iName), iTable.U32(0), FTBitmapLocation::kVersion});
  };
  const bool tLocationFits = tCheckSize(iPair.locationName, iLocation.Location(), FTBitmapLocation::kHeaderSize);
  const bool tDataFits = tCheckSize(iPair.dataName, iLocation.Data(), kDataHeaderSize);
  if (!tLocationFits || !tDataFits) return false;
  tCheckVersion(iPair.locationName, iLocation.Location());
  tCheckVersion(iPair.dataName, iLocation.Data());
  return true;
}

bool VornFontTesterStructure_sbit::CheckStrikeCount(const Pair& iPair, const FTBitmapLocation& iLocation) const {
  if (iLocation.ClaimedStrikes() == 0) {
    ReportResult(Severity::kMinorError, "The '%@' table has no strikes", {Tova::MakeString(iPair.locationName)});
  } else if (iLocation.ClaimedStrikes() > iLocation.StrikeCount()) {
    ReportResult(Severity::kFatalError, "The '%@' table announces %u strikes, but has room for %d",
                 {Tova::MakeString(iPair.locationName), iLocation.ClaimedStrikes(), iLocation.StrikeCount()});
    return false;
  }
  return true;
}

void VornFontTesterStructure_sbit::CheckStrike(uint32_t iIndex, const FTBitmapStrike& iStrike,
                                               Strikes& ioStrikes) const {
  if (iStrike.ppemX == 0 || iStrike.ppemY == 0) {
    ReportResult(Severity::kMajorError, "Strike %d is for %d by %d pixels per em",
                 {iIndex, iStrike.ppemX, iStrike.ppemY});
  }
  const uint8_t tDepth = iStrike.bitDepth;
  if (tDepth != 1 && tDepth != 2 && tDepth != 4 && tDepth != 8) {
    ReportResult(Severity::kMajorError, "Strike %d has the bit depth %d; it should be 1, 2, 4 or 8", {iIndex, tDepth});
  }
  CheckStrikeFlags(iIndex, iStrike);
  CheckStrikeOrder(iIndex, iStrike, ioStrikes);
  CheckStrikeFields(iIndex, iStrike);
}

void VornFontTesterStructure_sbit::CheckStrikeFlags(uint32_t iIndex, const FTBitmapStrike& iStrike) const {
  const uint8_t tFlags = iStrike.flags;
  if ((tFlags & kDirections) == 0 || (tFlags & kDirections) == kDirections) {
    ReportResult(Severity::kMinorError, "Strike %d has the direction flags 0x%02X; one direction must be set",
                 {iIndex, tFlags});
  }
  if ((tFlags & ~kDirections) != 0) {
    ReportResultIfAsked(Severity::kTechnicalError, "Strike %d has the undefined flags 0x%02X", {iIndex, tFlags});
  }
}

void VornFontTesterStructure_sbit::CheckStrikeOrder(uint32_t iIndex, const FTBitmapStrike& iStrike,
                                                    Strikes& ioStrikes) const {
  const Size tSize = {iStrike.ppemY, iStrike.ppemX, iStrike.bitDepth};
  const auto [tFirst, tIsNew] = ioStrikes.firstOfSize.emplace(tSize, iIndex);
  if (!tIsNew) {
    ReportResult(Severity::kMinorError, "Strikes %d and %d are for the same size and depth", {tFirst->second, iIndex});
  } else if (ioStrikes.before && tSize < *ioStrikes.before) {
    ReportResultIfAsked(Severity::kTechnicalError, "Strike %d is out of order; sizes ascend", {iIndex});
  }
  ioStrikes.before = tSize;
}

void VornFontTesterStructure_sbit::CheckStrikeFields(uint32_t iIndex, const FTBitmapStrike& iStrike) const {
  const auto tIsPadded = [](const FTBitmapLineMetrics& iMetrics) {
    return iMetrics.padding[0] != 0 || iMetrics.padding[1] != 0;
  };
  if (iStrike.colorRef != 0 || tIsPadded(iStrike.hori) || tIsPadded(iStrike.vert)) {
    ReportResultIfAsked(Severity::kTechnicalError, "Strike %d has data in reserved fields", {iIndex});
  }
  const bool tIsVertical = (iStrike.flags & kDirections) == FTBitmapStrike::kVertical;
  const FTBitmapLineMetrics& tLine = tIsVertical ? iStrike.vert : iStrike.hori;
  if (tLine.ascender < tLine.descender) {
    ReportResult(Severity::kMinorError, "Strike %d has an ascender (%d) below its descender (%d)",
                 {iIndex, tLine.ascender, tLine.descender});
  }
  const uint32_t tGlyphCount = SfntFont().CountFontGlyphs();
  if (iStrike.startGlyphIndex > iStrike.endGlyphIndex) {
    ReportResult(Severity::kMajorError, "Strike %d runs from glyph %d to glyph %d",
                 {iIndex, iStrike.startGlyphIndex, iStrike.endGlyphIndex});
  } else if (tGlyphCount > 0 && iStrike.endGlyphIndex >= tGlyphCount) {
    ReportResult(Severity::kMajorError, "Strike %d ends with glyph %d, but the font has %d glyphs",
                 {iIndex, iStrike.endGlyphIndex, tGlyphCount});
  }
}

/// Whether there are index subtables to look at.
bool VornFontTesterStructure_sbit::CheckIndexPlace(uint32_t iIndex, const FTBitmapStrike& iStrike,
                                                   uint64_t iTableSize) const {
  if (iStrike.numberOfIndexSubTables == 0) {
    ReportResult(Severity::kMinorError, "Strike %d has no glyphs", {iIndex});
    return false;
  }
  const uint64_t tStart = iStrike.indexSubTableArrayOffset;
  const uint64_t tArrayEnd = tStart + FTBitmapLocation::kElementSize * iStrike.numberOfIndexSubTables;
  if (tArrayEnd > iTableSize) {
    ReportResult(Severity::kFatalError,
                 "The index of strike %d ends at byte %lu, beyond the end of the table (%d bytes)",
                 {iIndex, tArrayEnd, iTableSize});
    return false;
  }
  if (tStart + iStrike.indexTablesSize > iTableSize) {
    ReportResult(Severity::kMajorError, "The index tables of strike %d are said to end at byte %lu of %d",
                 {iIndex, tStart + iStrike.indexTablesSize, iTableSize});
  }
  return true;
}

void VornFontTesterStructure_sbit::ReportIndexOrder(uint32_t iIndex, const SbitStrikeImages& iImages) const {
  if (const auto tOverlap = iImages.FirstOverlap()) {
    ReportResult(Severity::kMajorError, "Index subtables %d and %d of strike %d share glyphs",
                 {tOverlap->before, tOverlap->subtable, iIndex});
  }
  if (const auto tOutOfOrder = iImages.FirstOutOfOrder()) {
    ReportResultIfAsked(Severity::kTechnicalError,
                        "The index subtables of strike %d are out of order from subtable %d on",
                        {iIndex, *tOutOfOrder});
  }
}
