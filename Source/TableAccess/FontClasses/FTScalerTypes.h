#pragma once

#include <cstdint>

#include "TableAccess/TableClasses/FTFontTable.h"

/// The first four bytes of a font file, big-endian, by which its kind is known.
inline constexpr uint32_t kFTScalerTrueType = 0x00010000;
inline constexpr uint32_t kFTScalerTrue = FTTag("true");
inline constexpr uint32_t kFTScalerOpenTypePostScript = FTTag("OTTO");
inline constexpr uint32_t kFTScalerCollection = FTTag("ttcf");
inline constexpr uint32_t kFTScalerType1InSfnt = FTTag("typ1");
inline constexpr uint32_t kFTScalerKeyboardBitmap = 0xA56B6264;  // a byte of 0xA5 and "kbd"
inline constexpr uint32_t kFTScalerListBitmap = 0xA56C7374;      // a byte of 0xA5 and "lst"

/// Whether the bytes start one sfnt font.
constexpr bool FTIsSfntScaler(uint32_t iScaler) {
  return iScaler == kFTScalerTrueType || iScaler == kFTScalerTrue || iScaler == kFTScalerOpenTypePostScript ||
         iScaler == kFTScalerKeyboardBitmap || iScaler == kFTScalerListBitmap || iScaler == kFTScalerType1InSfnt;
}

/// Whether the bytes start a Type 1 font in segmented binary form: the header of its first segment, 0x80 0x01.
constexpr bool FTIsSegmentedType1(uint32_t iScaler) { return iScaler >> 16 == 0x8001; }

constexpr bool FTIsKnownScaler(uint32_t iScaler) {
  return FTIsSfntScaler(iScaler) || iScaler == kFTScalerCollection || FTIsSegmentedType1(iScaler);
}
