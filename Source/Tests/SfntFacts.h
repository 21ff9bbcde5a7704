#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "TableAccess/AncillaryClasses/FTOS2Fields.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TableAccess/Glyphs/FTGlyphInk.h"
#include "TableAccess/TableClasses/FTFontTable_head.h"

class FTFontTable_hmtx;

/// What several tests ask of an sfnt font, and how they show its texts. A table of length 0 counts as absent.
namespace SfntFacts {

/// The 'head' table, else the 'bhed' table; null without both.
const FTFontTable_head* Header(const FTFont_sfnt& iFont);

/// The OS/2 metrics: those of the table tagged 'OS_2', else of the one tagged 'OS/2'; none without both.
std::optional<FTOS2Fields> OS2Fields(const FTFont_sfnt& iFont);

/// The 'hmtx' table, null without one; for whoever asks for many advances.
const FTFontTable_hmtx* Metrics(const FTFont_sfnt& iFont);
/// The horizontal advance of a glyph; none without an 'hmtx' table or for a glyph that the font does not have.
std::optional<uint16_t> Advance(const FTFont_sfnt& iFont, uint32_t iGlyph);

/// Tells the blank glyphs of a font with TrueType outlines and a 'head' table; none for another. Looks into the font's
/// bytes.
std::optional<FTGlyphInk> GlyphInk(const FTFont_sfnt& iFont);

/// The characters of a UTF-8 text.
std::u32string Characters(std::string_view iText);

/// Whether the character is a control character: U+0000 to U+001F, U+007F to U+009F.
constexpr bool IsControl(uint32_t iCharacter) {
  return iCharacter < 0x20 || (iCharacter >= 0x7F && iCharacter <= 0x9F);
}

/// A text of the font as messages show it: no more than 63 characters, and U+FFFD in the place of control characters.
Tova::String Shown(std::string_view iText);

}  // namespace SfntFacts
