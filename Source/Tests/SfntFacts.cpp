#include "Tests/SfntFacts.h"

#include "Platform/Utf8.h"
#include "TableAccess/TableClasses/FTFontTable_glyf.h"
#include "TableAccess/TableClasses/FTFontTable_hmtx.h"
#include "TableAccess/TableClasses/FTFontTable_loca.h"

namespace SfntFacts {

const FTFontTable_head* Header(const FTFont_sfnt& iFont) {
  if (iFont.HasTaggedTable(FTFontTable_head::kTag)) return iFont.FindTable<FTFontTable_head>();
  return iFont.HasTaggedTable(FTFontTable_bhed::kTag) ? iFont.FindTable<FTFontTable_bhed>() : nullptr;
}

std::optional<FTOS2Fields> OS2Fields(const FTFont_sfnt& iFont) {
  for (const uint32_t tTag : {FTTag("OS_2"), FTTag("OS/2")}) {
    if (iFont.HasTaggedTable(tTag)) return FTOS2Fields(iFont.GetTaggedTable(tTag)->Bytes());
  }
  return std::nullopt;
}

const FTFontTable_hmtx* Metrics(const FTFont_sfnt& iFont) {
  return iFont.HasTaggedTable(FTFontTable_hmtx::kTag) ? iFont.FindTable<FTFontTable_hmtx>() : nullptr;
}

std::optional<uint16_t> Advance(const FTFont_sfnt& iFont, uint32_t iGlyph) {
  const FTFontTable_hmtx* tMetrics = Metrics(iFont);
  if (!tMetrics || iGlyph >= iFont.CountFontGlyphs()) return std::nullopt;
  return tMetrics->GetMetrics(static_cast<uint16_t>(iGlyph)).advance;
}

std::optional<FTGlyphInk> GlyphInk(const FTFont_sfnt& iFont) {
  if (!iFont.HasTrueTypeGlyphs() || !iFont.HasTaggedTable(FTFontTable_head::kTag)) return std::nullopt;
  const bool tLongOffsets = iFont.FindTable<FTFontTable_head>()->FontUsesLongGlyphOffsets();
  const FTGlyphLocations tLocations = {iFont.GetTaggedTable(FTFontTable_loca::kTag)->Bytes(), tLongOffsets,
                                       iFont.CountFontGlyphs()};
  return FTGlyphInk(iFont.GetTaggedTable(FTFontTable_glyf::kTag)->Bytes(), tLocations, iFont.GetWorkBudget());
}

std::u32string Characters(std::string_view iText) {
  std::u32string tCharacters;
  tCharacters.reserve(iText.size());
  for (size_t tAt = 0; tAt < iText.size();) {
    const Tova::Utf8Character tCharacter = Tova::ReadUtf8(iText, tAt);
    tCharacters += tCharacter.code;
    tAt += tCharacter.length;
  }
  return tCharacters;
}

Tova::String Shown(std::string_view iText) {
  constexpr size_t kMost = 63;
  std::string tShown;
  size_t tCount = 0;
  for (size_t tAt = 0; tAt < iText.size();) {
    if (tCount++ == kMost) return Tova::MakeString(tShown + "...");
    const Tova::Utf8Character tCharacter = Tova::ReadUtf8(iText, tAt);
    Tova::AppendUtf8(tShown, IsControl(tCharacter.code) ? Tova::kReplacementCharacter : tCharacter.code);
    tAt += tCharacter.length;
  }
  return Tova::MakeString(tShown);
}

}  // namespace SfntFacts
