#include "Tests/VornFontTesterStructure_maxp.h"

#include <algorithm>

#include "TableAccess/FTLimits.h"
#include "TableAccess/TableClasses/FTFontTable_glyf.h"

namespace {

constexpr uint64_t kShortSize = 6;
constexpr uint64_t kLongSize = 32;
constexpr uint32_t kShortVersion = 0x00005000;

void Raise(uint16_t& ioMaximum, uint16_t iValue) { ioMaximum = std::max(ioMaximum, iValue); }

}  // namespace

/// The greatest values among the glyphs: points and instructions of simple glyphs, the rest of compound ones.
struct VornFontTesterStructure_maxp::Maxima {
  uint16_t points = 0;
  uint16_t instructionBytes = 0;
  uint16_t components = 0;
  uint16_t componentPoints = 0;
  uint16_t componentContours = 0;
  uint16_t subcomponents = 0;
  uint16_t componentDepth = 0;
};

void VornFontTesterStructure_maxp::CheckTable(const FTFontTable_maxp& iTable) const {
  if (SfntFont().HasOTPostScriptGlyphs()) {
    CheckShortForm(iTable);
    return;
  }
  CheckLongForm(iTable);
  if (SfntFont().HasTaggedTable(FTFontTable_glyf::kTag) && ExecuteTestsWithSeverity(Severity::kMinorError)) {
    CheckMaxima(iTable, MeasureGlyphs(SfntFont(), iTable.NumGlyphs()));
  }
}

void VornFontTesterStructure_maxp::CheckSize(uint64_t iSize, uint64_t iExpected) const {
  if (iSize > iExpected) {
    ReportResult(Severity::kTechnicalError, "The table is %d bytes in size; it should be %d", {iSize, iExpected});
  } else if (iSize < iExpected) {
    ReportResult(Severity::kFatalError, "The table is %d bytes in size; it should be %d", {iSize, iExpected});
  }
}

void VornFontTesterStructure_maxp::CheckShortForm(const FTFontTable_maxp& iTable) const {
  CheckSize(iTable.GetSize(), kShortSize);
  if (iTable.Version() != kShortVersion) {
    // quirk: maxp-short-version. The version named is the long form's, here too.
    ReportResult(Severity::kMinorError, "The table's version is 0x%08lX; it should be 0x00010000", {iTable.Version()});
  }
}

void VornFontTesterStructure_maxp::CheckLongForm(const FTFontTable_maxp& iTable) const {
  CheckSize(iTable.GetSize(), kLongSize);
  if (iTable.Version() != FTFontTable_maxp::kLongVersion) {
    ReportResult(Severity::kMinorError, "The table's version is 0x%08lX; it should be 0x00010000", {iTable.Version()});
  }
}

VornFontTesterStructure_maxp::Maxima VornFontTesterStructure_maxp::MeasureGlyphs(const FTFont_sfnt& iFont,
                                                                                 uint16_t iGlyphCount) {
  const auto& tGlyphs = *iFont.FindTable<FTFontTable_glyf>();
  Maxima tMaxima;
  iFont.SpendWork(kFTStepsOfGlyph * iGlyphCount);
  for (uint32_t i = 0; i < iGlyphCount; ++i) {
    const FTTrueTypeGlyph tGlyph = tGlyphs.GetGlyph(i);
    if (!tGlyph || tGlyph.IsEmptyGlyph()) continue;
    if (tGlyph.IsSimpleGlyph()) {
      const FTSimpleTrueTypeGlyph tSimple(tGlyph);
      Raise(tMaxima.points, tSimple.GetPointCount());
      Raise(tMaxima.instructionBytes, tSimple.GetInstructionByteCount());
    } else {
      const FTCompoundTrueTypeGlyph tCompound(tGlyph);
      Raise(tMaxima.components, tCompound.GetComponentCount());
      Raise(tMaxima.componentPoints, tCompound.GetComponentPointCount());
      Raise(tMaxima.componentContours, tCompound.GetComponentContourCount());
      Raise(tMaxima.subcomponents, tCompound.GetSubcomponentCount());
      Raise(tMaxima.componentDepth, tCompound.GetComponentDepth());
    }
  }
  return tMaxima;
}

void VornFontTesterStructure_maxp::CheckMaxima(const FTFontTable_maxp& iTable, const Maxima& iMaxima) const {
  const auto tCompare = [this](uint16_t iStored, uint16_t iComputed, const char* iFormat) {
    if (iStored != iComputed) ReportResult(Severity::kMinorError, iFormat, {iStored, iComputed});
  };
  tCompare(iTable.MaxPoints(), iMaxima.points, "The table's maximum point count is %d; it should be %d");
  // quirk: contours-are-components. Contours are held against the components of compound glyphs.
  tCompare(iTable.MaxContours(), iMaxima.components, "The table's maximum contour count is %d; it should be %d");
  tCompare(iTable.MaxComponentPoints(), iMaxima.componentPoints,
           "The table's maximum component point count is %d; it should be %d");
  tCompare(iTable.MaxComponentContours(), iMaxima.componentContours,
           "The table's maximum component contour count is %d; it should be %d");
  if (iTable.MaxZones() != 2) {
    ReportResult(Severity::kMinorError, "The maxZones field is equal to %d; it should be equal to 2",
                 {iTable.MaxZones()});
  }
  tCompare(iTable.MaxSizeOfInstructions(), iMaxima.instructionBytes,
           "The table's maxSizeOfInstructions field is %d; it should be %d");
  tCompare(iTable.MaxComponentElements(), iMaxima.subcomponents,
           "The table's maximum subcomponent count is %d; it should be %d");
  tCompare(iTable.MaxComponentDepth(), iMaxima.componentDepth,
           "The table's maximum component depth is %d; it should be %d");
  if (iTable.MaxComponentDepth() >= 2) {
    ReportResult(Severity::kMinorError,
                 "The table's maximum component depth is %d; fonts with maximum component depth greater than 1 may not "
                 "work properly on Corvane",
                 {iTable.MaxComponentDepth()});
  }
}
