#pragma once

#include <cstdint>
#include <utility>

/// Bounds on what font data may make the library do, in work and in memory. Honest fonts stay far below them.
/// docs/limits.md says what each costs and what happens past it.
struct FTLimits {
  // The font model.

  /// Bytes by which the heads and feature entries of the chains of 'mort' and 'morx' may exceed their table: chains
  /// that overlap, four billion of them even, can be claimed by a few bytes.
  uint64_t overlappingChainBytes = uint64_t{1} << 24;

  /// Fonts in a collection. One more than these is refused as unreadable: a file of a few gigabytes can claim a billion
  /// fonts, and each costs memory before its directory is looked at.
  uint32_t maxCollectionFonts = 65535;

  /// Fonts in a suitcase, refused in the same way: a map of a megabyte can list as many, over one resource even.
  uint64_t maxSuitcaseFonts = 65536;

  /// Bytes by which the directories of a collection's fonts may exceed its file: fonts may share a directory, as far as
  /// that stays small.
  uint64_t sharedDirectoryBytes = 65536;

  /// Steps of FTWorkBudget that the fonts of one file may take: the room for small files, that for each byte, and the
  /// most for any file. Honest files, collections of dozens of fonts too, take less than one a byte; a hostile one
  /// makes thousands of fonts share a table that is costly to begin with. The most is a second of work or so.
  uint64_t workAllowed = uint64_t{1} << 24;
  uint64_t workAllowedPerByte = 16;
  uint64_t mostWorkAllowed = uint64_t{1} << 27;

  /// Sets of glyphs that a file's fonts keep for one another; each takes up to two megabytes.
  uint64_t keptGlyphSets = 4;

  /// Pairs of character and glyph in a copy of an encoding's mapping: the code points of Unicode and one plane more. A
  /// 'cmap' of a megabyte can claim hundreds of billions.
  uint64_t maxEncodingPairs = 0x110000 + 0x10000;

  /// Unicode encodings of a 'cmap' table that are read. Honest fonts have up to five; all of Unicode takes two and a
  /// half megabytes in each.
  uint64_t maxUnicodeEncodings = 8;

  /// Components looked at to tell whether one compound glyph is blank, and how deep they may lie in one another. Past
  /// these the glyph counts as having ink.
  uint32_t maxBlankComponents = 4096;
  uint32_t maxBlankDepth = 8;

  // Reports, in bytes of the tree that callers get.

  /// A report whose caller sets no limit on messages: the room for small files, that for each byte of the file, and the
  /// most for any. The report of an honest font that takes the most for its size, a collection of five megabytes with
  /// 252,731 messages, takes a third of it.
  uint64_t minReportBytes = uint64_t{1} << 25;
  uint64_t reportBytesPerByte = 64;
  uint64_t maxReportBytes = uint64_t{1} << 29;

  /// A report whose caller does: no more than so much for each message that a test may keep, where that is less, but
  /// the room for small files at least.
  uint64_t reportBytesPerMessageAllowed = 5120;

  /// Names above longName bytes may take longNameBytes in all; further ones are cut to that length. Thousands of fonts
  /// of a collection may have the same name of 64 kilobytes, which takes three times that in UTF-8.
  uint64_t longName = 1024;
  uint64_t longNameBytes = uint64_t{1} << 22;

  /// Tables of a font that a report lists. Fonts have some sixty at most; a directory can claim 65,535, and thousands
  /// of fonts can share one.
  uint64_t maxTablesListed = 256;

  // The testers.

  /// Steps that the test of one layout table may make: values, states, entries, actions and pairs looked at. Tables
  /// whose parts do not overlap need a step or two a byte; thousands of lookups over the same bytes could ask for
  /// billions. The first number is the room for small tables, the second that for each byte of the table.
  uint64_t layoutStepsAllowed = uint64_t{1} << 20;
  uint64_t layoutStepsAllowedPerByte = 16;

  /// Groups, array entries, characters and mappings that the structure test of 'cmap' looks at in all subtables: seven
  /// times as many as there are characters. Records and subtables can share and overlap their bytes, so that a megabyte
  /// asks for billions; past these, only headers and sizes go on being checked, and the table counts as invalid.
  uint64_t maxCmapChecks = 1 << 23;

  /// Bytes of text that the tests of the 'name' table decode: those of the records up to here. Records may share a long
  /// text.
  uint64_t nameTextBytes = uint64_t{1} << 22;

  /// Index elements, images and components that the test of a pair of bitmap tables looks at, and so many more for each
  /// byte of the two: far above what distinct data need.
  uint64_t bitmapStepsAllowed = 65536;
  uint64_t bitmapStepsAllowedPerByte = 4;

  /// The bounds in force.
  static const FTLimits& Get() { return InForce(); }
  class Injection;

 private:
  static FTLimits& InForce() {
    static FTLimits gInForce;
    return gInForce;
  }
};

/// Puts other bounds in force while it lives, and while nothing else is going on: for tests of what happens at them.
class FTLimits::Injection {
 public:
  explicit Injection(const FTLimits& iLimits) : _fBefore(std::exchange(InForce(), iLimits)) {}
  Injection(const Injection&) = delete;
  Injection& operator=(const Injection&) = delete;
  ~Injection() { InForce() = _fBefore; }

 private:
  FTLimits _fBefore;
};

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
