#include "Tests/VornFontTesterStructure_head.h"

#include <algorithm>
#include <optional>

#include "TableAccess/TableClasses/FTFontTable_glyf.h"
#include "TableAccess/TableClasses/FTFontTable_mort.h"
#include "TableAccess/TableClasses/FTFontTable_morx.h"

namespace {

constexpr uint64_t kHeaderSize = 54;
constexpr uint64_t kPaddedHeaderSize = 56;

// Of the flags field.
constexpr uint16_t kReservedFlags = 0xF000;
constexpr uint16_t kUnusedFlag = 0x0040;
constexpr uint16_t kRequiresLayoutFlag = 0x0080;
constexpr uint16_t kDefaultFeaturesFlag = 0x0100;

constexpr uint32_t kMagicNumber = 0x5F0F3CF5;

/// The smallest box around all glyphs with a box of their own; none when there is no such glyph.
std::optional<FTRect> UnionOfGlyphBoxes(const FTFontTable_glyf& iTable) {
  std::optional<FTRect> tUnion;
  const auto tGlyphs = iTable.GetGlyphs();
  for (uint16_t i = 0; i < tGlyphs.size(); ++i) {
    if (tGlyphs[i].IsEmptyGlyph()) continue;
    const FTRect tBox = tGlyphs[i].GetBounds();
    if (!tUnion) tUnion = tBox;
    *tUnion = {std::max(tUnion->top, tBox.top), std::min(tUnion->left, tBox.left),
               std::min(tUnion->bottom, tBox.bottom), std::max(tUnion->right, tBox.right)};
  }
  return tUnion;
}

}  // namespace

bool VornFontTesterStructure_head::ExecuteTest() const {
  const FTFont_sfnt& tFont = SfntFont();
  const bool tSbitOnly = tFont.IsSbitOnly();
  const At tHere(*this, {.table = tSbitOnly ? FTFontTable_bhed::kTag : FTFontTable_head::kTag});
  if (tSbitOnly) {
    if (!tFont.HasTaggedTable(FTFontTable_bhed::kTag)) {
      ReportResult(Severity::kMajorError,
                   "The font is missing a 'bhed' table, required by the Veltrin TrueType spec for bitmap-only fonts.");
      return false;
    }
  } else if (!tFont.HasTaggedTable(FTFontTable_head::kTag)) {
    ReportResult(Severity::kFatalError, "The font is missing a 'head' table, required by the TrueType spec.");
    return false;
  }
  _fTable = tSbitOnly ? tFont.FindTable<FTFontTable_bhed>() : tFont.FindTable<FTFontTable_head>();
  CheckSize();
  CheckLocaFormat();
  CheckHeadFlags(tFont);
  if (ExecuteTestsWithSeverity(Severity::kTechnicalError)) {
    CheckVersionAndMagic();
    CheckRanges();
  }
  return true;
}

void VornFontTesterStructure_head::CheckSize() const {
  const uint64_t tSize = GetTable()->GetSize();
  if (tSize > kPaddedHeaderSize) {
    ReportResult(Severity::kTechnicalError,
                 "The header ('head'/'bhed') table is too big.  It is %d bytes in size, but it should only be %d bytes "
                 "in size",
                 {tSize, kHeaderSize});
  }
  if (tSize < kHeaderSize) {
    ReportResult(Severity::kFatalError, "The table is too small; it is only %d bytes in size and should be at least %d",
                 {tSize, kHeaderSize});
  }
}

void VornFontTesterStructure_head::CheckLocaFormat() const {
  const int16_t tFormat = GetTable()->IndexToLocFormat();
  if (tFormat != 0 && tFormat != 1) {
    ReportResult(Severity::kFatalError,
                 "The header ('head'/'bhed') table 'loca' table format value is %d; it should be 0 or 1", {tFormat});
  }
}

uint64_t VornFontTesterStructure_head::CountFontDefaultFeatures(const FTFont_sfnt& iFont) {
  if (iFont.HasTaggedTable(FTFontTable_morx::kTag)) return iFont.FindTable<FTFontTable_morx>()->CountDefaultFeatures();
  if (iFont.HasTaggedTable(FTFontTable_mort::kTag)) return iFont.FindTable<FTFontTable_mort>()->CountDefaultFeatures();
  return 0;
}

void VornFontTesterStructure_head::CheckHeadFlags(const FTFont_sfnt& iFont) const {
  const uint16_t tFlags = GetTable()->Flags();
  const bool tHasFeatures = CountFontDefaultFeatures(iFont) != 0;
  const bool tFeaturesFlag = (tFlags & kDefaultFeaturesFlag) != 0;
  if ((tFlags & kReservedFlags) != 0) {
    ReportResult(Severity::kTechnicalError,
                 "The header ('head'/'bhed') table has flag value 0x%04X; the top four bits should all be clear",
                 {tFlags});
  }
  if (tHasFeatures && !tFeaturesFlag) {
    ReportResult(Severity::kMinorError,
                 "The header ('head'/'bhed') table the default features flag (bit 7) clear, but the font does in fact "
                 "have default features");
  }
  if (!tHasFeatures && tFeaturesFlag) {
    ReportResult(Severity::kMinorError,
                 "The header ('head'/'bhed') table the default features flag (bit 7) set, but no default features");
  }
  if ((tFlags & kUnusedFlag) != 0) {
    ReportResult(Severity::kTechnicalError,
                 "The header ('head'/'bhed') table flags field has bit 6 set; it should be clear");
  }
  if ((tFlags & kRequiresLayoutFlag) != 0 && !tFeaturesFlag) {
    ReportResult(Severity::kMinorError,
                 "The header ('head'/'bhed') table flags indicate the font required layout, but they also indicate it "
                 "has no default layout features");
  }
}

void VornFontTesterStructure_head::CheckVersionAndMagic() const {
  const uint32_t tVersion = GetTable()->Version();
  if (tVersion != 0x00010000) {
    ReportResult(Severity::kTechnicalError, "The header ('head'/'bhed') table format should be 1.0 but is %f (0x%08lX)",
                 {tVersion / 65536.0, tVersion});
  }
  if (GetTable()->MagicNumber() != kMagicNumber) {
    ReportResult(Severity::kTechnicalError,
                 "The header ('head'/'bhed') table magic number should be 0x5F0F3CF5 but is 0x%08lX",
                 {GetTable()->MagicNumber()});
  }
}

void VornFontTesterStructure_head::CheckRanges() const {
  const FTFontTable_head& tTable = *GetTable();
  if (tTable.UnitsPerEm() < 16) {
    ReportResult(Severity::kTechnicalError,
                 "The header ('head'/'bhed') table units per em is %d, but it should be 16 or above",
                 {tTable.UnitsPerEm()});
  }
  if (tTable.UnitsPerEm() > 16384) {
    ReportResult(Severity::kTechnicalError,
                 "The header ('head'/'bhed') table units per em is %d, but it should be 16384 or below",
                 {tTable.UnitsPerEm()});
  }
  if (tTable.ValdourStyle() > 127) {
    ReportResult(Severity::kTechnicalError,
                 "The header ('head'/'bhed') table Valdour style field is %d; it should be 127 or below",
                 {tTable.ValdourStyle()});
  }
  if (tTable.LowestRecPPEM() > 24) {
    ReportResult(Severity::kTechnicalError,
                 "The header ('head'/'bhed') table lowest readable point size is %d, which seems suspiciously high",
                 {tTable.LowestRecPPEM()});
  }
  if (tTable.FontDirectionHint() < -2 || tTable.FontDirectionHint() > 2) {
    ReportResult(Severity::kTechnicalError,
                 "The header ('head'/'bhed') table direction hint value is %d; it should be -2, -1, 0, 1, or 2",
                 {tTable.FontDirectionHint()});
  }
  if (tTable.GlyphDataFormat() != 0) {
    ReportResult(Severity::kTechnicalError,
                 "The header ('head'/'bhed') table glyph data format value is %d; it should be 0",
                 {tTable.GlyphDataFormat()});
  }
}

void VornFontTesterStructure_head::CheckBoundingBox() const {
  const FTFont_sfnt& tFont = SfntFont();
  if (!tFont.HasTaggedTable(FTFontTable_head::kTag) || !tFont.HasTrueTypeGlyphs()) return;
  const auto& tTable = *tFont.FindTable<FTFontTable_head>();
  const std::optional<FTRect> tBox = UnionOfGlyphBoxes(*tFont.FindTable<FTFontTable_glyf>());
  if (!tBox) return;
  if (tTable.XMin() != tBox->left) {
    ReportResult(Severity::kMinorError,
                 "The header ('head'/'bhed') table minimum x-value (%d) is incorrect; it should be %d",
                 {tTable.XMin(), tBox->left});
  }
  if (tTable.YMin() != tBox->bottom) {
    ReportResult(Severity::kMinorError,
                 "The header ('head'/'bhed') table minimum y-value (%d) is incorrect; it should be %d",
                 {tTable.YMin(), tBox->bottom});
  }
  if (tTable.YMax() != tBox->top) {
    ReportResult(Severity::kMinorError,
                 "The header ('head'/'bhed') table maximum y-value (%d) is incorrect; it should be %d",
                 {tTable.YMax(), tBox->top});
  }
}
