// How a font file is told from other files: the first four bytes of its data fork, big-endian, the ending of its name,
// or the types of the resources it holds. For C++ programs that look for fonts; header-only.
#pragma once

#include <cstdint>
#include <string_view>

namespace VornFontTest {

inline constexpr uint32_t kScalerTrueType = 0x00010000;
inline constexpr uint32_t kScalerTrue = 0x74727565;                // "true"
inline constexpr uint32_t kScalerOpenTypePostScript = 0x4F54544F;  // "OTTO"
inline constexpr uint32_t kScalerType1InSfnt = 0x74797031;         // "typ1"
inline constexpr uint32_t kScalerKeyboardBitmap = 0xA56B6264;      // a byte of 0xA5 and "kbd"
inline constexpr uint32_t kScalerListBitmap = 0xA56C7374;          // a byte of 0xA5 and "lst"
inline constexpr uint32_t kScalerCollection = 0x74746366;          // "ttcf"

/// Fonts compressed for the web; known, and not tested.
inline constexpr uint32_t kScalerWoff = 0x774F4646;   // "wOFF"
inline constexpr uint32_t kScalerWoff2 = 0x774F4632;  // "wOF2"

/// How many bytes of a file tell its kind.
inline constexpr uint32_t kScalerSize = 4;

/// Whether the bytes start one sfnt font.
constexpr bool IsSfntScaler(uint32_t scaler) {
  return scaler == kScalerTrueType || scaler == kScalerTrue || scaler == kScalerOpenTypePostScript ||
         scaler == kScalerType1InSfnt || scaler == kScalerKeyboardBitmap || scaler == kScalerListBitmap;
}

/// Whether the bytes start a Type 1 font in segmented binary form: the header of its first segment, 0x80 0x01.
constexpr bool IsSegmentedType1(uint32_t scaler) { return scaler >> 16 == 0x8001; }

/// Whether the bytes start a font, or a collection of fonts, that can be told by them.
constexpr bool IsFontScaler(uint32_t scaler) {
  return IsSfntScaler(scaler) || scaler == kScalerCollection || IsSegmentedType1(scaler);
}

/// Whether a file is a spliced font by its name: any bytes do.
constexpr bool IsSplicedFontName(std::string_view path) { return path.ends_with(".sfont"); }

/// Resources that make a file one of fonts: families, sfnt fonts and PostScript outlines. Bitmap fonts alone do not.
inline constexpr uint32_t kPostScriptResource = 0x504F5354;  // "POST"
inline constexpr uint32_t kSfntResource = 0x73666E74;        // "sfnt"
inline constexpr uint32_t kFamilyResource = 0x464F4E44;      // "FOND"
inline constexpr uint32_t kFontResources[] = {kPostScriptResource, kSfntResource, kFamilyResource};

}  // namespace VornFontTest
