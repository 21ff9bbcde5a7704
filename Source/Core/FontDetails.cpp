#include "Core/FontDetails.h"

#include <VornFontTest/VornFontTest.h>

#include <algorithm>
#include <string>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/AncillaryClasses/FTUnicodeMap.h"
#include "TableAccess/FTLimits.h"
#include "TableAccess/FontClasses/FTFont_sfnt.h"
#include "TableAccess/TableClasses/FTFontTable.h"

namespace {

constexpr uint32_t kVersionNameCode = 5;  // as the OpenType specification numbers names
constexpr uint32_t kNoCharacter = 0xFFFFFFFF;
constexpr uint64_t kBytesPerTable = 48;
constexpr uint64_t kBytesBeside = 400;

void Set(TovaMutableDictionaryRef ioDictionary, TovaStringRef iKey, const Tova::Value& iValue) {
  TovaDictionarySetValue(ioDictionary, iKey, iValue.get());
}

bool HasColorBitmaps(const FTFont_sfnt& iFont) {
  return iFont.HasTaggedTable(FTTag("CBDT")) || iFont.HasTaggedTable(FTTag("sbix"));
}

/// The constant for the kind of outlines; null where the font has none, nor bitmaps.
TovaStringRef OutlineKindOf(const FTFont& iFont) {
  if (iFont.GetType() == FTFont::kType1 || iFont.GetType() == FTFont::kPOST) return kVornFontTestType1Outlines;
  if (iFont.GetType() == FTFont::kNFNT) return kVornFontTestBitmapsOnly;
  const auto* tFont = dynamic_cast<const FTFont_sfnt*>(&iFont);
  if (!tFont) return nullptr;
  if (tFont->HasTrueTypeGlyphs()) return kVornFontTestTrueTypeOutlines;
  if (tFont->HasOTPostScriptGlyphs()) return kVornFontTestPostScriptOutlines;
  if (tFont->HasType1PostScriptGlyphs()) return kVornFontTestType1Outlines;
  return tFont->HasSbitGlyphs() || HasColorBitmaps(*tFont) ? kVornFontTestBitmapsOnly : nullptr;
}

Tova::Array TagsOf(const FTFont_sfnt& iFont) {
  auto tTags = Tova::Adopt(TovaArrayCreateMutable());
  for (uint64_t i = 0; i < std::min(iFont.CountTables(), FTLimits::Get().maxTablesListed); ++i) {
    const std::string tTag = FTTagText(iFont.GetIndTableTag(i));
    TovaArrayAppendValue(tTags.get(), Tova::Adopt(TovaStringCreateWithLossyUTF8(tTag.data(), tTag.size())).get());
  }
  return tTags;
}

}  // namespace

uint64_t AddFontDetails(TovaMutableDictionaryRef ioDictionary, const FTFont& iFont) {
  uint64_t tBytes = kBytesBeside;
  try {
    if (const TovaStringRef tKind = OutlineKindOf(iFont)) {
      TovaDictionarySetValue(ioDictionary, kVornFontTestFontOutlineKindKey, tKind);
    }
    const auto* tFont = dynamic_cast<const FTFont_sfnt*>(&iFont);
    if (!tFont) return tBytes;
    const Tova::Array tTags = TagsOf(*tFont);
    Set(ioDictionary, kVornFontTestFontTablesKey, tTags);
    tBytes += static_cast<uint64_t>(TovaArrayGetCount(tTags.get())) * kBytesPerTable;
    Set(ioDictionary, kVornFontTestFontGlyphCountKey,
        Tova::Adopt(TovaNumberCreateWithInteger(tFont->CountFontGlyphs())));
    // Where the names cannot be read, the PostScript name is not there.
    if (!TovaDictionaryGetValue(ioDictionary, kVornFontTestFontPostScriptNameKey)) return tBytes;
    uint64_t tIndex = 0;
    const TovaStringRef tVersion =
        tFont->FindFontName(kVersionNameCode, FTFont_sfnt::kAny, FTFont_sfnt::kAny, FTFont_sfnt::kAny, tIndex);
    if (tVersion) TovaDictionarySetValue(ioDictionary, kVornFontTestFontVersionKey, tVersion);
  } catch (const FTException&) {  // what is wrong with the font is for its tests to find
  }
  return tBytes;
}

std::optional<uint32_t> GlyphCharacters::CharacterOf(const FTFont& iFont, uint32_t iGlyph) {
  if (!_fCharacters) {
    _fCharacters.emplace();
    const auto* tFont = dynamic_cast<const FTFont_sfnt*>(&iFont);
    if (!tFont) return std::nullopt;
    const FTGlyphPages& tGlyphs = tFont->UnicodeMap().Glyphs();
    tGlyphs.ForEach([this](uint32_t iCharacter, uint16_t iMapped) {
      if (iMapped >= _fCharacters->size()) _fCharacters->resize(iMapped + size_t{1}, kNoCharacter);
      uint32_t& tCharacter = (*_fCharacters)[iMapped];
      tCharacter = std::min(tCharacter, iCharacter);
      return true;
    });
  }
  if (iGlyph >= _fCharacters->size() || (*_fCharacters)[iGlyph] == kNoCharacter) return std::nullopt;
  return (*_fCharacters)[iGlyph];
}
