#pragma once

#include <cstdint>

#include "Platform/ByteView.h"

// Type, name, name in the public documents, offset in bytes, first version that has the field. Metrics are in font
// units, optical sizes in twentieths of a point.
#define FT_OS2_FIELDS(FIELD)                                               \
  FIELD(uint16_t, Version, "version", 0, 0)                                \
  FIELD(int16_t, AvgCharWidth, "xAvgCharWidth", 2, 0)                      \
  FIELD(uint16_t, WeightClass, "usWeightClass", 4, 0)                      \
  FIELD(uint16_t, WidthClass, "usWidthClass", 6, 0)                        \
  FIELD(uint16_t, Type, "fsType", 8, 0)                                    \
  FIELD(int16_t, SubscriptXSize, "ySubscriptXSize", 10, 0)                 \
  FIELD(int16_t, SubscriptYSize, "ySubscriptYSize", 12, 0)                 \
  FIELD(int16_t, SubscriptXOffset, "ySubscriptXOffset", 14, 0)             \
  FIELD(int16_t, SubscriptYOffset, "ySubscriptYOffset", 16, 0)             \
  FIELD(int16_t, SuperscriptXSize, "ySuperscriptXSize", 18, 0)             \
  FIELD(int16_t, SuperscriptYSize, "ySuperscriptYSize", 20, 0)             \
  FIELD(int16_t, SuperscriptXOffset, "ySuperscriptXOffset", 22, 0)         \
  FIELD(int16_t, SuperscriptYOffset, "ySuperscriptYOffset", 24, 0)         \
  FIELD(int16_t, StrikeoutSize, "yStrikeoutSize", 26, 0)                   \
  FIELD(int16_t, StrikeoutPosition, "yStrikeoutPosition", 28, 0)           \
  FIELD(uint16_t, FamilyClass, "sFamilyClass", 30, 0)                      \
  FIELD(FTPanose, Panose, "panose", 32, 0)                                 \
  FIELD(uint32_t, UnicodeRange1, "ulUnicodeRange1", 42, 0)                 \
  FIELD(uint32_t, UnicodeRange2, "ulUnicodeRange2", 46, 0)                 \
  FIELD(uint32_t, UnicodeRange3, "ulUnicodeRange3", 50, 0)                 \
  FIELD(uint32_t, UnicodeRange4, "ulUnicodeRange4", 54, 0)                 \
  FIELD(uint32_t, VendID, "achVendID", 58, 0)                              \
  FIELD(uint16_t, Selection, "fsSelection", 62, 0)                         \
  FIELD(uint16_t, FirstCharIndex, "usFirstCharIndex", 64, 0)               \
  FIELD(uint16_t, LastCharIndex, "usLastCharIndex", 66, 0)                 \
  FIELD(int16_t, TypoAscender, "sTypoAscender", 68, 0)                     \
  FIELD(int16_t, TypoDescender, "sTypoDescender", 70, 0)                   \
  FIELD(int16_t, TypoLineGap, "sTypoLineGap", 72, 0)                       \
  FIELD(uint16_t, WinAscent, "usWinAscent", 74, 0)                         \
  FIELD(uint16_t, WinDescent, "usWinDescent", 76, 0)                       \
  FIELD(uint32_t, CodePageRange1, "ulCodePageRange1", 78, 1)               \
  FIELD(uint32_t, CodePageRange2, "ulCodePageRange2", 82, 1)               \
  FIELD(int16_t, XHeight, "sxHeight", 86, 2)                               \
  FIELD(int16_t, CapHeight, "sCapHeight", 88, 2)                           \
  FIELD(uint16_t, DefaultChar, "usDefaultChar", 90, 2)                     \
  FIELD(uint16_t, BreakChar, "usBreakChar", 92, 2)                         \
  FIELD(uint16_t, MaxContext, "usMaxContext", 94, 2)                       \
  FIELD(uint16_t, LowerOpticalPointSize, "usLowerOpticalPointSize", 96, 5) \
  FIELD(uint16_t, UpperOpticalPointSize, "usUpperOpticalPointSize", 98, 5)

/// The ten classification numbers of a typeface; the first is the kind of family, which says what the others mean.
struct FTPanose {
  uint8_t digits[10] = {};
};

/// The OS/2 metrics, read from the bytes of a table whatever its tag and class. Bytes: as in "OS/2 — OS/2 and Windows
/// Metrics Table" of the OpenType specification, versions 0 to 5; a higher version counts as 5. Fields that the bytes
/// or the version lack read as 0. Borrows the bytes.
class FTOS2Fields {
 public:
  static constexpr uint16_t kLastVersion = 5;

  struct Field {
    const char* name;  ///< in the public documents
    uint8_t offset;
    uint8_t size;
    uint8_t version;  ///< the first with the field
  };

#define FT_OS2_FIELD(type, name, publicName, offset, version) \
  static constexpr Field k##name = {publicName, offset, sizeof(type), version};
  FT_OS2_FIELDS(FT_OS2_FIELD)
#undef FT_OS2_FIELD

  explicit FTOS2Fields(Tova::ByteView iBytes) : _fBytes(iBytes) {}

#define FT_OS2_ACCESSOR(type, name, publicName, offset, version) \
  type name() const { return Has(k##name) ? Read<type>(k##name) : type{}; }
  FT_OS2_FIELDS(FT_OS2_ACCESSOR)
#undef FT_OS2_ACCESSOR

  /// Whether the version and the bytes both reach the field's end.
  bool Has(const Field& iField) const {
    return iField.version <= EffectiveVersion() && _fBytes.Holds(iField.offset, iField.size);
  }
  uint16_t EffectiveVersion() const {
    const uint16_t tVersion = _fBytes.U16(0);
    return tVersion < kLastVersion ? tVersion : kLastVersion;
  }
  uint64_t Size() const { return _fBytes.Size(); }

 private:
  template <class T>
  T Read(const Field& iField) const {
    if constexpr (sizeof(T) == 2) return static_cast<T>(_fBytes.U16(iField.offset));
    if constexpr (sizeof(T) == 4) return static_cast<T>(_fBytes.U32(iField.offset));
    if constexpr (sizeof(T) == 10) {
      T tPanose;
      for (uint64_t i = 0; i < 10; ++i) tPanose.digits[i] = _fBytes.U8(iField.offset + i);
      return tPanose;
    }
  }

  Tova::ByteView _fBytes;
};
