#include "Tests/FOND/VornFontTester_FOND_styles.h"

#include <optional>
#include <string_view>

#include "TableAccess/AncillaryClasses/FTText.h"
#include "TableAccess/FontClasses/FTStyleNames.h"

namespace {

/// The fields before the strings, and those up to the first string.
constexpr int64_t kIndexesEnd = 57;
constexpr int64_t kStringCountAt = 58;
constexpr int64_t kStringsAt = 60;

/// More glyph names than a style mapping table can need: one for each character.
constexpr uint16_t kMostGlyphs = 256;

constexpr size_t kMostNameBytes = 256;
constexpr size_t kLegalNameBytes = 63;

/// The characters up to a NUL as text, and one character as its code point; both are in the Roman encoding.
Tova::String RomanText(std::string_view iCharacters) {
  return FTDecodeText(iCharacters.substr(0, iCharacters.find('\0')), kTovaTextEncodingRoman);
}

uint16_t RomanCharacter(char iCharacter) {
  uint8_t tUnit[2] = {};
  size_t tLength = 0;
  const Tova::String tText = FTDecodeText({&iCharacter, 1}, kTovaTextEncodingRoman);
  TovaStringGetBytes(tText.get(), kTovaTextEncodingUTF16BigEndian, tUnit, sizeof(tUnit), &tLength);
  return Tova::ByteView(tUnit, tLength).U16(0);
}

/// Whether a PostScript name may have the character: printable ASCII but blanks and delimiters.
bool IsLegal(char iCharacter) {
  constexpr std::string_view kDelimiters = "[](){}<>/%";
  return iCharacter >= '!' && iCharacter <= '~' && kDelimiters.find(iCharacter) == kDelimiters.npos;
}

}  // namespace

void VornFontTester_FOND_styles::CheckStyles_FOND(const FTFont_FOND& iFamily) const {
  const int64_t tStyles = StyleMappingOffset(iFamily);
  if (tStyles == 0) return;
  const int64_t tLimit = LimitOf(iFamily, tStyles, KerningOffset(iFamily), WidthOffset(iFamily));
  if (tLimit - tStyles <= kIndexesEnd) {
    ReportResult(Severity::kFatalError,
                 "The style mapping table is too short to hold the minimal amount of style mapping data.");
    return;
  }
  const int32_t tGlyphOffset = iFamily.S32At(tStyles + 2);
  const int64_t tGlyphs = tStyles + tGlyphOffset;
  if (!CheckStyleNames(iFamily, tStyles, tGlyphOffset > 0 ? tGlyphs : tLimit)) {
    if (tGlyphOffset > 0) {
      ReportResult(Severity::kMinorError, "The style mapping for glyph offset %d is bad", {tGlyphOffset});
    } else {
      ReportResult(Severity::kMinorError, "The style names were bad");
    }
  }
  if (tGlyphOffset != 0) CheckGlyphNames(iFamily, tGlyphs, tGlyphOffset < 0 ? tStyles : tLimit);
}

void VornFontTester_FOND_styles::CheckGlyphNames(const FTFont_FOND& iFamily, int64_t iGlyphs, int64_t iLimit) const {
  constexpr const char* kBeyondEnd = "The FOND's style table extends beyond the end of the FOND";
  if (iGlyphs >= iFamily.Length() || iGlyphs < 0) {
    ReportResult(Severity::kFatalError, kBeyondEnd);
    return;
  }
  const uint16_t tGlyphCount = iFamily.U16At(iGlyphs);
  if (tGlyphCount > kMostGlyphs) {
    const Tova::String tName = RomanText(iFamily.GetResourceName());
    const Tova::String tLine = Tova::Format("##### ERROR (%s): Something is terribly wrong, tGlyphCount == %d",
                                            {TovaStringGetUTF8(tName.get()), tGlyphCount});
    TovaLogLine(tLine.get());
    iFamily.CheckIntegrity();
  }
  int64_t tAt = iGlyphs + 2;
  for (uint32_t i = 0; i < tGlyphCount; ++i) {
    const At tHere(*this, {.offset = tAt});
    if (tAt >= iFamily.Length()) {
      ReportResult(Severity::kFatalError, kBeyondEnd);
      return;
    }
    tAt += 2 + int64_t{iFamily.U8At(tAt + 1)};
    if (tAt > iLimit) {
      ReportResult(Severity::kMinorError,
                   "The glyph remapping table ends at offset 0x%08X, which is beyond the end of the table (0x%08X)",
                   {tAt, iLimit});
    }
  }
}

bool VornFontTester_FOND_styles::CheckStyleNames(const FTFont_FOND& iFamily, int64_t iStyles, int64_t iLimit) const {
  if (iStyles + kStringsAt > iLimit) {
    ReportResult(Severity::kFatalError, "The style name data exceeds the style mapping table's limits.");
    return false;
  }
  int64_t tString = iStyles + kStringsAt;
  for (uint16_t i = 0; i < iFamily.U16At(iStyles + kStringCountAt); ++i) {
    if (tString > iLimit) return false;
    tString += 1 + int64_t{iFamily.U8At(tString)};
  }
  const FTStyleNames tNames(iFamily.Bytes(), iStyles);
  for (int tStyle = 0; tStyle < FTStyleNames::kStyleCount; ++tStyle) CheckPSNameString(tNames, tStyle);
  return true;
}

void VornFontTester_FOND_styles::CheckPSNameString(const FTStyleNames& iNames, int iStyle) const {
  const At tHere(*this, {.part = "Style " + std::to_string(iStyle)});
  std::string tName;
  if (!AppendPiece(iNames, 1, iStyle, tName)) return;
  if (const int tIndex = iNames.GetIndex(iStyle); tIndex >= 2) {
    const std::optional<int64_t> tList = iNames.FindString(tIndex);
    if (!tList) return ReportOutside(iStyle);
    for (const char tNumber : iNames.ReadString(*tList)) {
      if (!AppendPiece(iNames, static_cast<uint8_t>(tNumber), iStyle, tName)) return;
    }
  }
  CheckLegalName(tName, iStyle);
}

bool VornFontTester_FOND_styles::AppendPiece(const FTStyleNames& iNames, int iNumber, int iStyle,
                                             std::string& ioName) const {
  const std::optional<int64_t> tString = iNames.FindString(iNumber);
  if (!tString) {
    ReportOutside(iStyle);
    return false;
  }
  const std::string tPiece = iNames.ReadString(*tString);
  ioName += tPiece;
  if (tPiece.empty()) {
    ReportResult(Severity::kFatalError,
                 "While generating the PostScript name for style %d, a zero-length piece was encountered; the name is "
                 "invalid",
                 {iStyle});
  } else if (ioName.size() > kMostNameBytes) {
    ReportResult(Severity::kFatalError,
                 // quirk: missing-parenthesis
                 "PostScript name for style %d is far too long (more than 256 bytes; the maximum legal length is 63 "
                 "bytes",
                 {iStyle});
  }
  return !tPiece.empty() && ioName.size() <= kMostNameBytes;
}

void VornFontTester_FOND_styles::ReportOutside(int iStyle) const {
  ReportResult(Severity::kFatalError, "The style name table entry %d lies outside the 'FOND' resource boundaries",
               {iStyle});
}

void VornFontTester_FOND_styles::CheckLegalName(const std::string& iName, int iStyle) const {
  const Tova::String tText = RomanText(iName);
  const char* tName = TovaStringGetUTF8(tText.get());
  if (iName.size() > kLegalNameBytes) {
    ReportResult(Severity::kMajorError,
                 "PostScript name for style %d ('%s') is too long (%d bytes; should be no more than 63 bytes).",
                 {iStyle, tName, iName.size()});
  }
  for (size_t i = 0; i < iName.size(); ++i) {
    if (IsLegal(iName[i])) continue;
    ReportResult(Severity::kMajorError,
                 "PostScript name for style %d ('%s') has a character (%c) in position %d which may not be used in a "
                 "PostScript font name.",
                 {iStyle, tName, RomanCharacter(iName[i]), i});
  }
}
