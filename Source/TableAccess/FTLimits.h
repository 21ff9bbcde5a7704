#pragma once

#include <cstdint>

// Bounds on what font data may make the library do, in work and in memory. Honest fonts stay far below them.

// The font model.

/// Bytes by which the heads and feature entries of the chains of 'mort' and 'morx' may exceed their table: chains that
/// overlap, four billion of them even, can be claimed by a few bytes.
inline constexpr uint64_t kFTOverlappingChainBytes = uint64_t{1} << 24;

/// Fonts in a collection. One more than these is refused as unreadable: a file of a few gigabytes can claim a billion
/// fonts, and each costs memory before its directory is looked at.
inline constexpr uint32_t kFTMaxCollectionFonts = 65535;

/// Bytes by which the directories of a collection's fonts may exceed its file: fonts may share a directory, as far as
/// that stays small.
inline constexpr uint64_t kFTSharedDirectoryBytes = 65536;

/// Steps of FTWorkBudget that the fonts of one file may take: the room for small files, that for each byte, and the
/// most for any file. Honest files, collections of dozens of fonts too, take less than one a byte; a hostile one makes
/// thousands of fonts share a table that is costly to begin with. The most is a second of work or so.
inline constexpr uint64_t kFTWorkAllowed = uint64_t{1} << 24;
inline constexpr uint64_t kFTWorkAllowedPerByte = 16;
inline constexpr uint64_t kFTMostWorkAllowed = uint64_t{1} << 28;

/// Sets of glyphs that a file's fonts keep for one another; each takes up to two megabytes.
inline constexpr uint64_t kFTKeptGlyphSets = 4;

/// Pairs of character and glyph in a copy of an encoding's mapping: the code points of Unicode and one plane more. A
/// 'cmap' of a megabyte can claim hundreds of billions.
inline constexpr uint64_t kFTMaxEncodingPairs = 0x110000 + 0x10000;

// The testers.

/// Messages of one run of a test; the findings after them count in its result only. Large fonts that work well give a
/// message for each component of each compound glyph, a hostile one could give billions. They take some 200 megabytes.
inline constexpr int64_t kFTMaxMessagesOfTest = 1 << 19;

/// Messages of a whole report; once there are so many, the tests that are still to run give results only. A collection
/// can hold thousands of fonts over the same tables.
inline constexpr int64_t kFTMaxMessagesOfReport = 1 << 20;

/// Groups, array entries, characters and mappings that the structure test of 'cmap' looks at in all subtables: seven
/// times as many as there are characters. Records and subtables can share and overlap their bytes, so that a megabyte
/// asks for billions; past these, only headers and sizes go on being checked, and the table counts as invalid.
inline constexpr uint64_t kFTMaxCmapChecks = 1 << 23;
