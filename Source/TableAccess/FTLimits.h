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

/// What the fonts of one file may decode, compare and check in all, in items. A byte takes part in a handful of checks
/// for each font that holds its table, and dozens of fonts of a collection share theirs; a hostile file makes thousands
/// of fonts share a table that is costly to begin with. The first number is the room for small files, the second that
/// for each byte.
inline constexpr uint64_t kFTWorkAllowed = uint64_t{1} << 26;
inline constexpr uint64_t kFTWorkAllowedPerByte = 128;

/// Pairs of character and glyph in a copy of an encoding's mapping: the code points of Unicode and one plane more. A
/// 'cmap' of a megabyte can claim hundreds of billions.
inline constexpr uint64_t kFTMaxEncodingPairs = 0x110000 + 0x10000;

/// Unicode encodings of a 'cmap' table that are read. Honest fonts have up to five; all of Unicode takes two and a half
/// megabytes in each.
inline constexpr uint64_t kFTMaxUnicodeEncodings = 8;

/// Components looked at to tell whether one compound glyph is blank, and how deep they may lie in one another. Past
/// these the glyph counts as having ink.
inline constexpr uint32_t kFTMaxBlankComponents = 4096;
inline constexpr uint32_t kFTMaxBlankDepth = 8;

/// What the glyphs of one 'glyf' table may decode in all, in items: an item is an end point, an instruction byte, a
/// point or a component. Where records do not overlap there is less than two a byte, since a record must be as long as
/// it has points and instruction bytes; where they do, a table of a megabyte could decode billions. The first number is
/// the room for small tables, the second that for each byte of the table.
inline constexpr uint64_t kFTGlyphItemsAllowed = uint64_t{1} << 24;
inline constexpr uint64_t kFTGlyphItemsAllowedPerByte = 4;

// The testers.

/// Messages of one run of a test; the findings after them count in its result only. Large fonts that work well give a
/// message for each component of each compound glyph, a hostile one could give billions. They take some 200 megabytes.
inline constexpr int64_t kFTMaxMessagesOfTest = 1 << 19;

/// Messages of a whole report; once there are so many, the tests that are still to run give results only. A collection
/// can hold thousands of fonts over the same tables.
inline constexpr int64_t kFTMaxMessagesOfReport = 1 << 20;

/// Device widths that are compared with scaled advances, unless the table is larger: records that do not overlap have
/// no more widths than it has bytes, those that do could ask for billions.
inline constexpr uint64_t kFTMaxDeviceWidthsCompared = uint64_t{256} * 65536;

/// Groups, array entries, characters and mappings that the structure test of 'cmap' looks at in all subtables: seven
/// times as many as there are characters. Records and subtables can share and overlap their bytes, so that a megabyte
/// asks for billions; past these, only headers and sizes go on being checked, and the table counts as invalid.
inline constexpr uint64_t kFTMaxCmapChecks = 1 << 23;
