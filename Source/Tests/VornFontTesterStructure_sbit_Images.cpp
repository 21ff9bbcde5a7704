#include <algorithm>
#include <set>
#include <utility>

#include "Tests/VornFontTesterStructure_sbit.h"

namespace {

using Images = SbitStrikeImages;

/// What is said of a kind of fault: with the strike, the number of cases and the first of them.
struct FaultText {
  Images::Fault fault;
  Severity severity;
  const char* format;
};

constexpr FaultText kFaultTexts[] = {
    {Images::kRangeReversed, Severity::kMajorError,
     "Strike %d has %d index subtables whose first glyph is above the last; subtable %d covers glyphs %d to %d"},
    {Images::kRangeBeyondFont, Severity::kMajorError,
     "Strike %d has %d index subtables beyond the glyphs of the font; subtable %d ends with glyph %d of %d"},
    {Images::kRangeOutsideStrike, Severity::kMinorError,
     "Strike %d has %d index subtables outside the strike's glyphs %d to %d; subtable %d covers glyphs %d to %d"},
    {Images::kUnaligned, Severity::kTechnicalError,
     "Strike %d has %d index subtables that do not start at a multiple of four, the first of them subtable %d"},
    {Images::kSubtableCutOff, Severity::kFatalError,
     "Strike %d has %d index subtables that end beyond the table (%d bytes); subtable %d ends at byte %lu"},
    {Images::kUnknownIndexFormat, Severity::kMajorError,
     "Strike %d has %d index subtables of an unknown format; subtable %d has format %d"},
    {Images::kUnknownImageFormat, Severity::kMajorError,
     "Strike %d has %d index subtables with an unknown image format; subtable %d has image format %d"},
    {Images::kNoMetrics, Severity::kMajorError,
     "Strike %d has %d index subtables whose images have no metrics, the first of them subtable %d"},
    {Images::kListOutOfOrder, Severity::kMajorError,
     "Strike %d has %d glyph lists that are out of order; that of subtable %d is at glyph %d"},
    {Images::kListOutsideRange, Severity::kMinorError,
     "Strike %d has %d glyph lists that leave their range; that of subtable %d has glyph %d, outside %d to %d"},
    {Images::kImageReversed, Severity::kMajorError,
     "Strike %d has %d images that end before they start, the first of them glyph %d"},
    {Images::kImageBeyondData, Severity::kFatalError,
     "Strike %d has %d images that end beyond the bitmap data (%d bytes); glyph %d ends at byte %lu"},
    {Images::kImageCutOff, Severity::kMajorError,
     "Strike %d has %d images that are cut off; glyph %d (%d by %d pixels) needs %d bytes, but has %lu"},
    {Images::kImageByteAligned, Severity::kTechnicalError,
     "Strike %d has %d images that look byte-aligned, but their format says bit-aligned, the first of them glyph %d"},
    {Images::kImageTooLong, Severity::kTechnicalError,
     "Strike %d has %d images with unused bytes; glyph %d needs %d of its %lu"},
    {Images::kComponentBeyondFont, Severity::kMajorError,
     "Strike %d has %d components that are not glyphs of the font; glyph %d uses glyph %d"},
    {Images::kComponentWithoutImage, Severity::kMajorError,
     "Strike %d has %d components without an image; glyph %d uses glyph %d"},
    {Images::kComponentCircle, Severity::kMajorError,
     "Strike %d has %d images whose components lead in a circle, the first of them glyph %d"},
};

/// The faults whose first case begins with a glyph.
constexpr bool BeginsWithGlyph(Images::Fault iFault) {
  return iFault >= Images::kImageReversed && iFault != Images::kImageBeyondData;
}

constexpr uint64_t kScaledHeaderSize = 8;
constexpr uint64_t kScaledRecordSize = 28;

std::set<std::pair<uint8_t, uint8_t>> StrikeSizes(const FTBitmapLocation& iLocation) {
  std::set<std::pair<uint8_t, uint8_t>> tSizes;
  for (uint32_t i = 0; i < iLocation.StrikeCount(); ++i) {
    const FTBitmapStrike tStrike = iLocation.GetStrike(i);
    tSizes.emplace(tStrike.ppemX, tStrike.ppemY);
  }
  return tSizes;
}

}  // namespace

void VornFontTesterStructure_sbit::ReportImages(uint32_t iIndex, const Images& iImages) const {
  for (const auto& [tFault, tSeverity, tFormat] : kFaultTexts) {
    const auto& [tCount, tCase] = iImages.TallyOf(tFault);
    if (tCount == 0) continue;
    if (tSeverity == Severity::kTechnicalError && !ExecuteTestsWithSeverity(tSeverity)) continue;
    Place tPlace;
    if (BeginsWithGlyph(tFault)) tPlace.glyph = static_cast<uint32_t>(tCase[0]);
    if (tFault == Images::kImageBeyondData) tPlace.glyph = static_cast<uint32_t>(tCase[1]);
    const At tHere(*this, tPlace);
    ReportResult(tSeverity, tFormat, {iIndex, tCount, tCase[0], tCase[1], tCase[2], tCase[3], tCase[4]});
  }
}

void VornFontTesterStructure_sbit::CheckScaledSizes() const {
  constexpr const char* kName = "EBSC";
  const Tova::ByteView tBytes = SfntFont().GetTaggedTable(FTTag("EBSC"))->Bytes();
  const At tHere(*this, {.table = FTTag("EBSC")});
  if (tBytes.Size() < kScaledHeaderSize) {
    ReportResult(Severity::kFatalError, "The '%@' table is too short for its header (%d bytes)",
                 {Tova::MakeString(kName), tBytes.Size()});
    return;
  }
  if (tBytes.U32(0) != FTBitmapLocation::kVersion) {
    ReportResult(Severity::kMajorError, "The '%@' table has the version 0x%08X; it should be 0x%08X",
                 {Tova::MakeString(kName), tBytes.U32(0), FTBitmapLocation::kVersion});
  }
  const uint64_t tCount = tBytes.U32(4);
  const uint64_t tExpected = kScaledHeaderSize + kScaledRecordSize * tCount;
  constexpr const char* kSizeFormat = "The 'EBSC' table has %d bytes; its %u sizes take %lu";
  if (tBytes.Size() < tExpected) {
    ReportResult(Severity::kFatalError, kSizeFormat, {tBytes.Size(), tCount, tExpected});
  } else if (tBytes.Size() > tExpected) {
    ReportResultIfAsked(Severity::kTechnicalError, kSizeFormat, {tBytes.Size(), tCount, tExpected});
  }
  const FTFontTable* tTable = SfntFont().GetTaggedTable(kMicrosoftPair.location);
  const bool tHasStrikes = tTable && tTable->GetSize() >= FTBitmapLocation::kHeaderSize;
  std::set<PixelsPerEm> tSizes;
  if (tHasStrikes) tSizes = StrikeSizes(FTBitmapLocation(tTable->Bytes(), {}));
  const uint64_t tHeld = std::min(tCount, (tBytes.Size() - kScaledHeaderSize) / kScaledRecordSize);
  for (uint64_t i = 0; i < tHeld; ++i) {
    const uint64_t tStart = kScaledHeaderSize + kScaledRecordSize * i;
    const At tHereToo(*this, {.offset = tStart});
    const Tova::ByteView tRecord = tBytes.Slice(tStart, kScaledRecordSize);
    CheckScaledSize(static_cast<uint32_t>(i), tRecord, tHasStrikes ? &tSizes : nullptr);
  }
}

/// iStrikes: the sizes of the font's strikes, null when they are not known.
void VornFontTesterStructure_sbit::CheckScaledSize(uint32_t iIndex, Tova::ByteView iRecord,
                                                   const std::set<PixelsPerEm>* iStrikes) const {
  const PixelsPerEm tTarget = {iRecord.U8(24), iRecord.U8(25)};
  const PixelsPerEm tSubstitute = {iRecord.U8(26), iRecord.U8(27)};
  if (tTarget.first == 0 || tTarget.second == 0 || tSubstitute.first == 0 || tSubstitute.second == 0) {
    ReportResult(Severity::kMinorError, "Scaled size %d has a zero size", {iIndex});
    return;
  }
  if (!iStrikes) return;
  if (!iStrikes->contains(tSubstitute)) {
    ReportResult(Severity::kMajorError, "Scaled size %d uses a strike of %d by %d pixels, which the font lacks",
                 {iIndex, tSubstitute.first, tSubstitute.second});
  }
  if (iStrikes->contains(tTarget)) {
    ReportResultIfAsked(Severity::kTechnicalError,
                        "Scaled size %d is for %d by %d pixels, which the font has as a strike",
                        {iIndex, tTarget.first, tTarget.second});
  }
}
