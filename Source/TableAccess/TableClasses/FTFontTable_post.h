#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// The PostScript information and the names of the glyphs. Bytes: 32 of fixed fields, then what the format asks for:
/// 1.0 and 3.0 nothing; 2.0 a glyph count u16, a name index u16 for each glyph and the stored names (a length byte and
/// so many bytes each); 2.5 a glyph count u16 and an offset i8 for each glyph, from its own index to that of its name;
/// 4.0 a character code u16 for each glyph. As in "post — PostScript Table" of the OpenType specification, formats 2.5
/// and 4.0 as in the TrueType reference.
///
/// Needs the font's glyph count for format 4.0. Stored names are found once, on first use.
class FTFontTable_post : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_post, FTFontTable, "post")

  enum Format : uint32_t {
    kStandardNames = 0x00010000,
    kStoredNames = 0x00020000,
    kNameOffsets = 0x00025000,
    kNoNames = 0x00030000,
    kCharacterCodes = 0x00040000,
  };
  /// The size of the fixed fields, in bytes.
  static constexpr uint64_t kHeaderSize = 32;
  static constexpr uint32_t kStandardNameCount = 258;

  void ReadDataInternal() const override;

  uint32_t GetFormat() const { return Bytes().U32(0); }
  /// 16.16 degrees, counter-clockwise from the vertical, so that a font leaning to the right has a negative one.
  int32_t GetItalicAngle() const { return Bytes().S32(4); }
  /// In font units, as the thickness.
  int16_t GetUnderlinePosition() const { return Bytes().S16(8); }
  int16_t GetUnderlineThickness() const { return Bytes().S16(10); }
  virtual bool IsFixedPitch() const { return Bytes().U32(12) != 0; }
  /// Memory that the font takes as a Type 42 or a Type 1 font, in bytes.
  uint32_t GetMinMemType42() const { return Bytes().U32(16); }
  uint32_t GetMaxMemType42() const { return Bytes().U32(20); }
  uint32_t GetMinMemType1() const { return Bytes().U32(24); }
  uint32_t GetMaxMemType1() const { return Bytes().U32(28); }

  /// How many glyphs have an entry that lies wholly in the table; the 258 standard ones in format 1.0.
  uint32_t GetGlyphCount() const;
  /// How many whole names follow the name indices of format 2.0; the first that passes the table's end ends them.
  uint32_t CountStoredNames() const;
  /// The bytes of a stored name. Throws "An attempt was made to access an array element outside of the array bounds".
  Tova::ByteView GetStoredName(uint32_t iIndex) const;
  /// 0 to 257 a standard name, 258 and above a stored one; any number in format 2.5, -1 where a format has no indices.
  /// This and GetGlyphName throw "A reference was made to a non-existent glyph" at GetGlyphCount() and above.
  int32_t GetNameIndex(uint32_t iGlyphID) const;
  /// The name in UTF-8, made of bytes that are taken as Latin-1; none when the format has no names or the index no
  /// name.
  std::optional<std::string> GetGlyphName(uint32_t iGlyphID) const;

  /// The glyph count that formats 2.0 and 2.5 state, whether or not there are so many entries.
  uint16_t StatedGlyphCount() const { return Bytes().U16(kHeaderSize); }
  /// Where the whole stored names end, in bytes from the start of the table.
  uint64_t StoredNamesEnd() const;

  /// A standard name by its index, which is below kStandardNameCount.
  static const char* StandardName(uint32_t iIndex);

 private:
  struct StoredName {
    uint32_t offset;
    uint8_t length;
  };
  void RequireGlyph(uint32_t iGlyphID) const;

  mutable std::vector<StoredName> _fStoredNames;
  mutable uint64_t _fStoredNamesEnd = 0;
};
