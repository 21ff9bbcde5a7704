#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "TableAccess/FontClasses/FTFont_resource.h"

class FTLWFNFontContainer;

/// A font family, a 'FOND' resource: the fonts it is made of, the PostScript names of its styles, kerning, widths and
/// boxes; and the PostScript outline files that lie beside the suitcase.
///
/// Bytes: a header (flags, ID, first and last character, four metrics, u16 each; at 16 the offsets of the width,
/// kerning and style mapping tables, u32 each, 0: none; ...; at 52 the count - 1 of the font association table, u16).
/// From 54 on that table, entries of size, style, font ID (u16 each; size 0: an 'sfnt' resource, else an 'NFNT'). Right
/// after it, unless another table stands there, the offset table (count - 1 u16, u32 each) and the boxes (count - 1
/// u16; style u16 and four coordinates s16 each). Style mapping table: font class u16, offset of the glyph encoding
/// from here s32, reserved u32, 48 indexes of strings s8, then from 58 on a string count u16 and the strings, each a
/// length u8 and so many characters, numbered from 1. String 1 is the family's base PostScript name; one that an index
/// names is a list of numbers (u8) of the strings to append. Kerning table: entry count - 1 u16; entries of style u16,
/// pair count s16 and the pairs (two characters u8, distance s16).
///
/// Positions count in bytes from the resource's start and are signed: tables may claim to lie before it. What lies
/// outside reads as 0. Each operation first reads the layout, which throws "The 'FOND' resource has a bad ... table
/// offset" when an offset leads out of the resource.
class FTFont_FOND : public FTFont_resource {
 public:
  using Position = std::optional<int64_t>;

  using FTFont_resource::FTFont_resource;
  FTFont_FOND(const FTFont_FOND& iOther) : FTFont_resource(iOther) {}
  FTFont_FOND& operator=(const FTFont_FOND& iOther);

  TovaStringRef GetPostScriptName() const override { return GetIndPostScriptName(0); }
  uint32_t GetType() const override { return kFOND; }
  void CheckIntegrity() const override;

  uint32_t GetFATEntryCount() const { return Read().fatEntryCount; }
  /// The entries of the font association table; they may claim to reach beyond the end.
  Tova::RecordArray GetFAT() const;
  Position GetStyleMappingTable() const { return Read().styleMapping; }
  Position GetKernTable() const { return Read().kerning; }
  uint32_t GetKernEntryCount() const { return Read().kernEntryCount; }
  /// The first entry.
  Position GetKernEntries() const { return Read().kernEntries; }
  /// None beyond the count. Throws "The 'FOND' resource contains more kerning data than it has room for" when the
  /// entries before it lead out of the resource.
  Position GetIndKernEntry(uint64_t iEntry) const;
  int16_t GetIndKernPairCount(uint64_t iEntry) const;
  Position GetIndKernPair(uint64_t iEntry, uint64_t iPair) const;
  Position GetWidthTable() const { return Read().widths; }
  int16_t GetOffsetCount() const { return Read().offsetCount; }
  /// The first offset.
  Position GetOffsets() const { return Read().offsets; }
  /// The count as the table states it, also where there is no room for so many and so no boxes.
  int16_t GetBoundingBoxCount() const { return Read().boxCount; }
  Position GetBoundingBoxes() const { return Read().boxes; }
  uint64_t GetType1FontCount() const { return Read().type1Fonts.size(); }
  /// The container of an outline file of the family; null beyond the count.
  const FTLWFNFontContainer* GetIndType1Font(uint64_t iIndex) const;
  /// Throws "The 'FOND' resource has a corrupt PostScript name" or "... has bad data in its style name table".
  uint64_t GetPostScriptNameCount() const;
  /// The PostScript names of the styles, each once, in the order of the styles; null beyond the count, and where the
  /// names cannot be made.
  TovaStringRef GetIndPostScriptName(uint64_t iIndex) const;
  /// Whether the association table lists an outline font; whether an outline file was found.
  bool HasOutlines_sfnt() const { return Read().hasOutlineFont; }
  bool HasOutlines_LWFN() const { return GetType1FontCount() > 0; }
  /// Whether it lists an outline font whose ID, as an unsigned number, is this one.
  bool ListsOutlineFont(int32_t iID) const;

 protected:
  void ReadDataInternal() const override;

 private:
  struct Layout {
    uint32_t fatEntryCount = 0;
    bool hasOutlineFont = false;
    Position styleMapping, kerning, kernEntries, widths, offsets, boxes;
    uint32_t kernEntryCount = 0;
    int16_t offsetCount = 0;
    int16_t boxCount = 0;
    std::vector<std::shared_ptr<const FTLWFNFontContainer>> type1Fonts;
    std::optional<std::vector<Tova::String>> postScriptNames;
  };

  const Layout& Read() const;
  void ReadKerning() const;
  void ReadOffsetsAndBoxes() const;
  bool IsTableAt(int64_t iPosition) const;
  const std::vector<Tova::String>& GetPostScriptNames() const;
  void LookForType1Fonts() const;
  std::shared_ptr<const FTLWFNFontContainer> Type1FontContainerFromName(TovaStringRef iName) const;

  mutable Layout _fLayout;
};
