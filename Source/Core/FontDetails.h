#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>
#include <optional>
#include <vector>

class FTFont;

/// Adds what a report with details tells of a font as far as it can be read: its version, number of glyphs, kind of
/// outlines and tables. Returns about how many bytes that takes. Throws no FTException.
uint64_t AddFontDetails(TovaMutableDictionaryRef ioDictionary, const FTFont& iFont);

/// The characters that lead to the glyphs of a font, found when the first of them is asked for.
class GlyphCharacters {
 public:
  /// Forgets those of the font before.
  void Reset() { _fCharacters.reset(); }
  /// The lowest character whose glyph it is; none without one. Each call until the next Reset is about the same font.
  /// Throws FTException where that cannot be read.
  std::optional<uint32_t> CharacterOf(const FTFont& iFont, uint32_t iGlyph);

 private:
  std::optional<std::vector<uint32_t>> _fCharacters;  ///< by glyph; kNone for a glyph without one
};
