#pragma once

#include <cstdint>

/// What the glyphs of one 'glyf' table may decode in all, in items: an item is an end point, an instruction byte, a
/// point or a component. Where records do not overlap there is less than two a byte, since a record must be as long as
/// it has points and instruction bytes; where they do, a table of a megabyte could decode billions. The first number is
/// the room for small tables, the second that for each byte of the table.
inline constexpr uint64_t kFTGlyphItemsAllowed = uint64_t{1} << 24;
inline constexpr uint64_t kFTGlyphItemsAllowedPerByte = 4;
