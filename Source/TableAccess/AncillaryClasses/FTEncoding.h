#pragma once

#include <unicode/uversion.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "Platform/ByteView.h"
#include "TableAccess/AncillaryClasses/FTEncodingMapping.h"

U_NAMESPACE_BEGIN
class UnicodeSet;
U_NAMESPACE_END

/// One subtable of the 'cmap' table: an encoding that gives characters their glyphs.
///
/// Bytes: a format word, then what the format lays out; see "cmap — Character to Glyph Index Mapping Table" of the
/// OpenType specification. They are borrowed from the table and reach from the subtable's start to the table's end.
/// Needs no other table.
///
/// The mapping is made at the first look-up and kept; copies share it. What needs it throws FTException for a subtable
/// that cannot be used, at every call.
class FTEncoding {
 public:
  /// The answer where a glyph has no character.
  static constexpr uint32_t kNoCharacter = 0xFFFF;
  using Mapping = std::vector<FTEncodingPair>;

  FTEncoding(Tova::ByteView iBytes, uint32_t iPlatform, uint32_t iScript);
  FTEncoding(const FTEncoding&) = default;
  FTEncoding& operator=(const FTEncoding&) = default;
  ~FTEncoding() = default;

  /// Equal platform, script, language and pairs.
  bool operator==(const FTEncoding& iOther) const;
  bool operator!=(const FTEncoding& iOther) const { return !(*this == iOther); }
  /// All pairs of character and glyph, by character. Throws for more pairs than Unicode could have use for.
  const Mapping& GetMapping() const { return GetRanges().Pairs(); }
  Mapping CreateMappingCopy() const { return GetMapping(); }
  uint64_t GetMappingCount() const { return GetRanges().PairCount(); }
  const uint8_t* GetUnswappedMappingDataPtr() const { return _fBytes.Data(); }
  /// The length that the subtable states, whether or not so many bytes are there.
  uint64_t GetUnswappedMappingDataLength() const { return _fDeclaredLength; }
  /// The format number in the upper 16 bits.
  uint32_t GetLongFormat() const { return _fLongFormat; }
  uint32_t GetShortFormat() const { return _fLongFormat >> 16; }
  uint32_t GetPlatform() const { return _fPlatform; }
  uint32_t GetScript() const { return _fScript; }
  uint32_t GetLanguage() const { return _fLanguage; }
  bool MapsCharacter(uint32_t iCharacter) const { return CharacterToGlyph(iCharacter) > 0; }
  /// 0 for a character without a glyph; of several, the first in table order.
  uint32_t CharacterToGlyph(uint32_t iCharacter) const { return GetRanges().CharacterToGlyph(iCharacter); }
  bool MapsGlyph(int32_t iGlyph) const { return GlyphToCharacter(iGlyph) != kNoCharacter; }
  /// The lowest character of the glyph, or kNoCharacter.
  uint32_t GlyphToCharacter(int32_t iGlyph) const;
  bool IsUnicodeEncoding() const;
  /// Whether its characters can be told in Unicode.
  bool IsUnicodableEncoding() const;
  /// The Unicode characters that have a glyph other than 0 and 0xFFFF; kept by the encoding. Those of platform 1 are
  /// converted from the text encoding of their script, where one stands for one Unicode character; an encoding that is
  /// not unicodable has none.
  const icu::UnicodeSet& GetCharacterSet() const;

  /// The bytes from the subtable's start to the table's end, for reading.
  Tova::ByteView MappingBytes() const { return _fBytes; }

 private:
  const FTEncodingMapping& GetRanges() const;

  Tova::ByteView _fBytes;
  uint32_t _fDeclaredLength = 0;
  uint32_t _fLongFormat = 0;
  uint32_t _fPlatform = 0;
  uint32_t _fScript = 0;
  uint32_t _fLanguage = 0;
  mutable std::shared_ptr<const FTEncodingMapping> _fMapping;
  mutable std::shared_ptr<const icu::UnicodeSet> _fCharacterSet;
};
