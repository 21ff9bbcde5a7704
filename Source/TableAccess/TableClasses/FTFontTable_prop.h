#pragma once

#include <cstdint>

#include "TableAccess/AncillaryClasses/FTLookupSearch.h"
#include "TableAccess/TableClasses/FTFixedLayout.h"
#include "TableAccess/TableClasses/FTFontTable.h"

/// The properties of glyphs: direction class, brackets, floating and hanging. Bytes: version 16.16 (1.0, 2.0 or 3.0),
/// format u16 (0: no lookup, 1: lookup), default properties u16, a lookup table (see FTLookupSearch). As in "The 'prop'
/// table" of the TrueType reference. Needs no other table.
class FTFontTable_prop : public FTFontTable {
  FT_TABLE_CLASS(FTFontTable_prop, FTFontTable, "prop")

  static constexpr uint64_t kHeaderSize = 8;

  // Bits of a glyph's properties.
  static constexpr uint16_t kFloater = 0x8000;
  static constexpr uint16_t kHangsOffLeftTop = 0x4000;
  static constexpr uint16_t kHangsOffRightBottom = 0x2000;
  static constexpr uint16_t kHasPartner = 0x1000;       ///< another glyph is its closing or opening bracket
  static constexpr uint16_t kPartnerOffset = 0x0F00;    ///< signed, from the glyph to its partner
  static constexpr uint16_t kAttachesOnRight = 0x0080;  ///< from version 2.0 on
  static constexpr uint16_t kReserved = 0x0060;
  static constexpr uint16_t kDirectionClass = 0x001F;

  uint32_t Version() const { return Bytes().U32(0); }
  uint16_t Format() const { return Bytes().U16(4); }
  uint16_t DefaultProperties() const { return Bytes().U16(6); }
  /// The properties that the lookup has for the glyph, else the default.
  uint16_t GetProperties(uint16_t iGlyph) const {
    const Tova::ByteView tLookup = Bytes().From(kHeaderSize);
    const int64_t tValue = Format() == 1 ? FTLookupSearch::FindValue(tLookup, iGlyph) : FTLookupSearch::kNone;
    return tValue == FTLookupSearch::kNone ? DefaultProperties() : tLookup.U16(static_cast<uint64_t>(tValue));
  }

  /// From a glyph with these properties to its partner, -8 to 7.
  static int PartnerOffsetOf(uint16_t iProperties) { return (((iProperties & kPartnerOffset) >> 8) ^ 8) - 8; }
};
