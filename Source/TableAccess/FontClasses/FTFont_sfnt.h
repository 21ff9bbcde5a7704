#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TableAccess/FontClasses/FTFont.h"
#include "TableAccess/FontClasses/FTIdealTableOrder.h"
#include "TableAccess/FontClasses/FTSfntDirectory.h"
#include "TableAccess/TableClasses/FTFontTable.h"
#include "TableAccess/TableClasses/FTTableOwner.h"

class FTEncoding;
class FTFont_FOND;
class FTUnicodeMap;
struct FTFeatureName;

/// An sfnt font: TrueType, OpenType, bitmap-only. Creates an accessor for each entry of its table directory, finds them
/// by tag, and answers what tests ask of the font as a whole.
///
/// Bytes: the offset table (scaler type u32, numTables u16, three u16 for searching) at the directory offset, then
/// numTables entries of tag, checksum, offset, length (u32 each); offsets count from the start of the file. See "The
/// OpenType Font File" in the OpenType specification.
///
/// Tables, names and counts are made on first use and kept. Strings, tables and encodings that are returned belong to
/// the font. Directory faults throw FTException from every operation that needs a table.
class FTFont_sfnt : public FTFont, public FTTableOwner {
 public:
  /// Stands for "any" where a platform, script or language is asked for.
  static constexpr uint32_t kAny = 0xFFFFFFFF;
  /// The answer where a character has no glyph, or a glyph no character.
  static constexpr uint32_t kNone = 0xFFFF;
  using Tables = std::vector<std::unique_ptr<const FTFontTable>>;

  FTFont_sfnt();
  FTFont_sfnt(const FTFontOwner* iOwner, Tova::ByteView iBytes);
  FTFont_sfnt(const FTFontOwner* iOwner, const Tova::Data& iData);
  FTFont_sfnt(const FTFontOwner* iOwner, std::shared_ptr<const Tova::File> iFile, uint64_t iDirectoryOffset = 0);
  FTFont_sfnt(const FTFont_sfnt& iOther);
  FTFont_sfnt& operator=(const FTFont_sfnt& iOther);
  ~FTFont_sfnt() override;

  /// Validates the directory, then returns the identifier.
  const void* TestBasicUsability() const override;
  /// The checksum adjustment in eight hexadecimal digits, '|', and the unique name where there is one.
  TovaStringRef GetIdentifier() const override;
  /// The full name, else the PostScript name, else the unique name, else the container's.
  TovaStringRef GetName() const override;
  TovaStringRef GetPostScriptName() const override;
  uint32_t GetType() const override { return kSfnt; }
  void ForgetTables() const override;

  /// The family resource that lists this font; none for a font from a data fork.
  virtual const FTFont_FOND* GetFOND() const { return nullptr; }
  uint64_t CountTables() const;
  /// The tag of a directory entry, 'NULL' for an index beyond the last.
  uint32_t GetIndTableTag(uint64_t iIndex) const;
  const FTFontTable* GetIndTable(uint64_t iIndex) const;
  /// The accessor of the first entry with the tag, null without one.
  const FTFontTable* GetTaggedTable(uint32_t iTag) const override;
  /// Whether the first entry with the tag has bytes: a table of length 0 counts as absent.
  bool HasTaggedTable(uint32_t iTag) const override;
  /// The index of that entry; all bits set without one.
  uint64_t IndexOfTaggedTable(uint32_t iTag) const;
  uint32_t GetScaler() const { return _fScaler; }
  const Tables& GetTables() const;
  uint16_t GetFontUnitsPerEm() const;
  uint32_t GetChecksumAdjustment() const;
  bool IsHintedFont() const;
  bool HasTrueTypeGlyphs() const;
  bool HasOTPostScriptGlyphs() const;
  bool HasType1PostScriptGlyphs() const;
  bool HasSbitGlyphs() const;
  bool IsSbitOnly() const;
  TovaStringRef GetUniqueName() const;
  TovaStringRef GetFullName() const;
  uint16_t CountFontGlyphs() const override;
  uint64_t CountFontNames() const;
  uint64_t CountFontEncodings() const;
  uint16_t CountHorizontalLongMetrics() const override;
  uint16_t CountVerticalLongMetrics() const override;
  uint64_t CountGlobalCoordinates() const;
  /// The glyph of a Unicode character; kNone without one, and never glyph 0.
  uint32_t UnicodeToGlyphID(uint32_t iCharacter) const;
  uint32_t GlyphIDToUnicode(uint16_t iGlyph) const;
  /// The first encoding with these codes (kAny matches every one) and its index; null without one.
  const FTEncoding* FindFontEncoding(uint32_t iPlatform, uint32_t iScript, uint32_t iLanguage, uint64_t& oIndex) const;
  TovaStringRef FindFontName(uint32_t iNameCode, uint32_t iPlatform, uint32_t iScript, uint32_t iLanguage,
                             uint64_t& oIndex) const;
  const FTEncoding* FindFontUnicodeEncoding(uint64_t& oIndex) const;
  /// The first name of the feature in 'feat' and its index; false without one.
  bool FindFontFeature(uint16_t iFeatureType, FTFeatureName& oName, uint64_t& oIndex) const;
  const FTEncoding* GetFontEncoding(uint64_t iIndex, uint32_t& oPlatform, uint32_t& oScript, uint32_t& oLanguage) const;
  /// Outputs may be null.
  TovaStringRef GetFontName(uint64_t iIndex, uint32_t* oNameCode, uint32_t* oPlatform, uint32_t* oScript,
                            uint32_t* oLanguage) const;
  uint64_t GetDirectoryOffset() const { return _fDirectoryOffset; }
  /// The Unicode characters of all encodings that give them, with their glyphs; empty without a 'cmap' table.
  const FTUnicodeMap& UnicodeMap() const;
  /// The name that the 'post' table gives a glyph; none where it gives none, or an empty one.
  std::optional<std::string> GlyphName(uint32_t iGlyphID) const;

  /// Tags in the order in which tables are best laid out; null where the user's preference is no order.
  static const FTTableOrder* GetIdealTableOrder() { return FTIdealTableOrder(); }
  /// The tag's place in that order, from 0; its own value when it has none there.
  static uint32_t TableTagToInt(uint32_t iTag);
  /// Order directory entries by tag, and by the place of the tag: negative, 0 or positive. The numbers compared are
  /// taken as signed.
  static int TableEntryAlphabeticalOrderCompareFunction(const FTSfntDirectoryEntry& iFirst,
                                                        const FTSfntDirectoryEntry& iSecond);
  static int TableEntryOffsetOrderCompareFunction(const FTSfntDirectoryEntry& iFirst,
                                                  const FTSfntDirectoryEntry& iSecond);

  // What its tables ask; FindTable<FTFontTable_head>() is of use to all.
  const FTFont_sfnt* AsFont() const override { return this; }
  Tova::ByteView FontBytes() const override { return Bytes(); }
  FTWorkBudget& GetWorkBudget() const override { return FTFont::GetWorkBudget(); }
  Tova::ByteView DoGenericLookup(Tova::ByteView iTable, uint32_t iGlyph) const override {
    return FTFont::DoGenericLookup(iTable, iGlyph);
  }
  std::shared_ptr<FTGlyphSet> GetGlyphSet(Tova::ByteView iGlyphs, const FTGlyphLocations& iLocations) const override;

 private:
  void ValidateHeader() const;
  void IndexTables() const;
  TovaStringRef FindNameString(uint32_t iNameCode) const;

  uint64_t _fDirectoryOffset = 0;
  uint32_t _fScaler = 0;
  struct TagAndIndex {
    uint32_t tag;
    uint32_t index;
  };
  mutable std::unique_ptr<const Tables> _fTables;
  mutable std::vector<TagAndIndex> _fTableIndex;  // ascending by tag, the first entry of each
  mutable std::unique_ptr<const FTUnicodeMap> _fUnicodeMap;
  mutable Tova::String _fIdentifier;
  mutable Tova::String _fPostScriptName;
  mutable Tova::String _fFullName;
  mutable std::optional<uint16_t> _fGlyphCount;
  mutable std::optional<uint16_t> _fHorizontalLongMetricsCount;
  mutable std::optional<uint16_t> _fVerticalLongMetricsCount;
  mutable uint64_t _fGlobalCoordinateCount = 0;
};
