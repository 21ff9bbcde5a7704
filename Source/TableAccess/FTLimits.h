#pragma once

#include <cstdint>

// Bounds on what font data may make the library do. Honest fonts stay far below them.

/// Fonts in a collection. One more than these is refused as unreadable: a file of a few gigabytes can claim a billion
/// fonts, and each costs memory before its directory is looked at.
inline constexpr uint32_t kFTMaxCollectionFonts = 65535;

/// Pairs of character and glyph in a copy of an encoding's mapping: the code points of Unicode and one plane more. A
/// 'cmap' of a megabyte can claim hundreds of billions.
inline constexpr uint64_t kFTMaxEncodingPairs = 0x110000 + 0x10000;

/// Groups, array entries, characters and mappings that the structure test of a 'cmap' looks at in all its subtables,
/// seven times what there are characters. Records and subtables can share and overlap their bytes, so that a megabyte
/// claims more checks than a day has time for; a table that needs more is refused as invalid.
inline constexpr uint64_t kFTMaxCmapChecks = 1 << 23;

/// Messages of one run of that test, one for each character that a 16-bit subtable can have. Findings beyond still
/// count in the result, without a message: a megabyte can give millions, and each takes a few hundred bytes.
inline constexpr uint64_t kFTMaxCmapMessages = 1 << 16;
