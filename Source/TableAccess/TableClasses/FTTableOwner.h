#pragma once

#include <cstdint>
#include <memory>

#include "Platform/ByteView.h"
#include "TableAccess/Glyphs/FTGlyphLocations.h"

class FTFont_sfnt;
class FTFontTable;
class FTGlyphSet;
class FTWorkBudget;

/// What tables get from the font that owns them: its bytes, one another, counts that other tables hold, the budget for
/// their work. Implemented by FTFont_sfnt, which tables know no further.
class FTTableOwner {
 public:
  virtual ~FTTableOwner() = default;

  virtual const FTFont_sfnt* AsFont() const = 0;
  virtual Tova::ByteView FontBytes() const = 0;
  virtual FTWorkBudget& GetWorkBudget() const = 0;
  /// As those of FTFont_sfnt and FTFont.
  virtual const FTFontTable* GetTaggedTable(uint32_t iTag) const = 0;
  virtual bool HasTaggedTable(uint32_t iTag) const = 0;
  virtual uint16_t CountFontGlyphs() const = 0;
  virtual uint16_t CountHorizontalLongMetrics() const = 0;
  virtual uint16_t CountVerticalLongMetrics() const = 0;
  virtual Tova::ByteView DoGenericLookup(Tova::ByteView iTable, uint32_t iGlyph) const = 0;
  /// The glyphs of these bytes of the font, which other fonts of the file may have read already.
  virtual std::shared_ptr<FTGlyphSet> GetGlyphSet(Tova::ByteView iGlyphs, const FTGlyphLocations& iLocations) const = 0;

  /// The accessor as its class T (whose kTag names it), null without the table.
  template <class T>
  const T* FindTable() const {
    return dynamic_cast<const T*>(GetTaggedTable(T::kTag));
  }
};
