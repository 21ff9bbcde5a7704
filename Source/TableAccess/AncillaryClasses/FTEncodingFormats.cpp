#include "TableAccess/AncillaryClasses/FTEncodingFormats.h"

#include <algorithm>

#include "TableAccess/AncillaryClasses/FTException.h"

namespace {

using Ranges = std::vector<FTEncodingRange>;
using Rule = FTEncodingRange::Rule;

constexpr char kInvalidTable[] = "The font has an invalid 'cmap' table";

/// Adds characters whose glyphs ascend in 32 bits, without the one that comes to glyph 0.
void AddAscending(Ranges& ioRanges, uint32_t iFirst, uint32_t iLast, uint32_t iGlyph, Rule iRule) {
  const uint64_t tCount = uint64_t{iLast} - iFirst + 1;
  const uint32_t tHole = 0u - iGlyph;
  if (tHole > 0) {
    const uint32_t tLast = tHole < tCount ? iFirst + tHole - 1 : iLast;
    ioRanges.push_back({iFirst, tLast, iGlyph, 0, iRule});
  }
  if (uint64_t{tHole} + 1 < tCount) ioRanges.push_back({iFirst + tHole + 1, iLast, 1, 0, iRule});
}

/// Adds characters whose glyphs stand in an array, as far as the array and the character codes go.
void AddArray(Ranges& ioRanges, Tova::ByteView iBytes, uint32_t iFirst, uint64_t iCount, uint64_t iPosition,
              uint16_t iDelta = 0) {
  const uint64_t tHeld = iPosition < iBytes.Size() ? (iBytes.Size() - iPosition) / 2 : 0;
  const uint64_t tCount = std::min({iCount, tHeld, 0x100000000u - uint64_t{iFirst}});
  if (tCount == 0) return;
  ioRanges.push_back({iFirst, Tova::Wrap32(iFirst + tCount - 1), Tova::Wrap32(iPosition), iDelta, Rule::kArray});
}

// Where fields stand is said as in the 'cmap' chapter of the OpenType specification: "format (0)" for a field of that
// name at byte 0 of the subtable. Formats 0 to 6 begin with format (0), length (2), language (4), words all; the others
// but 14 with format (0) and a zero word, length (4) and language (8), double words.

/// The byte encoding table: glyphIdArray (6), 256 bytes. Every one of the 256 codes is mapped, be it to glyph 0.
Ranges ReadFormat0(Tova::ByteView iBytes) {
  Ranges tRanges;
  for (uint32_t tCode = 0; tCode < 256; ++tCode) {
    tRanges.push_back({tCode, tCode, iBytes.U8(6 + tCode), 0, Rule::kConstant});
  }
  return tRanges;
}

/// Mixed 8- and 16-bit codes: subHeaderKeys (6), 256 words, lead from a high byte to a subheader, 8 times its index;
/// key 0 stands for a single byte, which subheader 0 maps. subHeaders (518): firstCode (0), entryCount (2), idDelta
/// (4), idRangeOffset (6), which counts from its own place.
Ranges ReadFormat2(Tova::ByteView iBytes) {
  Ranges tRanges;
  for (uint32_t tHigh = 0; tHigh < 256; ++tHigh) {
    const uint16_t tKey = iBytes.U16(6 + 2 * tHigh);
    const uint64_t tAt = 518 + 8 * uint64_t{tKey / 8u};
    const uint32_t tFirst = iBytes.U16(tAt);
    const uint32_t tCount = iBytes.U16(tAt + 2);
    const uint16_t tDelta = iBytes.U16(tAt + 4);
    const uint64_t tArray = tAt + 6 + iBytes.U16(tAt + 6);
    if (tKey == 0) {
      if (tHigh >= tFirst && tHigh - tFirst < tCount) {
        AddArray(tRanges, iBytes, tHigh, 1, tArray + 2 * uint64_t{tHigh - tFirst}, tDelta);
      }
    } else if (tCount >= 2) {
      AddArray(tRanges, iBytes, tHigh * 256 + tFirst, tCount, tArray, tDelta);
    }
  }
  return tRanges;
}

/// Segments: segCountX2 (6), searchRange (8), entrySelector (10), rangeShift (12), and for n segments endCode (14), a
/// zero word, startCode (16 + 2n), idDelta (16 + 4n), idRangeOffset (16 + 6n), each of which counts from its own place;
/// after them the glyph arrays.
///
/// quirk: cmap4-plain-sums. Glyphs are plain sums, not sums modulo 65,536, entries of arrays get no delta, and the code
/// 0xFFFF is never mapped.
Ranges ReadFormat4(Tova::ByteView iBytes) {
  const uint64_t tCount = iBytes.U16(6) / 2;
  if (tCount == 0 || iBytes.U16(14 + 2 * (tCount - 1)) != 0xFFFF) {
    FTThrow("tEndCodes[ tCount-1 ] == kUnicodeNotAChar", kInvalidTable);
  }
  Ranges tRanges;
  for (uint64_t i = 0; i < tCount; ++i) {
    const uint32_t tLast = std::min<uint32_t>(iBytes.U16(14 + 2 * i), 0xFFFE);
    const uint32_t tFirst = iBytes.U16(16 + 2 * (tCount + i));
    if (tFirst > tLast) continue;
    const int32_t tDelta = iBytes.S16(16 + 2 * (2 * tCount + i));
    const uint64_t tOffsetAt = 16 + 2 * (3 * tCount + i);
    const uint64_t tOffset = iBytes.U16(tOffsetAt);
    if (tOffset == 0) {
      AddAscending(tRanges, tFirst, tLast, tFirst + static_cast<uint32_t>(tDelta), Rule::kAscending);
    } else {
      AddArray(tRanges, iBytes, tFirst, tLast - tFirst + 1, tOffsetAt + tOffset / 2 * 2);
    }
  }
  return tRanges;
}

/// The trimmed table: firstCode (6), entryCount (8), glyphIdArray (10).
Ranges ReadFormat6(Tova::ByteView iBytes) {
  const uint32_t tFirst = iBytes.U16(6);
  const uint32_t tCount = iBytes.U16(8);
  if (tFirst + tCount > 65536) FTThrow("tTemp >= 65536UL", kInvalidTable);
  Ranges tRanges;
  AddArray(tRanges, iBytes, tFirst, tCount, 10);
  return tRanges;
}

/// The trimmed array: startCharCode (12), numChars (16), glyphs (20).
Ranges ReadFormat10(Tova::ByteView iBytes) {
  Ranges tRanges;
  AddArray(tRanges, iBytes, iBytes.U32(12), iBytes.U32(16), 20);
  return tRanges;
}

/// Formats 8 (numGroups (8204), after is32 (12), 8192 bytes), 12 and 13 (numGroups (12)): groups of startCharCode (0),
/// endCharCode (4) and startGlyphID (8), which their count precedes.
Ranges ReadGroups(Tova::ByteView iBytes, uint64_t iCountAt, Rule iRule) {
  Ranges tRanges;
  for (const Tova::ByteView tGroup : Tova::RecordArray(iBytes, iCountAt + 4, iBytes.U32(iCountAt), 12)) {
    const uint32_t tFirst = tGroup.U32(0);
    const uint32_t tLast = tGroup.U32(4);
    const uint32_t tGlyph = tGroup.U32(8);
    if (tFirst > tLast) continue;
    if (iRule != Rule::kConstant) {
      AddAscending(tRanges, tFirst, tLast, tGlyph, iRule);
    } else if (tGlyph != 0) {
      tRanges.push_back({tFirst, tLast, FTReduceGlyph(tGlyph), 0, iRule});
    }
  }
  return tRanges;
}

}  // namespace

std::vector<FTEncodingRange> FTReadEncodingRanges(Tova::ByteView iSubtable, uint32_t iFormat) {
  switch (iFormat) {
    case 0:
      return ReadFormat0(iSubtable);
    case 2:
      return ReadFormat2(iSubtable);
    case 4:
      return ReadFormat4(iSubtable);
    case 6:
      return ReadFormat6(iSubtable);
    case 8:
      return ReadGroups(iSubtable, 8204, Rule::kAscending);
    case 10:
      return ReadFormat10(iSubtable);
    case 12:
      return ReadGroups(iSubtable, 12, Rule::kReduced);
    case 13:
      return ReadGroups(iSubtable, 12, Rule::kConstant);
    case 14:
      return {};
    default:
      FTThrow("true", kInvalidTable);
  }
}
