#pragma once

#include <cstdint>
#include <vector>

#include "Platform/ByteView.h"
#include "TableAccess/AncillaryClasses/FTEncodingRange.h"

/// Reads the mapping of a 'cmap' subtable (formats 0 to 14 of the OpenType specification, "cmap — Character to Glyph
/// Index Mapping Table") as ranges in table order, which may overlap. iSubtable begins at the subtable and may reach
/// beyond it, as its glyph arrays may. There are never more ranges than the bytes have records, and array ranges end
/// with the bytes.
///
/// Two rules differ from the published format 4, so that what a segment really says shows: its glyphs are not taken
/// modulo 65536, and idDelta is not added to the words of a glyph array. Format 14 maps nothing by itself.
///
/// Throws FTException for an unknown format, a format 4 whose last segment does not end at 0xFFFF, and a format 6 that
/// runs beyond the character 0xFFFF.
std::vector<FTEncodingRange> FTReadEncodingRanges(Tova::ByteView iSubtable, uint32_t iFormat);
