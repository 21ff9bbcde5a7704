#include "Tests/VornFontTesterInstructions_glyf.h"

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "Tests/InstructionStream.h"

void VornFontTesterInstructions_glyf::CheckTable(const FTFontTable_glyf& iTable) const {
  const uint16_t tGlyphCount = iTable.GetFont()->CountFontGlyphs();
  if (iTable.GetSize() == 0) {
    ReportResult(Severity::kFatalError, "Required table ('glyf') is missing!");
    return;
  }
  if (!ExecuteTestsWithSeverity(Severity::kMajorError)) return;
  for (uint16_t tGlyph = 0; tGlyph < tGlyphCount; ++tGlyph) {
    const auto* tOutline = dynamic_cast<const FTSimpleTrueTypeGlyph*>(iTable.GetGlyph(tGlyph));
    if (!tOutline) continue;
    const uint16_t tLength = tOutline->GetInstructionByteCount();
    if (tLength == 0) continue;
    const At tHere(*this, {.glyph = tGlyph});
    const Tova::ByteView tProgram = tOutline->GetInstructionData();
    const bool tSound =
        CheckTrueTypeInstructionStream(this, tProgram, tLength, nullptr, nullptr, tProgram.OffsetIn(iTable.Bytes()));
    if (!tSound && CanBailOnFirstFailure()) return;
  }
}
