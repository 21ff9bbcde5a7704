#pragma once

#include <cstdint>

// Bounds on what font data may make the library do. Honest fonts stay far below them.

/// Fonts in a collection. One more than these is refused as unreadable: a file of a few gigabytes can claim a billion
/// fonts, and each costs memory before its directory is looked at.
inline constexpr uint32_t kFTMaxCollectionFonts = 65535;

/// Pairs of character and glyph in a copy of an encoding's mapping: the code points of Unicode and one plane more. A
/// 'cmap' of a megabyte can claim hundreds of billions.
inline constexpr uint64_t kFTMaxEncodingPairs = 0x110000 + 0x10000;
