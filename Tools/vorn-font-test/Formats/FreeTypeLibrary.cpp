#include "Formats/FreeTypeLibrary.h"

#include <dlfcn.h>

namespace tool {
namespace {

template <class Function>
bool Find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  return function != nullptr;
}

FreeType Load() {
  FreeType loaded;
  void* const library = dlopen(VORN_FREETYPE, RTLD_NOW | RTLD_LOCAL);
  const bool complete =
      library && Find(library, "FT_Init_FreeType", loaded.InitFreeType) &&
      Find(library, "FT_Done_FreeType", loaded.DoneFreeType) && Find(library, "FT_New_Face", loaded.NewFace) &&
      Find(library, "FT_Done_Face", loaded.DoneFace) && Find(library, "FT_Load_Glyph", loaded.LoadGlyph) &&
      Find(library, "FT_Get_SubGlyph_Info", loaded.GetSubGlyphInfo) &&
      Find(library, "FT_Load_Sfnt_Table", loaded.LoadSfntTable) &&
      Find(library, "FT_Get_Sfnt_Table", loaded.GetSfntTable) &&
      Find(library, "FT_Get_Postscript_Name", loaded.GetPostscriptName);
  if (!complete) loaded.refusal = "FreeType (" VORN_FREETYPE ") is not installed";
  return loaded;
}

}  // namespace

// The library's error strings are left out of most builds of it, but not of its header.
std::string_view ErrorText(FT_Error error) {
#undef FTERRORS_H_
#define FT_ERROR_START_LIST switch (FT_ERROR_BASE(error)) {
#define FT_ERRORDEF(name, value, text) \
  case value:                          \
    return text;
#define FT_ERROR_END_LIST }
#include <freetype/fterrors.h>
  return "unknown error";
}

const FreeType& GetFreeType() {
  static const FreeType kLibrary = Load();
  return kLibrary;
}

}  // namespace tool
