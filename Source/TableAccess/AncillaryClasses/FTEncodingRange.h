#pragma once

#include <cstdint>

#include "Platform/ByteView.h"

/// Brings a glyph number above 65536 down by multiples of 65536 to 1 to 65536, which keeps 65536 itself.
constexpr uint32_t FTReduceGlyph(uint32_t iGlyph) { return iGlyph == 0 ? 0 : (iGlyph - 1) % 65536 + 1; }

/// Consecutive characters of an encoding and the rule by which their glyphs follow. Glyphs are never copied: an array
/// stays in the bytes of the subtable. Only an array can hold characters without a glyph, where its word is 0.
struct FTEncodingRange {
  enum class Rule : uint8_t {
    kAscending,  ///< glyph for the first character, one more for each further one
    kReduced,    ///< the same, each brought down by FTReduceGlyph
    kConstant,   ///< glyph for every character
    kArray,      ///< a 16-bit word a character, from byte glyph of the subtable on
  };

  uint32_t first;
  uint32_t last;  ///< inclusive
  uint32_t glyph;
  uint16_t delta;  ///< added to the words of an array, modulo 65536
  Rule rule;

  uint64_t Size() const { return uint64_t{last} - first + 1; }

  /// The glyph of a character of the range; 0 for a character without one.
  uint32_t GlyphOf(uint32_t iCharacter, Tova::ByteView iSubtable) const {
    const uint32_t tIndex = iCharacter - first;
    if (rule == Rule::kConstant) return glyph;
    if (rule == Rule::kAscending) return glyph + tIndex;
    if (rule == Rule::kReduced) return FTReduceGlyph(glyph + tIndex);
    const uint16_t tWord = iSubtable.U16(glyph + 2 * uint64_t{tIndex});
    return tWord == 0 ? 0u : Tova::Wrap16(uint64_t{tWord} + delta);
  }

  /// The part of the range from one of its characters to another.
  FTEncodingRange Part(uint32_t iFirst, uint32_t iLast) const {
    FTEncodingRange tPart = *this;
    tPart.first = iFirst;
    tPart.last = iLast;
    if (rule == Rule::kArray) tPart.glyph += 2 * (iFirst - first);
    if (rule == Rule::kAscending || rule == Rule::kReduced) tPart.glyph += iFirst - first;
    return tPart;
  }
};
