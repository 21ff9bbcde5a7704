#pragma once

#include <cstdint>

#include "Platform/ByteView.h"

/// Finds glyphs in the lookup tables of the state-machine layout tables by a binary search that trusts no more of the
/// header than the size and the number of the units, and no offset. Every iTable runs from the lookup's format word to
/// the end of the table that it stands in.
///
/// Bytes: format u16; then in format 0 a value (u16) for each glyph of the font; in formats 2, 4 and 6 a search header
/// (unit size, unit count, search range, entry selector, range shift; all u16) and the units: last glyph, first glyph
/// and value (2), or offset from the lookup's start to a value for each glyph (4), glyph and value (6); in format 8
/// first glyph, glyph count, values; in format 10 value size (1, 2, 4 or 8), first glyph, glyph count, values of that
/// size. See "Lookup tables" in the TrueType reference on font tables.
namespace FTLookupSearch {

/// Where there is none.
inline constexpr int64_t kNone = -1;

/// A lookup's first words, as they are stored.
struct Header {
  explicit Header(Tova::ByteView iTable)
      : format(iTable.U16(0)),
        unitSize(iTable.U16(2)),
        unitCount(iTable.U16(4)),
        searchRange(iTable.U16(6)),
        entrySelector(iTable.U16(8)),
        rangeShift(iTable.U16(10)) {}
  uint16_t format;
  uint16_t unitSize;
  uint16_t unitCount;
  uint16_t searchRange;
  uint16_t entrySelector;
  uint16_t rangeShift;
};

/// The words for searching by halving that belong to units of a size and number (at least one), modulo 65536. Tables
/// outside lookups have them too.
struct Words {
  Words(uint32_t iUnitSize, uint32_t iUnitCount);
  uint16_t searchRange;
  uint16_t entrySelector;
  uint16_t rangeShift;
};

/// Bytes before the units of formats 2, 4 and 6.
inline constexpr uint64_t kUnits = 12;

/// The position of the unit of a format 2 or 4 lookup that holds the glyph; kNone for glyph 0xFFFF.
int64_t FindSegment(Tova::ByteView iTable, uint32_t iGlyph);
/// The position of the unit of a format 6 lookup with the glyph; kNone for glyph 0xFFFF.
int64_t FindSingle(Tova::ByteView iTable, uint32_t iGlyph);
/// The position of the glyph's value in a lookup of any format.
int64_t FindValue(Tova::ByteView iTable, uint32_t iGlyph);
/// The bytes from the lookup's start to the end of its last unit (an end marker included), value or array; 0 for an
/// unknown format. iGlyphCount is the font's, for format 0.
uint64_t CalculateSize(Tova::ByteView iTable, uint32_t iGlyphCount);

}  // namespace FTLookupSearch
