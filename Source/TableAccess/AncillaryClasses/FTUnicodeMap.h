#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "Platform/ByteView.h"

class FTWorkBudget;

/// Characters and their glyphs, kept in pages of 256 characters. A character has one glyph, never 0; those that honest
/// fonts map take some three bytes each, all of Unicode two and a half megabytes.
class FTGlyphPages {
 public:
  static constexpr uint32_t kPageSize = 256;

  struct Page {
    uint32_t number = 0;                         ///< the characters divided by 256
    std::array<uint32_t, kPageSize / 32> words;  ///< a bit for each character with a glyph, the lowest one first
    std::array<uint16_t, kPageSize> glyphs;      ///< 0 for a character without one
  };

  /// Gives a character (up to U+10FFFF) the glyph, unless the glyph is 0 or the character has one already.
  void Add(uint32_t iCharacter, uint16_t iGlyph);
  /// Adds what the other has and these lack.
  void AddAll(const FTGlyphPages& iOther);

  /// 0 for a character without a glyph.
  uint16_t GlyphFor(uint32_t iCharacter) const;
  /// How many characters have a glyph.
  uint32_t Count() const { return _fCount; }
  bool Empty() const { return _fCount == 0; }
  /// The pages with characters, ascending. A character's word is that of its bits 5 to 7.
  std::vector<const Page*> Pages() const;
  /// The first character with a glyph from this one on, and the last one up to it; none without one.
  std::optional<uint32_t> FirstFrom(uint32_t iCharacter) const;
  std::optional<uint32_t> LastUpTo(uint32_t iCharacter) const;
  /// The page of this number, null when it has no characters.
  const Page* FindPage(uint32_t iNumber) const;

  /// Calls the action with every character and its glyph, ascending, until it answers false.
  template <class Action>
  void ForEach(Action iAction) const {
    for (const Page* tPage : Pages()) {
      for (uint32_t i = 0; i < kPageSize; ++i) {
        if (tPage->glyphs[i] != 0 && !iAction(tPage->number * kPageSize + i, tPage->glyphs[i])) return;
      }
    }
  }

 private:
  Page& MakePage(uint32_t iNumber);

  std::vector<Page> _fPages;       // in the order of their first characters' coming
  std::vector<uint16_t> _fPlaces;  // by page number: 1 + the place in _fPages, 0 for none
  uint32_t _fCount = 0;
};

/// The Unicode characters of a font and their glyphs, from all the encodings of its 'cmap' table that give them: those
/// of platform 0, except script 5, and of platform 3 with script 1 or 10. See "cmap — Character to Glyph Index Mapping
/// Table" of the OpenType specification.
///
/// Formats 4, 6, 10, 12 and 13 are read, each from its own bytes to the table's end, with glyphs modulo 65536. Segments
/// and groups that overlap or are out of order add nothing to those before them, so that no claim costs more than one
/// step for each code. Borrows the table's bytes while it is made only.
class FTUnicodeMap {
 public:
  struct Record {
    uint32_t index;  ///< in the table
    uint16_t platform;
    uint16_t script;
    uint32_t offset;
    uint16_t format;
    bool inside;  ///< whether the format word lies in the table

    /// Whether it tells Unicode characters; format 14 tells their variants only.
    bool IsUnicode() const;
    /// Whether it is meant for all of Unicode, not only for the characters up to U+FFFF.
    bool IsFull() const;
    /// Whether it is of a format that is read here.
    bool IsReadable() const;
  };
  /// A record that was read: the first one of its subtable.
  struct Encoding {
    Record record;
    FTGlyphPages glyphs;
    uint64_t reach;  ///< the highest value that formats 10, 12 and 13 mention; 0 in the others
  };

  FTUnicodeMap() = default;
  /// Charges a step for each code that a segment, a group or a glyph array claims.
  FTUnicodeMap(Tova::ByteView iCmap, FTWorkBudget& ioBudget);

  /// All encoding records that lie wholly in the table, in its order.
  const std::vector<Record>& Records() const { return _fRecords; }
  /// Those that were read, in table order: no more than FTLimits::maxUnicodeEncodings.
  const std::vector<Encoding>& Encodings() const { return _fEncodings; }
  /// Every character, with its glyph in the first full encoding that has it, else the first other one.
  const FTGlyphPages& Glyphs() const { return _fGlyphs; }

  uint16_t GlyphFor(uint32_t iCharacter) const { return _fGlyphs.GlyphFor(iCharacter); }
  bool Maps(uint32_t iCharacter) const { return GlyphFor(iCharacter) != 0; }
  bool Empty() const { return _fGlyphs.Empty(); }

 private:
  std::vector<Record> _fRecords;
  std::vector<Encoding> _fEncodings;
  FTGlyphPages _fGlyphs;
};
