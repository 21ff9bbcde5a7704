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

/// Fonts in a suitcase, refused in the same way: a map of a megabyte can list as many, over one resource even.
inline constexpr uint64_t kFTMaxSuitcaseFonts = 65536;

/// Bytes by which the directories of a collection's fonts may exceed its file: fonts may share a directory, as far as
/// that stays small.
inline constexpr uint64_t kFTSharedDirectoryBytes = 65536;

/// Steps of FTWorkBudget that the fonts of one file may take: the room for small files, that for each byte, and the
/// most for any file. Honest files, collections of dozens of fonts too, take less than one a byte; a hostile one makes
/// thousands of fonts share a table that is costly to begin with. The most is a second of work or so.
inline constexpr uint64_t kFTWorkAllowed = uint64_t{1} << 24;
inline constexpr uint64_t kFTWorkAllowedPerByte = 16;
inline constexpr uint64_t kFTMostWorkAllowed = uint64_t{1} << 27;

/// What costs several steps: a test's look at one glyph's offsets, metrics or record; a component of a compound glyph;
/// the comparison of a device width; the look-up of a character; a part of a layout table; the name of a glyph; the
/// fields of a bitmap strike.
inline constexpr uint64_t kFTStepsOfGlyph = 4;
inline constexpr uint64_t kFTStepsOfComponent = 3;
inline constexpr uint64_t kFTStepsOfWidth = 4;
inline constexpr uint64_t kFTStepsOfLookUp = 5;
inline constexpr uint64_t kFTStepsOfPart = 8;
inline constexpr uint64_t kFTStepsOfGlyphName = 12;
inline constexpr uint64_t kFTStepsOfStrike = 64;

/// Sets of glyphs that a file's fonts keep for one another; each takes up to two megabytes.
inline constexpr uint64_t kFTKeptGlyphSets = 4;

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

// Reports, in bytes of the tree that callers get.

/// A report whose caller sets no limit on messages. The largest report of an honest font, a collection of 276,868
/// messages, takes a quarter of it.
inline constexpr uint64_t kFTMaxReportBytes = uint64_t{1} << 29;

/// A report whose caller does: so much for each message that a test may keep, but room for ten thousand fonts at least.
inline constexpr uint64_t kFTReportBytesPerMessageAllowed = 4096;
inline constexpr uint64_t kFTMinReportBytes = uint64_t{1} << 25;

/// Names above kFTLongName bytes may take kFTLongNameBytes in all; further ones are cut to that length. Thousands of
/// fonts of a collection may have the same name of 64 kilobytes, which takes three times that in UTF-8.
inline constexpr uint64_t kFTLongName = 1024;
inline constexpr uint64_t kFTLongNameBytes = uint64_t{1} << 22;

/// Tables of a font that a report lists. Fonts have some sixty at most; a directory can claim 65,535, and thousands of
/// fonts can share one.
inline constexpr uint64_t kFTMaxTablesListed = 256;

// The testers.

/// Steps that the test of one layout table may make: values, states, entries, actions and pairs looked at. Tables whose
/// parts do not overlap need a step or two a byte; thousands of lookups over the same bytes could ask for billions. The
/// first number is the room for small tables, the second that for each byte of the table.
inline constexpr uint64_t kFTLayoutStepsAllowed = uint64_t{1} << 20;
inline constexpr uint64_t kFTLayoutStepsAllowedPerByte = 16;

/// Groups, array entries, characters and mappings that the structure test of 'cmap' looks at in all subtables: seven
/// times as many as there are characters. Records and subtables can share and overlap their bytes, so that a megabyte
/// asks for billions; past these, only headers and sizes go on being checked, and the table counts as invalid.
inline constexpr uint64_t kFTMaxCmapChecks = 1 << 23;
