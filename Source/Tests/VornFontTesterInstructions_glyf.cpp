#include "Tests/VornFontTesterInstructions_glyf.h"

#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "Tests/InstructionStream.h"

Tova::Array TestInstructions_glyf(const FTFont* iFont, TovaMutableArrayRef iMessages, TovaDictionaryRef iOptions) {
  return RunTester<VornFontTesterInstructions_glyf, FTFont_sfnt>(iFont, iMessages, iOptions);
}

bool VornFontTesterInstructions_glyf::ExecuteTest() const {
  const auto* tFont = dynamic_cast<const FTFont_sfnt*>(GetFont());
  if (!tFont || !tFont->HasTaggedTable(FTFontTable_glyf::kTag)) return false;
  CheckInstructions_glyf(tFont->FindTable<FTFontTable_glyf>());
  return true;
}

void VornFontTesterInstructions_glyf::CheckInstructions_glyf(const FTFontTable_glyf* iTable) const {
  const uint16_t tGlyphCount = iTable->GetFont()->CountFontGlyphs();
  if (iTable->GetSize() == 0) {
    ReportResult(kVornFontTestSeverityFatalError, "Required table ('glyf') is missing!");
    return;
  }
  if (!ExecuteTestsWithSeverity(kVornFontTestSeverityMajorError)) return;
  iTable->GetFont()->SpendWork(tGlyphCount);
  for (uint16_t tGlyph = 0; tGlyph < tGlyphCount; ++tGlyph) {
    const FTTrueTypeGlyph tOutline = iTable->GetGlyph(tGlyph);
    if (!tOutline || !tOutline.IsSimpleGlyph()) continue;
    const FTSimpleTrueTypeGlyph tSimple(tOutline);
    const uint16_t tLength = tSimple.GetInstructionByteCount();
    if (tLength == 0) continue;
    if (!CheckTrueTypeInstructionStream(this, tSimple.GetInstructionData(), tLength, nullptr, nullptr) &&
        CanBailOnFirstFailure())
      return;
  }
}
