#include "TableAccess/TableClasses/FTFontTable_post.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "Platform/Utf8.h"
#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/TableClasses/FTTableOwner.h"

namespace {

// clang-format off
/// The names of the standard glyphs, in their order: 3 to 97 are those of the characters U+0020 to U+007E.
constexpr auto kNames = std::to_array<const char*>({
    ".notdef", ".null", "nonmarkingreturn", "space", "exclam", "quotedbl", "numbersign", "dollar", "percent",
    "ampersand", "quotesingle", "parenleft", "parenright", "asterisk", "plus", "comma", "hyphen", "period", "slash",
    "zero", "one", "two", "three", "four", "five", "six", "seven", "eight", "nine", "colon", "semicolon", "less",
    "equal", "greater", "question", "at", "A", "B", "C", "D", "E", "F", "G", "H", "I", "J", "K", "L", "M", "N", "O",
    "P", "Q", "R", "S", "T", "U", "V", "W", "X", "Y", "Z", "bracketleft", "backslash", "bracketright", "asciicircum",
    "underscore", "grave", "a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m", "n", "o", "p", "q", "r",
    "s", "t", "u", "v", "w", "x", "y", "z", "braceleft", "bar", "braceright", "asciitilde", "Adieresis", "Aring",
    "Ccedilla", "Eacute", "Ntilde", "Odieresis", "Udieresis", "aacute", "agrave", "acircumflex", "adieresis",
    "atilde", "aring", "ccedilla", "eacute", "egrave", "ecircumflex", "edieresis", "iacute", "igrave", "icircumflex",
    "idieresis", "ntilde", "oacute", "ograve", "ocircumflex", "odieresis", "otilde", "uacute", "ugrave",
    "ucircumflex", "udieresis", "dagger", "degree", "cent", "sterling", "section", "bullet", "paragraph",
    "germandbls", "registered", "copyright", "trademark", "acute", "dieresis", "notequal", "AE", "Oslash", "infinity",
    "plusminus", "lessequal", "greaterequal", "yen", "mu", "partialdiff", "summation", "product", "pi", "integral",
    "ordfeminine", "ordmasculine", "Omega", "ae", "oslash", "questiondown", "exclamdown", "logicalnot", "radical",
    "florin", "approxequal", "Delta", "guillemotleft", "guillemotright", "ellipsis", "nonbreakingspace", "Agrave",
    "Atilde", "Otilde", "OE", "oe", "endash", "emdash", "quotedblleft", "quotedblright", "quoteleft", "quoteright",
    "divide", "lozenge", "ydieresis", "Ydieresis", "fraction", "currency", "guilsinglleft", "guilsinglright", "fi",
    "fl", "daggerdbl", "periodcentered", "quotesinglbase", "quotedblbase", "perthousand", "Acircumflex",
    "Ecircumflex", "Aacute", "Edieresis", "Egrave", "Iacute", "Icircumflex", "Idieresis", "Igrave", "Oacute",
    "Ocircumflex", "\x61\x70\x70\x6C\x65", "Ograve", "Uacute", "Ucircumflex", "Ugrave", "dotlessi", "circumflex",
    "tilde", "macron", "breve", "dotaccent", "ring", "cedilla", "hungarumlaut", "ogonek", "caron", "Lslash", "lslash",
    "Scaron", "scaron", "Zcaron", "zcaron", "brokenbar", "Eth", "eth", "Yacute", "yacute", "Thorn", "thorn", "minus",
    "multiply", "onesuperior", "twosuperior", "threesuperior", "onehalf", "onequarter", "threequarters", "franc",
    "Gbreve", "gbreve", "Idotaccent", "Scedilla", "scedilla", "Cacute", "cacute", "Ccaron", "ccaron", "dcroat"
});
// clang-format on
static_assert(kNames.size() == FTFontTable_post::kStandardNameCount);

/// Where the entries of the glyphs begin, behind the count.
constexpr uint64_t kEntries = FTFontTable_post::kHeaderSize + 2;
/// The code of a glyph without a character in format 4.0.
constexpr uint16_t kNoCode = 0xFFFF;

/// As many entries as the bytes wholly hold.
uint32_t Held(uint32_t iClaimed, uint64_t iTableSize, uint64_t iStart, uint64_t iEntrySize) {
  const uint64_t tRoom = iTableSize > iStart ? (iTableSize - iStart) / iEntrySize : 0;
  return static_cast<uint32_t>(std::min<uint64_t>(iClaimed, tRoom));
}

}  // namespace

void FTFontTable_post::ReadDataInternal() const {
  _fStoredNames.clear();
  _fStoredNamesEnd = GetSize();
  if (GetFormat() != kStoredNames) return;
  uint64_t tAt = kEntries + uint64_t{2} * StatedGlyphCount();
  while (tAt < GetSize() && Bytes().Holds(tAt + 1, Bytes().U8(tAt))) {
    const uint8_t tLength = Bytes().U8(tAt);
    _fStoredNames.push_back({static_cast<uint32_t>(tAt + 1), tLength});
    tAt += uint64_t{1} + tLength;
  }
  _fStoredNamesEnd = std::min(tAt, GetSize());
  ChargeWork(_fStoredNames.size());
}

uint32_t FTFontTable_post::GetGlyphCount() const {
  switch (GetFormat()) {
    case kStandardNames:
      return kStandardNameCount;
    case kStoredNames:
      return Held(StatedGlyphCount(), GetSize(), kEntries, 2);
    case kNameOffsets:
      return Held(StatedGlyphCount(), GetSize(), kEntries, 1);
    case kCharacterCodes:
      return Held(Owner() ? Owner()->CountFontGlyphs() : 0, GetSize(), kHeaderSize, 2);
    default:
      return 0;
  }
}

uint32_t FTFontTable_post::CountStoredNames() const {
  ReadData();
  return static_cast<uint32_t>(_fStoredNames.size());
}

uint64_t FTFontTable_post::StoredNamesEnd() const {
  ReadData();
  return _fStoredNamesEnd;
}

Tova::ByteView FTFontTable_post::GetStoredName(uint32_t iIndex) const {
  if (iIndex >= CountStoredNames()) {
    FTThrow("iIndex < CountStoredNames()",
            "An attempt was made to access an array element outside of the array bounds");
  }
  return Bytes().Slice(_fStoredNames[iIndex].offset, _fStoredNames[iIndex].length);
}

void FTFontTable_post::RequireGlyph(uint32_t iGlyphID) const {
  if (iGlyphID >= GetGlyphCount())
    FTThrow("iGlyphID < GetGlyphCount()", "A reference was made to a non-existent glyph");
}

int32_t FTFontTable_post::GetNameIndex(uint32_t iGlyphID) const {
  RequireGlyph(iGlyphID);
  switch (GetFormat()) {
    case kStandardNames:
      return static_cast<int32_t>(iGlyphID);
    case kStoredNames:
      return Bytes().U16(kEntries + uint64_t{2} * iGlyphID);
    case kNameOffsets:
      return static_cast<int32_t>(iGlyphID) + Bytes().S8(kEntries + iGlyphID);
    default:
      return -1;
  }
}

std::optional<std::string> FTFontTable_post::GetGlyphName(uint32_t iGlyphID) const {
  const int32_t tIndex = GetNameIndex(iGlyphID);
  if (GetFormat() == kCharacterCodes) {
    const uint16_t tCode = Bytes().U16(kHeaderSize + uint64_t{2} * iGlyphID);
    if (tCode == kNoCode) return std::nullopt;
    char tText[sizeof("aFFFF")];
    std::snprintf(tText, sizeof tText, "a%04X", unsigned{tCode});
    return tText;
  }
  if (tIndex < 0) return std::nullopt;
  const auto tName = static_cast<uint32_t>(tIndex);
  if (tName < kStandardNameCount) return kNames[tName];
  if (GetFormat() != kStoredNames || tName - kStandardNameCount >= CountStoredNames()) return std::nullopt;
  const Tova::ByteView tBytes = GetStoredName(tName - kStandardNameCount);
  std::string tText;
  tText.reserve(tBytes.Size());
  for (uint64_t i = 0; i < tBytes.Size(); ++i) Tova::AppendUtf8(tText, tBytes.U8(i));
  return tText;
}

const char* FTFontTable_post::StandardName(uint32_t iIndex) { return kNames[iIndex]; }
