#pragma once

#include <cstdint>

/// What the glyphs of one 'glyf' table may decode in all, in items: an item is an end point, an instruction byte, a
/// point or a component. Records of an honest table do not overlap, and come to about one item a byte; long runs of
/// repeated flags bring more, which the first number leaves room for. Records that overlap could make a table of a
/// megabyte decode billions.
inline constexpr uint64_t kFTGlyphItemsAllowed = 16 << 20;
inline constexpr uint64_t kFTGlyphItemsAllowedPerByte = 8;
