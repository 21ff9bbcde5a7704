#pragma once

#include <cstdint>

#include "Platform/ByteView.h"

/// Looks a glyph up in a lookup table of the state-machine layout tables: the bytes from its format word on. Formats 0
/// (simple array), 2 (segment single), 4 (segment array), 6 (single table) and 8 (trimmed array) are known. Returns a
/// view that starts at the glyph's value and runs to the end of iTable, or an empty one where there is no value.
///
/// The binary phase of the search of formats 2, 4 and 6 stops three halvings early and a linear one finishes it, so
/// that the answer for a table whose header or order is wrong is always the same.
Tova::ByteView FTLookUp(Tova::ByteView iTable, uint32_t iGlyph);
