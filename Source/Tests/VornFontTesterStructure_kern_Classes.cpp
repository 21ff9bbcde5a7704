#include <algorithm>

#include "Tests/VornFontTesterStructure_kern.h"
#include "Tests/VornFontTesterStructure_kern_Rank.h"

// Format 2: row width, offsets of the left and the right class table and of the array (u16 each, from the subtable's
// start). A class table: first glyph u16, glyph count u16, a value u16 for each glyph. A left value is the offset of a
// row of the array, a right value that of a column in a row; their sum is the offset of the i16 for a pair.

/// A class table of format 2, as far as the table holds it.
struct VornFontTesterStructure_kern::ClassTable {
  uint64_t at = 0;        ///< bytes from the start of the table
  uint32_t first = 0;     ///< glyph
  uint64_t held = 0;      ///< values
  uint16_t greatest = 0;  ///< value
  bool allZero = true;
  bool isWhole = true;

  uint64_t ValueAt(uint64_t iIndex) const { return at + 4 + 2 * iIndex; }
};

VornFontTesterStructure_kern::ClassTable VornFontTesterStructure_kern::ReadClassTable(const LayoutTable& iBytes,
                                                                                      uint64_t iAt) const {
  ClassTable tTable;
  const uint64_t tCount = iBytes.bytes.U16(iAt + 2);
  const uint64_t tRoom = iBytes.Left(iAt + 4) / 2;
  tTable.at = iAt;
  tTable.first = iBytes.bytes.U16(iAt);
  tTable.held = std::min(tCount, tRoom);
  tTable.isWhole = iBytes.bytes.Holds(iAt, 4 + 2 * tCount);
  iBytes.report.Spend(tTable.held);
  for (uint64_t i = 0; i < tTable.held; ++i) {
    tTable.greatest = std::max(tTable.greatest, iBytes.bytes.U16(tTable.ValueAt(i)));
  }
  tTable.allZero = tTable.greatest == 0;
  return tTable;
}

void VornFontTesterStructure_kern::CheckClassArray(const LayoutTable& iBytes, const Subtable& iSubtable) const {
  LayoutReport& tReport = iBytes.report;
  const uint64_t tStart = iSubtable.fields.offset;
  const Tova::ByteView tHeader = iBytes.bytes.From(iSubtable.fields.Body());
  const ClassTable tLeft = ReadClassTable(iBytes, tStart + tHeader.U16(2));
  const ClassTable tRight = ReadClassTable(iBytes, tStart + tHeader.U16(4));
  const uint64_t tArray = tStart + tHeader.U16(6);
  if (tArray >= iBytes.Size()) {
    tReport.Report(kKernArrayStart, Severity::kFatalError, "The kerning array lies beyond the end of the table", {},
                   {tArray});
  }
  if (!tLeft.isWhole) {
    tReport.Report(kKernLeftClassTable, Severity::kFatalError, "The left class table lies beyond the end of the table",
                   {}, {tLeft.at});
  }
  if (!tRight.isWhole) {
    tReport.Report(kKernRightClassTable, Severity::kFatalError,
                   "The right class table lies beyond the end of the table", {}, {tRight.at});
  }
  CheckClassValues(iBytes, iSubtable, tLeft, tRight);
  CheckArrayEnd(iBytes, iSubtable, tLeft, tRight);
  LayoutTally tGlyphs;
  for (const ClassTable* tTable : {&tLeft, &tRight}) {
    for (uint64_t i = 0; i < tTable->held && iBytes.glyphCount != 0; ++i) {
      const uint64_t tGlyph = tTable->first + i;
      if (tGlyph >= iBytes.glyphCount && tGlyph != kDeletedGlyph) {
        tGlyphs.Add({tGlyph}, {tTable->ValueAt(i), static_cast<uint32_t>(tGlyph)});
      }
    }
  }
  tReport.ReportCount(kKernClassGlyphs, Severity::kMinorError,
                      "%d glyphs of the class tables are not in the font; the first is glyph %d", tGlyphs);
}

void VornFontTesterStructure_kern::CheckClassValues(const LayoutTable& iBytes, const Subtable& iSubtable,
                                                    const ClassTable& iLeft, const ClassTable& iRight) const {
  LayoutReport& tReport = iBytes.report;
  const uint64_t tBody = iSubtable.fields.Body();
  const uint16_t tRowWidth = iBytes.bytes.U16(tBody);
  const uint16_t tArray = iBytes.bytes.U16(tBody + 6);
  if (tRowWidth == 0 || tRowWidth % 2 != 0) {
    tReport.Report(kKernRowWidth, Severity::kMajorError, "The row width is %d", {tRowWidth}, {tBody});
    return;
  }
  LayoutTally tLeftValues;
  for (uint64_t i = 0; i < iLeft.held; ++i) {
    const uint16_t tValue = iBytes.bytes.U16(iLeft.ValueAt(i));
    if (tValue != 0 && (tValue < tArray || (tValue - tArray) % tRowWidth != 0)) {
      tLeftValues.Add({tValue, iLeft.first + i}, {iLeft.ValueAt(i), static_cast<uint32_t>(iLeft.first + i)});
    }
  }
  LayoutTally tRightValues;
  for (uint64_t i = 0; i < iRight.held; ++i) {
    const uint16_t tValue = iBytes.bytes.U16(iRight.ValueAt(i));
    if (tValue % 2 != 0 || tValue >= tRowWidth) {
      tRightValues.Add({tValue, iRight.first + i}, {iRight.ValueAt(i), static_cast<uint32_t>(iRight.first + i)});
    }
  }
  tReport.ReportCount(kKernLeftValues, Severity::kMajorError,
                      "%d left values are not the start of a row; the first is 0x%04X, of glyph %d", tLeftValues);
  tReport.ReportCount(kKernRightValues, Severity::kMajorError,
                      "%d right values are not the place of a column; the first is 0x%04X, of glyph %d", tRightValues);
}

/// The array ends with the value for the greatest row and column. Without a row for any glyph it is never read.
void VornFontTesterStructure_kern::CheckArrayEnd(const LayoutTable& iBytes, const Subtable& iSubtable,
                                                 const ClassTable& iLeft, const ClassTable& iRight) const {
  if (iLeft.allZero) return;
  const uint64_t tStart = iSubtable.fields.offset;
  const uint64_t tArray = tStart + iBytes.bytes.U16(iSubtable.fields.Body() + 6);
  const uint64_t tEnd = tStart + iLeft.greatest + iRight.greatest + 2;
  if (tEnd > iBytes.Size()) {
    iBytes.report.Report(kKernArrayBeyondTable, Severity::kFatalError,
                         "The kerning array ends beyond the end of the table", {}, {tArray});
  } else if (tEnd > iSubtable.fields.End()) {
    iBytes.report.Report(kKernArrayBeyondSubtable, Severity::kTechnicalError,
                         "The kerning array ends beyond the end of the subtable", {}, {tArray});
  }
  const uint64_t tClipped = std::min(tEnd, iBytes.Size());
  const uint64_t tWords = tClipped > tArray ? (tClipped - tArray) / 2 : 0;
  iBytes.report.Spend(tWords);
  CheckValues(iBytes, iSubtable, tArray, tWords, 2);
}

// Format 3: glyph count u16; value count, left and right class counts, flags (u8 each); the values (i16); for each
// glyph its left class, then for each its right class (u8); for each pair of classes the index of its value (u8).

void VornFontTesterStructure_kern::CheckIndexArray(const LayoutTable& iBytes, const Subtable& iSubtable) const {
  LayoutReport& tReport = iBytes.report;
  const uint64_t tBody = iSubtable.fields.Body();
  const Tova::ByteView tHeader = iBytes.bytes.From(tBody);
  const uint64_t tGlyphCount = tHeader.U16(0);
  const uint8_t tValueCount = tHeader.U8(2);
  const uint8_t tLeftCount = tHeader.U8(3);
  const uint8_t tRightCount = tHeader.U8(4);
  if (iBytes.glyphCount != 0 && tGlyphCount < iBytes.glyphCount) {
    tReport.Report(kKernTooFewGlyphs, Severity::kMinorError,
                   "The subtable has classes for only %d glyphs; the font has %d", {tGlyphCount, iBytes.glyphCount},
                   {tBody});
  } else if (iBytes.glyphCount != 0 && tGlyphCount > iBytes.glyphCount) {
    tReport.Report(kKernTooManyGlyphs, Severity::kTechnicalError,
                   "The subtable has classes for %d glyphs; the font has only %d", {tGlyphCount, iBytes.glyphCount},
                   {tBody});
  }
  if (const uint8_t tFlags = tHeader.U8(5); tFlags != 0) {
    tReport.Report(kKernFlags, Severity::kTechnicalError, "The flags (0x%02X) are not zero", {tFlags}, {tBody});
  }
  const uint64_t tValues = tBody + 6;
  const uint64_t tClasses = tValues + uint64_t{2} * tValueCount;
  const uint64_t tIndices = tClasses + 2 * tGlyphCount;
  const uint64_t tNeeded = tIndices + uint64_t{tLeftCount} * tRightCount - iSubtable.fields.offset;
  const uint64_t tRoom = iBytes.Left(iSubtable.fields.offset);
  if (tNeeded > tRoom) {
    tReport.Report(kKernArraysBeyondTable, Severity::kFatalError,
                   "The arrays need %lu bytes; only %lu are left in the table", {tNeeded, tRoom}, {tValues});
    return;
  }
  tReport.Spend(tNeeded);
  CheckValues(iBytes, iSubtable, tValues, tValueCount, 2);
  LayoutTally tBadClasses;
  for (uint64_t i = 0; i < tGlyphCount; ++i) {
    const auto tCheck = [&](uint64_t iAt, uint8_t iCount) {
      const uint8_t tClass = iBytes.bytes.U8(iAt);
      if (tClass >= iCount) tBadClasses.Add({tClass, i}, {iAt, static_cast<uint32_t>(i)});
    };
    tCheck(tClasses + i, tLeftCount);
    tCheck(tClasses + tGlyphCount + i, tRightCount);
  }
  tReport.ReportCount(kKernClassAboveLast, Severity::kMajorError,
                      "%d classes of glyphs are above the last one; the first is class %d of glyph %d", tBadClasses);
  LayoutTally tNoValue;
  for (uint32_t tPair = 0; tPair < uint32_t{tLeftCount} * tRightCount; ++tPair) {
    const uint8_t tIndex = iBytes.bytes.U8(tIndices + tPair);
    if (tIndex >= tValueCount) {
      tNoValue.Add({tPair / tRightCount, tPair % tRightCount, tIndex}, {tIndices + tPair});
    }
  }
  tReport.ReportCount(kKernNoValue, Severity::kMajorError,
                      "%d class pairs have no value; the first is %d, %d with the index %d", tNoValue);
}
