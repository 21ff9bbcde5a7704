#include "Tests/VornFontTesterStructure_glyf.h"

#include <algorithm>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/FTLimits.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TableAccess/TableClasses/FTFontTable_head.h"
#include "TableAccess/TableClasses/FTFontTable_loca.h"
#include "TableAccess/TableClasses/FTFontTable_maxp.h"

void VornFontTesterStructure_glyf::CheckTable(const FTFontTable_glyf& iTable) const {
  if (!RequiredTablesExist(iTable)) return;
  const FTFont_sfnt& tFont = SfntFont();
  if (tFont.IsSbitOnly()) {
    ReportResult(Severity::kMinorError, "No 'glyf' table should be present in sbit-only font.");
    return;
  }
  if (iTable.GetSize() % 2 != 0) {
    ReportResult(Severity::kTechnicalError, "Table has an odd number of bytes (%d)", {iTable.GetSize()});
  }
  const uint32_t tGlyphCount = tFont.CountFontGlyphs();
  tFont.SpendWork(kFTStepsOfGlyph * tGlyphCount);
  const auto& tTable_head = *tFont.FindTable<FTFontTable_head>();
  int16_t tMaxContours = 0;
  for (uint32_t tGlyph = 0; tGlyph < tGlyphCount; ++tGlyph) {
    const At tHere(*this, {.glyph = tGlyph});
    try {
      CheckGlyph(iTable, tGlyph, tTable_head, tMaxContours);
    } catch (const FTException& tException) {
      if (tException.GetErrorCode() == kVornFVRecursiveGlyphDataErr) {
        ReportResult(Severity::kFatalError, "Glyph %d is a compound glyph which contains itself as a component.",
                     {tGlyph});
      } else if (tException.GetErrorCode() == kVornFVExcessiveGlyphDataErr) {
        ReportResult(Severity::kFatalError,
                     "Glyph %d has instruction or point coordinate data which extends beyond its bounds.", {tGlyph});
      } else {
        throw;
      }
    }
  }
  const uint16_t tStated = tFont.FindTable<FTFontTable_maxp>()->MaxContours();
  if (tStated != static_cast<uint16_t>(tMaxContours)) {
    ReportResult(Severity::kMinorError, "Maximum contour count is %d in the 'maxp' table but %d here",
                 {tStated, tMaxContours});
  }
}

bool VornFontTesterStructure_glyf::RequiredTablesExist(const FTFontTable_glyf& iTable) const {
  const FTFont_sfnt& tFont = SfntFont();
  const char* tMissing = nullptr;
  if (iTable.GetSize() == 0)
    tMissing = "Required table ('glyf') is missing!";
  else if (!tFont.FindTable<FTFontTable_maxp>())
    tMissing = "Required table ('maxp') is missing!";
  else if (!tFont.FindTable<FTFontTable_head>())
    tMissing = "Required table ('head') is missing!";
  else if (!tFont.HasTaggedTable(FTFontTable_loca::kTag))
    tMissing = "Required table ('loca') is missing!";
  if (tMissing) ReportResult(Severity::kFatalError, tMissing);
  return !tMissing;
}

void VornFontTesterStructure_glyf::CheckGlyph(const FTFontTable_glyf& iTable, uint32_t iGlyph,
                                              const FTFontTable_head& iHead, int16_t& ioMaxContours) const {
  const uint16_t tGlyphCount = iTable.GetFont()->CountFontGlyphs();
  const FTTrueTypeGlyph tOutline = iTable.GetGlyph(iGlyph);
  if (!tOutline) {
    ReportResult(Severity::kFatalError, "Glyph %d (of %d) does not have valid data", {iGlyph, tGlyphCount});
    return;
  }
  if (tOutline.IsEmptyGlyph() && iGlyph == 0) {
    ReportResult(Severity::kMinorError, "Glyph 0 has no visual appearance but should");
  }
  if (!tOutline.IsEmptyGlyph() && iGlyph == 1) {
    ReportResult(Severity::kMinorError, "Glyph 1 should have no visual appearance but does");
  }
  if (tOutline.IsEmptyGlyph()) {
    ReportResult(Severity::kInformation, "Glyph %d has no visual appearance", {iGlyph});
    return;
  }
  if (tOutline.IsCompoundGlyph()) {
    CheckCompoundGlyph(iGlyph, FTCompoundTrueTypeGlyph(tOutline), tGlyphCount);
  } else if (ExecuteTestsWithSeverity(Severity::kMinorError)) {
    const FTSimpleTrueTypeGlyph tSimple(tOutline);
    ioMaxContours = std::max(ioMaxContours, static_cast<int16_t>(tSimple.GetContourCount()));
    CheckSimpleGlyph(iGlyph, tSimple, iHead);
  }
}

void VornFontTesterStructure_glyf::CheckSimpleGlyph(uint32_t iGlyph, const FTSimpleTrueTypeGlyph& iOutline,
                                                    const FTFontTable_head& iHead) const {
  const FTRect tStored = iOutline.GetBounds();
  const FTRect tComputed = iOutline.ComputeBoundingBox();
  if (tStored == tComputed) {
    CheckContours(iGlyph, iOutline);
  } else {
    ReportResult(Severity::kMinorError,
                 // quirk: box-computed-twice. The second box is the stored one.
                 "Glyph %d: bad bounding box computed; computed value is ( %d, %d, %d, %d ) and computed value is ( "
                 "%d, %d, %d, %d )",
                 {iGlyph, tComputed.left, tComputed.right, tComputed.bottom, tComputed.top, tStored.left, tStored.right,
                  tStored.bottom, tStored.top});
  }
  CheckAgainstFontBox(iGlyph, tComputed, iHead);
}

void VornFontTesterStructure_glyf::CheckContours(uint32_t iGlyph, const FTSimpleTrueTypeGlyph& iGlyphOutline) const {
  if (!iGlyphOutline.HasMixedEnds()) return;
  const uint16_t tCount = iGlyphOutline.GetContourCount();
  const FTOutline& tOutline = iGlyphOutline.GetOutline();
  for (uint16_t tContour = 0; tContour < tCount; ++tContour) {
    if (tOutline.HasMixedEnds(tContour)) {
      ReportResult(Severity::kMinorError,
                   "Glyph %d, contour %d starts and stops at the same point, but the start point is on the curve and "
                   "the stop point is not",
                   {iGlyph, tContour});
    }
  }
}

void VornFontTesterStructure_glyf::CheckAgainstFontBox(uint32_t iGlyph, const FTRect& iBox,
                                                       const FTFontTable_head& iHead) const {
  if (iBox.left < iHead.XMin()) {
    ReportResult(Severity::kMinorError,
                 "Glyph %d: x-minimum (%d) is less than the global x-minimum in the 'head' table (%d)",
                 {iGlyph, iBox.left, iHead.XMin()});
  }
  if (iBox.bottom < iHead.YMin()) {
    ReportResult(Severity::kMinorError,
                 "Glyph %d: y-minimum (%d) is less than the global y-minimum in the 'head' table (%d)",
                 {iGlyph, iBox.bottom, iHead.YMin()});
  }
  if (iBox.right > iHead.XMax()) {
    ReportResult(Severity::kMinorError,
                 "Glyph %d: x-maximum (%d) is greater than the global x-maximum in the 'head' table (%d)",
                 {iGlyph, iBox.right, iHead.XMax()});
  }
  if (iBox.top > iHead.YMax()) {
    ReportResult(Severity::kMinorError,
                 "Glyph %d: y-maximum (%d) is greater than the global y-maximum in the 'head' table (%d)",
                 {iGlyph, iBox.top, iHead.YMax()});
  }
}

void VornFontTesterStructure_glyf::CheckCompoundGlyph(uint32_t iGlyph, const FTCompoundTrueTypeGlyph& iOutline,
                                                      uint16_t iGlyphCount) const {
  const uint16_t tCount = iOutline.GetComponentCount();
  for (uint16_t tComponent = 0; tComponent < tCount; ++tComponent) {
    const uint16_t tID = iOutline.GetComponentID(tComponent);
    if (ValidComponentFlags(iGlyph, tComponent, iOutline.GetComponentFlags(tComponent)) && tID >= iGlyphCount) {
      ReportResult(Severity::kFatalError, "Glyph %d, component %d references a nonexistent glyph (%d)",
                   {iGlyph, tComponent, tID});
      return;
    }
  }
}

bool VornFontTesterStructure_glyf::ValidComponentFlags(uint64_t iGlyph, uint64_t iComponent, uint16_t iFlags) const {
  const uint16_t tUndefined = iFlags & 0xF810;
  if (tUndefined != 0) {
    ReportResult(Severity::kTechnicalError, "Glyph %d, component %d: Undefined component flags set (0x%08X)",
                 {iGlyph, iComponent, tUndefined});
    return false;
  }
  const uint16_t tScaling = iFlags & 0x00C8;
  if (tScaling != 0 && tScaling != 0x0008 && tScaling != 0x0040 && tScaling != 0x0080) {
    ReportResult(Severity::kMajorError, "Glyph %d, component %d: Multiple component scaling flags set",
                 {iGlyph, iComponent});
    return false;
  }
  return true;
}
