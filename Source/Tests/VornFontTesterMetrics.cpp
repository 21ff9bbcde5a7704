#include "Tests/VornFontTesterMetrics.h"

#include <algorithm>
#include <cstdlib>

#include "TableAccess/FTLimits.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"

bool VornFontTesterMetrics::ExecuteTest() const {
  const FTFont_sfnt& tFont = SfntFont();
  if (!tFont.HasTaggedTable(FTFontTable_hdmx::kTag) || !tFont.HasTaggedTable(FTFontTable_hmtx::kTag)) return false;
  const At tHere(*this, {.table = FTFontTable_hdmx::kTag});
  CheckMetrics(tFont.FindTable<FTFontTable_hdmx>(), tFont.FindTable<FTFontTable_hmtx>());
  return true;
}

void VornFontTesterMetrics::CheckMetrics(const FTFontTable_hdmx* iTable_hdmx,
                                         const FTFontTable_hmtx* iTable_hmtx) const {
  const FTFont_sfnt& tFont = *iTable_hmtx->GetFont();
  const uint16_t tEm = tFont.GetFontUnitsPerEm();
  if (tEm == 0) return;
  // A record that starts beyond the table's bytes reads as size 0 and width 0, which agree.
  uint64_t tRecordCount = iTable_hdmx->GetDeviceRecordCount();
  if (const uint64_t tSize = iTable_hdmx->GetDeviceRecordSize(); tSize != 0)
    tRecordCount = std::min(tRecordCount, (iTable_hdmx->GetDeviceRecords().Size() + tSize - 1) / tSize);
  const uint16_t tGlyphCount = tFont.CountFontGlyphs();
  for (uint16_t tGlyph = 0; tGlyph < tGlyphCount; ++tGlyph) {
    tFont.SpendWork(kFTStepsOfWidth * (tRecordCount + 1));
    const At tHere(*this, {.glyph = tGlyph});
    const uint16_t tAdvance = iTable_hmtx->GetMetrics(tGlyph).advance;
    for (uint64_t tRecord = 0; tRecord < tRecordCount; ++tRecord) {
      CompareWidth(tGlyph, tAdvance, tEm, iTable_hdmx->GetDeviceRecord(tRecord));
    }
  }
}

void VornFontTesterMetrics::CompareWidth(uint16_t iGlyph, uint16_t iAdvance, uint16_t iEm,
                                         Tova::ByteView iRecord) const {
  const uint32_t tPixelsPerEm = iRecord.U8(0);
  const int tWidth = iRecord.U8(uint64_t{iGlyph} + 2);
  const auto tScaled = static_cast<uint8_t>((iAdvance * tPixelsPerEm + iEm / 2u) / iEm);
  const int tDifference = std::abs(tScaled - tWidth);
  if (tDifference <= 1) return;
  if (tDifference == 2) {
    ReportResult(Severity::kMinorError,
                 "Minor hmtx vs hdmx size mismatch for character glyph %d at size %d: %d (hmtx), %d (hdmx)",
                 {iGlyph, tPixelsPerEm, tScaled, tWidth});
  } else {
    ReportResult(Severity::kMinorError,
                 "Significant hmtx vs hdmx size mismatch for character glyph %d at size %d: %d (hmtx), %d (hdmx)",
                 {iGlyph, tPixelsPerEm, tScaled, tWidth});
  }
}
