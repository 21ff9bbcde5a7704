#include "Tests/VornFontTesterInstructions_glyf.h"

#include "TableAccess/FTLimits.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "Tests/InstructionStream.h"

void VornFontTesterInstructions_glyf::CheckTable(const FTFontTable_glyf& iTable) const {
  const uint16_t tGlyphCount = iTable.GetFont()->CountFontGlyphs();
  if (iTable.GetSize() == 0) {
    ReportResult(Severity::kFatalError, "Required table ('glyf') is missing!");
    return;
  }
  if (!ExecuteTestsWithSeverity(Severity::kMajorError)) return;
  iTable.GetFont()->SpendWork(kFTStepsOfGlyph * tGlyphCount);
  for (uint16_t tGlyph = 0; tGlyph < tGlyphCount; ++tGlyph) {
    const FTTrueTypeGlyph tOutline = iTable.GetGlyph(tGlyph);
    if (!tOutline || !tOutline.IsSimpleGlyph()) continue;
    const FTSimpleTrueTypeGlyph tSimple(tOutline);
    const uint16_t tLength = tSimple.GetInstructionByteCount();
    if (tLength == 0) continue;
    const At tHere(*this, {.glyph = tGlyph});
    const Tova::ByteView tProgram = tSimple.GetInstructionData();
    const bool tSound =
        CheckTrueTypeInstructionStream(this, tProgram, tLength, nullptr, nullptr, tProgram.OffsetIn(iTable.Bytes()));
    if (!tSound && CanBailOnFirstFailure()) return;
  }
}
