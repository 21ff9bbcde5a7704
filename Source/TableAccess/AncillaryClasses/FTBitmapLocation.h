#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "Platform/ByteView.h"

/// Line metrics of a strike, in pixels. Bytes: 12, the last two without meaning.
struct FTBitmapLineMetrics {
  int8_t ascender = 0;
  int8_t descender = 0;
  uint8_t widthMax = 0;
  int8_t caretSlopeNumerator = 0;
  int8_t caretSlopeDenominator = 0;
  int8_t caretOffset = 0;
  int8_t minOriginSB = 0;
  int8_t minAdvanceSB = 0;
  int8_t maxBeforeBL = 0;
  int8_t minAfterBL = 0;
  std::array<uint8_t, 2> padding = {};
};

/// The bitmaps of one size. Bytes: 48.
struct FTBitmapStrike {
  enum Flags : uint8_t { kHorizontal = 0x01, kVertical = 0x02 };

  uint32_t indexSubTableArrayOffset = 0;  ///< bytes from the start of the location table
  uint32_t indexTablesSize = 0;           ///< bytes
  uint32_t numberOfIndexSubTables = 0;
  uint32_t colorRef = 0;
  FTBitmapLineMetrics hori;
  FTBitmapLineMetrics vert;
  uint16_t startGlyphIndex = 0;
  uint16_t endGlyphIndex = 0;
  uint8_t ppemX = 0;
  uint8_t ppemY = 0;
  uint8_t bitDepth = 0;
  uint8_t flags = 0;
};

/// Where an image lies.
struct FTBitmapImage {
  uint32_t glyph = 0;
  uint16_t format = 0;
  uint64_t start = 0;  ///< bytes from the start of the data table
  int64_t length = 0;  ///< bytes; 0 for no image, below 0 where the offsets are out of order
};

/// An index subtable: where the images of a range of glyphs lie.
///
/// Bytes: index format u16, image format u16, offset of the images in the data table u32, then by index format (c is
/// the number of glyphs in the range):
///   1  offset u32[c + 1]        2  image size u32, big metrics        3  offset u16[c + 1]
///   4  k u32, (glyph u16, offset u16)[k + 1]        5  image size u32, big metrics, k u32, glyph u16[k]
struct FTBitmapSubtable {
  uint16_t firstGlyph = 0;
  uint16_t lastGlyph = 0;
  uint64_t position = 0;  ///< bytes from the start of the location table
  Tova::ByteView bytes;   ///< from there to the table's end

  static constexpr uint64_t kHeaderSize = 8;

  uint16_t IndexFormat() const { return bytes.U16(0); }
  uint16_t ImageFormat() const { return bytes.U16(2); }
  uint32_t ImageDataOffset() const { return bytes.U32(4); }
  bool HoldsGlyph(uint32_t iGlyph) const { return firstGlyph <= iGlyph && iGlyph <= lastGlyph; }
  /// Whether the glyphs are listed: formats 4 and 5.
  bool HasGlyphList() const { return IndexFormat() == 4 || IndexFormat() == 5; }
  /// Whether all images take as many bytes: formats 2 and 5.
  bool HasImageSize() const { return IndexFormat() == 2 || IndexFormat() == 5; }
  /// Of the formats with one size for all images.
  uint32_t ImageSize() const { return bytes.U32(8); }
  uint8_t Height() const { return bytes.U8(12); }
  uint8_t Width() const { return bytes.U8(13); }
  /// How many glyphs have an entry, whether or not the bytes hold them; 0 for an unknown format or an empty range.
  uint64_t EntryCount() const;
  /// The bytes that the subtable takes; its header's for an unknown format.
  uint64_t Size() const;
  /// The image of an entry below EntryCount(), of a known index format.
  FTBitmapImage Image(uint64_t iEntry) const;
};

/// The strikes of a pair of embedded-bitmap tables and where their images lie: 'EBLC' and 'EBDT', or 'bloc' and 'bdat',
/// which are laid out alike. See "EBLC — Embedded Bitmap Location Table" of the OpenType specification.
///
/// Bytes of the location table: version u32, strike count u32, strikes. Borrows the bytes.
class FTBitmapLocation {
 public:
  static constexpr uint64_t kHeaderSize = 8;
  static constexpr uint64_t kStrikeSize = 48;
  static constexpr uint64_t kElementSize = 8;
  static constexpr uint32_t kVersion = 0x00020000;

  FTBitmapLocation(Tova::ByteView iLocation, Tova::ByteView iData) : _fLocation(iLocation), _fData(iData) {}

  Tova::ByteView Location() const { return _fLocation; }
  Tova::ByteView Data() const { return _fData; }

  uint32_t ClaimedStrikes() const { return _fLocation.U32(4); }
  /// How many strikes lie wholly in the table.
  uint32_t StrikeCount() const;
  /// This and GetSubtable throw "An attempt was made to access an array element outside of the array bounds".
  FTBitmapStrike GetStrike(uint32_t iIndex) const;
  /// How many elements of a strike's index array lie wholly in the table.
  uint32_t CountSubtables(const FTBitmapStrike& iStrike) const;
  FTBitmapSubtable GetSubtable(const FTBitmapStrike& iStrike, uint32_t iIndex) const;
  /// The glyph's image in the first subtable whose range holds it; none where its list lacks the glyph, or where the
  /// length is not above 0. Looks at the subtables one by one.
  std::optional<FTBitmapImage> FindImage(const FTBitmapStrike& iStrike, uint32_t iGlyph) const;

 private:
  Tova::ByteView _fLocation;
  Tova::ByteView _fData;
};
