#include "TableAccess/TableClasses/FTFontTable_glyf.h"

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/FTLimits.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TableAccess/TableClasses/FTFontTable_loca.h"

static constexpr char kSource[] = "TableAccess/TableClasses/FTFontTable_glyf";

FTFontTable_glyf& FTFontTable_glyf::operator=(const FTFontTable_glyf& iOther) {
  if (this == &iOther) return *this;
  ClearGlyphData();
  FTFontTable::operator=(iOther);
  return *this;
}

void FTFontTable_glyf::ReadDataInternal() const {
  const auto* tTable_loca = GetFont()->FindTable<FTFontTable_loca>();
  if (!tTable_loca || !GetFont()->HasTaggedTable(FTFontTable_loca::kTag))
    FTThrowAt("GetFont()->HasTaggedTable( FTFontTable_loca::kTag )", "The required 'loca' table is missing", kSource,
              99);
  auto tGlyphs = std::make_unique<FTGlyphStore>();
  const uint16_t tCount = GetFont()->CountFontGlyphs();
  tGlyphs->list.reserve(tCount);
  for (uint16_t tIndex = 0; tIndex < tCount; ++tIndex) {
    const uint64_t tOffset = tTable_loca->GetGlyphOffset(tIndex);
    if (tOffset > GetUnswappedDataLength())
      FTThrowAt("tTable_loca->GetGlyphOffset( tIndex ) > GetUnswappedDataLength()",
                "The 'loca' table points to data outside the bounds of the 'glyf' table", kSource, 106);
    const FTTrueTypeGlyph* tGlyph =
        FTTrueTypeGlyph::CreateGlyph(Bytes().From(tOffset), tTable_loca->GetGlyphLength(tIndex), this, *tGlyphs);
    if (!tGlyph) FTThrowAt("tGlyph == NULL", "An error occurred allocating memory", kSource, 109);
    tGlyphs->list.push_back(tGlyph);
  }
  ClearGlyphData();
  _fGlyphs = std::move(tGlyphs);
}

std::span<const FTTrueTypeGlyph* const> FTFontTable_glyf::GetGlyphs() const {
  ReadData();
  if (!_fGlyphs) return {};
  return _fGlyphs->list;
}

const FTTrueTypeGlyph* FTFontTable_glyf::GetGlyph(uint64_t iIndex) const {
  const auto tGlyphs = GetGlyphs();
  return iIndex < tGlyphs.size() ? tGlyphs[iIndex] : nullptr;
}

void FTFontTable_glyf::ClearGlyphData() const {
  _fGlyphs.reset();
  _fPoints = {};
  _fDecodedItems = 0;
}

void FTFontTable_glyf::ChargeDecoding(uint64_t iItems) const {
  _fDecodedItems += iItems;
  const uint64_t tAllowed = kFTGlyphItemsAllowed + kFTGlyphItemsAllowedPerByte * GetUnswappedDataLength();
  if (!GetFont()->SpendWork(iItems) || _fDecodedItems > tAllowed)
    FTThrowAt("_fFlags == NULL", "A memory allocation operation failed",
              "TableAccess/AncillaryClasses/FTSimpleTrueTypeGlyph", 124);
}
