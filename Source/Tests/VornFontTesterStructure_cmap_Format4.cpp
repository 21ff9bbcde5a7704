#include "Tests/VornFontTesterStructure_cmap.h"

/// A format 4 subtable: length (2), segCountX2 (6), searchRange (8), entrySelector (10), rangeShift (12), and for n
/// segments endCode (14), a zero word, startCode (16 + 2n), idDelta (16 + 4n), idRangeOffset (16 + 6n); then glyph
/// arrays. Positions are signed, since a segment may claim fewer than no characters.
struct VornFontTesterStructure_cmap::Format4 {
  uint64_t encoding;
  Tova::ByteView bytes;
  bool singleByte;
  int64_t count = bytes.U16(6) / 2;
  int64_t arraysEnd = 16 + 8 * count;
  int64_t length = bytes.U16(2);
};

struct VornFontTesterStructure_cmap::Segment {
  Segment(const Format4& iTable, int64_t iIndex)
      : index(iIndex),
        last(iIndex == iTable.count - 1),
        start(iTable.bytes.U16(static_cast<uint64_t>(16 + 2 * (iTable.count + iIndex)))),
        end(iTable.bytes.U16(static_cast<uint64_t>(14 + 2 * iIndex))),
        delta(iTable.bytes.S16(static_cast<uint64_t>(16 + 2 * (2 * iTable.count + iIndex)))),
        offsetAt(16 + 2 * (3 * iTable.count + iIndex)),
        offset(iTable.bytes.U16(static_cast<uint64_t>(offsetAt))) {}

  int64_t index;
  bool last;
  int32_t start;
  int32_t end;
  int32_t delta;
  int64_t offsetAt;
  int64_t offset;
};

void VornFontTesterStructure_cmap::ValidCMap4(uint64_t iEncoding, Tova::ByteView iBytes, bool iSingleByte) const {
  const Format4 tTable{iEncoding, iBytes, iSingleByte};
  CheckSearchFields(tTable);
  if (tTable.arraysEnd > tTable.length) {
    ReportResult(Severity::kFatalError, "Encoding %d (format 4), length incorrect start == %d, end == %d",
                 {iEncoding, tTable.arraysEnd, tTable.length});
  }
  CheckLastSegment(tTable);
  int32_t tPreviousEnd = -1;
  for (int64_t k = 0; k < tTable.count && MayCheck(1); ++k) {
    const Segment tSegment(tTable, k);
    CheckCodes(tTable, tSegment, tPreviousEnd);
    if (tSegment.offset != 0) {
      CheckGlyphArray(tTable, tSegment);
    } else {
      CheckGlyphRun(tTable, tSegment);
    }
    tPreviousEnd = tSegment.end;
  }
}

/// The three fields that a binary search over the segments starts from.
void VornFontTesterStructure_cmap::CheckSearchFields(const Format4& iTable) const {
  const auto tCount = static_cast<uint64_t>(iTable.count);
  const uint32_t tSelector = tCount == 0 ? 0 : FirstBit(static_cast<uint32_t>(tCount));
  const uint64_t tPower = tCount == 0 ? 0 : uint64_t{1} << tSelector;
  if (const uint16_t tRange = iTable.bytes.U16(8); tRange != Tova::Wrap16(2 * tPower)) {
    ReportResult(Severity::kMajorError, "Encoding %d (format 4), search range is %d; should be %d",
                 {iTable.encoding, tRange, Tova::Wrap16(2 * tPower)});
  }
  if (const uint16_t tActual = iTable.bytes.U16(10); tActual != tSelector) {
    ReportResult(Severity::kMajorError, "Encoding %d (format 4), entry selector is %d; should be %d",
                 {iTable.encoding, tActual, tSelector});
  }
  const uint16_t tExpectedShift = Tova::Wrap16(2 * (tCount - tPower));
  if (const uint16_t tShift = iTable.bytes.U16(12); tShift != tExpectedShift) {
    ReportResult(Severity::kMajorError, "Encoding %d (format 4), range shift is %d; should be %d",
                 {iTable.encoding, tShift, tExpectedShift});
  }
}

void VornFontTesterStructure_cmap::CheckLastSegment(const Format4& iTable) const {
  const Segment tLast(iTable, iTable.count - 1);
  if (iTable.count == 0 || tLast.end != 0xFFFF) {
    ReportResult(Severity::kMinorError, "Encoding %d (format 4), missing final 0xFFFFU", {iTable.encoding});
  } else if (tLast.start == 0xFFFF && tLast.delta != 1) {
    ReportResult(Severity::kMinorError,
                 "Encoding %d (format 4), final segment has <0xFFFFU,0xFFFFU> range but idDelta != 1",
                 {iTable.encoding});
  }
}

void VornFontTesterStructure_cmap::CheckCodes(const Format4& iTable, const Segment& iSegment,
                                              int32_t iPreviousEnd) const {
  const int32_t tStart = iSegment.start;
  const int32_t tEnd = iSegment.end;
  if (iTable.singleByte && tStart > 255 && (tStart < 0xFFFF || !iSegment.last)) {
    ReportResult(Severity::kFatalError, "Encoding %d (format 4), segment startCode[%d] == 0x%04X is out of range",
                 {iTable.encoding, iSegment.index, tStart});
  } else if (iTable.singleByte && tEnd > 255 && (tEnd < 0xFFFF || !iSegment.last)) {
    ReportResult(Severity::kFatalError, "Encoding %d (format 4), segment endCode[%d] == 0x%04X is out of range",
                 {iTable.encoding, iSegment.index, tEnd});
  } else if ((iTable.singleByte && tEnd > 255) || tStart <= tEnd) {
    if (tStart <= iPreviousEnd) {
      ReportResult(Severity::kFatalError,
                   "Encoding %d (format 4), segment %d from 0x%04X to 0x%04X overlaps pervious segment",
                   {iTable.encoding, iSegment.index, tStart, tEnd});
    }
  } else {
    ReportResult(Severity::kFatalError,
                 "Encoding %d (format 4), segment startCode[%d] 0x%04X is greater than endCode 0x%04X",
                 {iTable.encoding, iSegment.index, tStart, tEnd});
  }
}

void VornFontTesterStructure_cmap::CheckGlyphRun(const Format4& iTable, const Segment& iSegment) const {
  const uint32_t tFirst = static_cast<uint16_t>(iSegment.start + iSegment.delta);
  const uint32_t tLast = static_cast<uint16_t>(iSegment.end + iSegment.delta);
  if ((iSegment.start < 0xFFFF && tFirst >= GlyphCount()) || (iSegment.end < 0xFFFF && tLast >= GlyphCount())) {
    ReportResult(Severity::kFatalError,
                 "Encoding %d (format 4), segment %d from 0x%04X to 0x%04X produces glyph indices from %d to %d, "
                 "exceeding the limit of %d",
                 {iTable.encoding, iSegment.index, iSegment.start, iSegment.end, tFirst, tLast, GlyphCount()});
  }
}

void VornFontTesterStructure_cmap::CheckGlyphArray(const Format4& iTable, const Segment& iSegment) const {
  const int64_t tCharacters = iSegment.end - iSegment.start + 1;
  const int64_t tPosition = iSegment.offsetAt + iSegment.offset;
  const int64_t tExcess = tPosition + 2 * tCharacters - iTable.length;
  if (tPosition < iTable.arraysEnd) {
    ReportResult(Severity::kMinorError,
                 "Encoding %d (format 4), idRangeOffset[ %d ] == 0x%08lX is too small; it should be 0x%08lX",
                 {iTable.encoding, iSegment.index, iSegment.offset, 2 * (iTable.count - iSegment.index)});
  } else if (tExcess <= 0) {
    if (tCharacters > 0 && !MayCheck(static_cast<uint64_t>(tCharacters))) return;
    for (int64_t j = 0; j < tCharacters; ++j) {
      const auto tAt = static_cast<uint64_t>(tPosition + 2 * j);
      if (iTable.bytes.U16(tAt) + iSegment.delta >= static_cast<int64_t>(GlyphCount())) {
        ReportResult(Severity::kFatalError,
                     "Encoding %d (format 4), segment maps char 0x%04X to out of range glyph index %d",
                     {iTable.encoding, iSegment.start + j,
                      iTable.bytes.LittleU16(tAt) + iSegment.delta});  // quirk: cmap-unswapped
      }
    }
  } else if (iSegment.last && iSegment.start == 0xFFFF && iSegment.end == 0xFFFF) {
    // quirk: cmap4-last-offset. The excess goes with the arguments, though the text has no place for it.
    ReportResult(Severity::kMinorError,
                 "Encoding %d (format 4), idRangeOffset[ %d ] == 0x%08lX an unexpeced value for the last segment",
                 {iTable.encoding, iSegment.index, iSegment.offset, tExcess});
  } else {
    ReportResult(Severity::kFatalError,
                 "Encoding %d (format 4), idRangeOffset[ %d ] == 0x%08lX is too large by %d bytes",
                 {iTable.encoding, iSegment.index, iSegment.offset, tExcess});
  }
}
