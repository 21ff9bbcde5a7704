#pragma once

#include <freetype/freetype.h>
#include <freetype/tttables.h>

#include <string>
#include <string_view>

namespace tool {

/// The functions of FreeType that drawing needs. The library is loaded when it is first asked for: few runs draw
/// glyphs, and it brings several more with it, which would cost every start of the program.
struct FreeType {
  decltype(&FT_Init_FreeType) InitFreeType = nullptr;
  decltype(&FT_Done_FreeType) DoneFreeType = nullptr;
  decltype(&FT_New_Face) NewFace = nullptr;
  decltype(&FT_Done_Face) DoneFace = nullptr;
  decltype(&FT_Load_Glyph) LoadGlyph = nullptr;
  decltype(&FT_Get_SubGlyph_Info) GetSubGlyphInfo = nullptr;
  decltype(&FT_Load_Sfnt_Table) LoadSfntTable = nullptr;
  decltype(&FT_Get_Sfnt_Table) GetSfntTable = nullptr;
  decltype(&FT_Get_Postscript_Name) GetPostscriptName = nullptr;
  std::string refusal;  ///< why it could not be loaded; empty when it was
};

/// The library, loaded by the first call and never unloaded.
const FreeType& GetFreeType();

/// FreeType's own words for an error.
std::string_view ErrorText(FT_Error error);

}  // namespace tool
