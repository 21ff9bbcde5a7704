#include "Tests/VornFontTesterUsability_post.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <string_view>
#include <unordered_map>

#include "TableAccess/AncillaryClasses/FTUnicodeMap.h"
#include "TableAccess/FTLimits.h"
#include "TableAccess/TableClasses/FTFontTable_hmtx.h"
#include "Tests/SfntFacts.h"

namespace {

using Table = FTFontTable_post;

constexpr std::string_view kNotdef = ".notdef";
constexpr std::string_view kNull = ".null";
/// In characters, which are the bytes of the table.
constexpr size_t kLongestName = 63;
constexpr double kSteepestAngle = 45;
constexpr uint16_t kItalicStyle = 0x0002;

constexpr uint32_t kFirstAscii = 0x21;
constexpr uint32_t kLastAscii = 0x7E;
/// The index of an ASCII character's standard name is the character less this number.
constexpr uint32_t kAsciiToName = 29;

constexpr bool IsPlain(char iCharacter) {
  return (iCharacter >= 'A' && iCharacter <= 'Z') || (iCharacter >= 'a' && iCharacter <= 'z') ||
         (iCharacter >= '0' && iCharacter <= '9') || iCharacter == '.' || iCharacter == '_' || iCharacter == ' ';
}

/// The ASCII character from U+0021 on that has this standard name; 0 for another name.
uint32_t AsciiOfName(std::string_view iName) {
  static const auto tCharacters = [] {
    std::unordered_map<std::string_view, uint32_t> tMap;
    for (uint32_t c = kFirstAscii; c <= kLastAscii; ++c) tMap.emplace(Table::StandardName(c - kAsciiToName), c);
    return tMap;
  }();
  const auto tFound = tCharacters.find(iName);
  return tFound == tCharacters.end() ? 0 : tFound->second;
}

bool IsOtherCase(uint32_t iFirst, uint32_t iSecond) {
  const uint32_t tLower = iFirst | 0x20;
  return tLower >= 'a' && tLower <= 'z' && (iFirst ^ iSecond) == 0x20;
}

/// The character that "uni0041" and "u1F600" stand for, none for another name.
std::optional<uint32_t> CharacterOfName(std::string_view iName) {
  const bool tIsUni = iName.starts_with("uni") && iName.size() == 7;
  const bool tIsU = iName.starts_with("u") && iName.size() >= 5 && iName.size() <= 7;
  if (!tIsUni && !tIsU) return std::nullopt;
  uint32_t tCharacter = 0;
  for (const char tDigit : iName.substr(tIsUni ? 3 : 1)) {
    const bool tIsDecimal = tDigit >= '0' && tDigit <= '9';
    if (!tIsDecimal && (tDigit < 'A' || tDigit > 'F')) return std::nullopt;
    tCharacter = tCharacter * 16 + static_cast<uint32_t>(tIsDecimal ? tDigit - '0' : tDigit - 'A' + 10);
  }
  return tCharacter;
}

/// Finds the first glyph with each name. A table of places, each of a glyph's number and one, that is never full: there
/// is one for most glyphs of all fonts, and no room to be made for each name.
class GlyphsByName {
 public:
  explicit GlyphsByName(const std::vector<std::optional<std::string>>& iNames)
      : _fNames(iNames), _fPlaces(std::bit_ceil(2 * iNames.size() + 1)) {}

  /// The first glyph that was added with the name of this one, which has a name.
  uint32_t Add(uint32_t iGlyph) {
    size_t tPlace = std::hash<std::string_view>()(*_fNames[iGlyph]);
    for (;; ++tPlace) {
      uint32_t& tTaken = _fPlaces[tPlace & (_fPlaces.size() - 1)];
      if (tTaken == 0) tTaken = iGlyph + 1;
      if (_fNames[tTaken - 1] == _fNames[iGlyph]) return tTaken - 1;
    }
  }

 private:
  const std::vector<std::optional<std::string>>& _fNames;
  std::vector<uint32_t> _fPlaces;
};

}  // namespace

bool VornFontTesterUsability_post::ExecuteTest() const {
  const auto* tTable = SfntFont().FindTable<Table>();
  if (!tTable || tTable->GetSize() < Table::kHeaderSize) return false;
  const At tHere(*this, {.table = Table::kTag});
  const uint32_t tFormat = tTable->GetFormat();
  if (tFormat == Table::kNoNames && SfntFont().HasTrueTypeGlyphs()) {
    ReportResultIfAsked(Severity::kInformation, "The font gives its glyphs no names");
  }
  if (tFormat == Table::kStandardNames || tFormat == Table::kStoredNames || tFormat == Table::kNameOffsets) {
    SfntFont().SpendWork(kFTStepsOfGlyphName * tTable->GetGlyphCount());
    CheckNames(CollectNames(*tTable, SfntFont().CountFontGlyphs()));
  }
  CheckItalicAngle(*tTable);
  CheckPitch(*tTable);
  if (tTable->GetUnderlinePosition() > 0) {
    ReportResultIfAsked(Severity::kTechnicalError, "The underline position is %d, above the baseline",
                        {tTable->GetUnderlinePosition()});
  }
  return true;
}

VornFontTesterUsability_post::Names VornFontTesterUsability_post::CollectNames(const Table& iTable,
                                                                               uint32_t iGlyphCount) {
  Names tNames(std::min(iGlyphCount, iTable.GetGlyphCount()));
  for (uint32_t i = 0; i < tNames.size(); ++i) tNames[i] = iTable.GetGlyphName(i);
  return tNames;
}

void VornFontTesterUsability_post::CheckNames(const Names& iNames) const {
  CheckReservedNames(iNames);
  CheckSpelling(iNames);
  CheckLengths(iNames);
  CheckRepetition(iNames);
  CheckNamesOfAscii(iNames);
  CheckUnicodeNames(iNames);
}

void VornFontTesterUsability_post::CheckReservedNames(const Names& iNames) const {
  if (!iNames.empty() && iNames[0] && *iNames[0] != kNotdef) {
    const At tHere(*this, {.glyph = 0});
    ReportResult(Severity::kMinorError, "Glyph 0 is named '%@'; it should be '.notdef'",
                 {SfntFacts::Shown(*iNames[0])});
  }
  uint32_t tCount = 0;
  uint32_t tFirst = 0;
  std::optional<uint32_t> tFirstNull;
  for (uint32_t i = 0; i < iNames.size(); ++i) {
    if (i != 0 && iNames[i] == kNotdef && tCount++ == 0) tFirst = i;
    if (i != 1 && iNames[i] == kNull && !tFirstNull) tFirstNull = i;
  }
  if (tCount > 0) {
    const At tHere(*this, {.glyph = tFirst});
    ReportResultIfAsked(Severity::kTechnicalError, "%d more glyphs are named '.notdef', the first of them glyph %d",
                        {tCount, tFirst});
  }
  if (tFirstNull) {
    const At tHere(*this, {.glyph = *tFirstNull});
    ReportResultIfAsked(Severity::kTechnicalError, "Glyph %d is named '.null'; that name is for glyph 1",
                        {*tFirstNull});
  }
}

/// Reports the glyphs whose names break a rule: their number, and the first one's name and index.
template <class Rule>
void VornFontTesterUsability_post::CheckEachName(Severity iSeverity, const Names& iNames, const char* iFormat,
                                                 Rule iBreaksRule) const {
  uint32_t tCount = 0;
  uint32_t tFirst = 0;
  for (uint32_t i = 0; i < iNames.size(); ++i) {
    if (iNames[i] && iBreaksRule(*iNames[i]) && tCount++ == 0) tFirst = i;
  }
  if (tCount == 0) return;
  const At tHere(*this, {.glyph = tFirst});
  ReportResult(iSeverity, iFormat, {tCount, SfntFacts::Shown(*iNames[tFirst]), tFirst});
}

void VornFontTesterUsability_post::CheckSpelling(const Names& iNames) const {
  const auto tIsEmpty = [](const std::optional<std::string>& iName) { return iName && iName->empty(); };
  if (const auto tEmpty = std::ranges::count_if(iNames, tIsEmpty)) {
    const auto tFirst = static_cast<uint32_t>(std::ranges::find_if(iNames, tIsEmpty) - iNames.begin());
    const At tHere(*this, {.glyph = tFirst});
    ReportResult(Severity::kMinorError, "%d glyphs have an empty name, the first of them glyph %d", {tEmpty, tFirst});
  }
  CheckEachName(Severity::kMinorError, iNames, "%d glyph names contain a space, the first of them '%@' (glyph %d)",
                [](const std::string& iName) { return iName.find(' ') != std::string::npos; });
  if (!ExecuteTestsWithSeverity(Severity::kTechnicalError)) return;
  CheckEachName(Severity::kTechnicalError, iNames,
                "%d glyph names contain characters other than letters, digits, periods and underscores, the first of "
                "them '%@' (glyph %d)",
                [](const std::string& iName) { return !std::ranges::all_of(iName, IsPlain); });
}

void VornFontTesterUsability_post::CheckLengths(const Names& iNames) const {
  if (!ExecuteTestsWithSeverity(Severity::kTechnicalError)) return;
  const auto tIsLong = [](const std::optional<std::string>& iName) {
    return iName && iName->size() > kLongestName && SfntFacts::Characters(*iName).size() > kLongestName;
  };
  if (const auto tCount = std::ranges::count_if(iNames, tIsLong)) {
    const auto tFirst = static_cast<uint32_t>(std::ranges::find_if(iNames, tIsLong) - iNames.begin());
    const At tHere(*this, {.glyph = tFirst});
    ReportResult(Severity::kTechnicalError,
                 "%d glyph names are longer than %d characters, the first of them '%@' (glyph %d)",
                 {tCount, kLongestName, SfntFacts::Shown(*iNames[tFirst]), tFirst});
  }
}

void VornFontTesterUsability_post::CheckRepetition(const Names& iNames) const {
  GlyphsByName tGlyphs(iNames);
  uint32_t tCount = 0;
  uint32_t tFirst = 0;
  uint32_t tSecond = 0;
  for (uint32_t i = 0; i < iNames.size(); ++i) {
    if (!iNames[i] || iNames[i]->empty() || *iNames[i] == kNotdef) continue;
    if (const uint32_t tEarlier = tGlyphs.Add(i); tEarlier != i && tCount++ == 0) {
      tFirst = tEarlier;
      tSecond = i;
    }
  }
  if (tCount == 0) return;
  const At tHere(*this, {.glyph = tSecond});
  ReportResult(Severity::kMinorError,
               "%d glyphs have the name of an earlier glyph; glyphs %d and %d are both named '%@'",
               {tCount, tFirst, tSecond, SfntFacts::Shown(*iNames[tFirst])});
}

void VornFontTesterUsability_post::CheckNamesOfAscii(const Names& iNames) const {
  uint32_t tCount = 0;
  uint32_t tFirst = 0;
  for (uint32_t c = kFirstAscii; c <= kLastAscii; ++c) {
    const uint16_t tGlyph = SfntFont().UnicodeMap().GlyphFor(c);
    if (tGlyph == 0 || tGlyph >= iNames.size() || !iNames[tGlyph]) continue;
    const uint32_t tNamed = AsciiOfName(*iNames[tGlyph]);
    if (tNamed != 0 && tNamed != c && !IsOtherCase(c, tNamed) && tCount++ == 0) tFirst = c;
  }
  if (tCount == 0) return;
  const uint16_t tGlyph = SfntFont().UnicodeMap().GlyphFor(tFirst);
  const At tHere(*this, {.glyph = tGlyph});
  ReportResult(Severity::kMajorError,
               "%d characters are mapped to glyphs named after other characters: U+%04X to glyph %d, named '%@'",
               {tCount, tFirst, tGlyph, SfntFacts::Shown(*iNames[tGlyph])});
}

void VornFontTesterUsability_post::CheckUnicodeNames(const Names& iNames) const {
  if (!ExecuteTestsWithSeverity(Severity::kTechnicalError)) return;
  uint32_t tCount = 0;
  uint32_t tFirst = 0;
  for (uint32_t i = 0; i < iNames.size(); ++i) {
    const auto tCharacter = iNames[i] ? CharacterOfName(*iNames[i]) : std::nullopt;
    if (!tCharacter) continue;
    const uint16_t tGlyph = SfntFont().UnicodeMap().GlyphFor(*tCharacter);
    if (tGlyph != 0 && tGlyph != i && tCount++ == 0) tFirst = i;
  }
  if (tCount == 0) return;
  const uint32_t tCharacter = *CharacterOfName(*iNames[tFirst]);
  const At tHere(*this, {.glyph = tFirst});
  ReportResult(
      Severity::kTechnicalError,
      "%d glyphs are named after characters that are mapped to other glyphs: glyph %d is named '%@', but "
      "U+%04X is glyph %d",
      {tCount, tFirst, SfntFacts::Shown(*iNames[tFirst]), tCharacter, SfntFont().UnicodeMap().GlyphFor(tCharacter)});
}

void VornFontTesterUsability_post::CheckItalicAngle(const Table& iTable) const {
  const double tAngle = iTable.GetItalicAngle() / 65536.0;
  if (std::abs(tAngle) > kSteepestAngle) {
    ReportResult(Severity::kMinorError, "The italic angle is %f degrees, which is unlikely", {tAngle});
  } else if (tAngle > 0) {
    ReportResult(Severity::kMinorError, "The italic angle is %f degrees, which leans to the left", {tAngle});
  }
  const FTFontTable_head* tHeader = SfntFacts::Header(SfntFont());
  if (!tHeader) return;
  const bool tIsItalic = (tHeader->ValdourStyle() & kItalicStyle) != 0;
  if (tAngle != 0 && !tIsItalic) {
    ReportResult(Severity::kMinorError, "The italic angle is %f degrees, but the header does not call the font italic",
                 {tAngle});
  } else if (tAngle == 0 && tIsItalic) {
    ReportResult(Severity::kMinorError, "The header calls the font italic, but the italic angle is zero");
  }
}

void VornFontTesterUsability_post::CheckPitch(const Table& iTable) const {
  if (!SfntFont().HasTaggedTable(FTTag("hmtx"))) return;
  if (iTable.IsFixedPitch()) {
    CheckFixedPitch();
  } else {
    CheckVariablePitch();
  }
}

void VornFontTesterUsability_post::CheckVariablePitch() const {
  const FTUnicodeMap& tMap = SfntFont().UnicodeMap();
  if (!tMap.Maps('i') || !tMap.Maps('M')) return;
  uint16_t tWidth = 0;
  const FTFontTable_hmtx& tMetrics = *SfntFacts::Metrics(SfntFont());
  const uint32_t tGlyphCount = SfntFont().CountFontGlyphs();
  for (uint32_t i = 0; i < tGlyphCount; ++i) {
    const uint16_t tAdvance = tMetrics.GetMetrics(static_cast<uint16_t>(i)).advance;
    if (tAdvance == 0 || tAdvance == tWidth) continue;
    if (tWidth != 0) return;
    tWidth = tAdvance;
  }
  if (tWidth == 0) return;
  ReportResult(Severity::kMinorError, "Every glyph is %d units wide, but the font is not marked as fixed-pitch",
               {tWidth});
}

void VornFontTesterUsability_post::CheckFixedPitch() const {
  std::optional<uint32_t> tFirst;
  uint16_t tWidth = 0;
  for (uint32_t c = kFirstAscii; c <= kLastAscii; ++c) {
    const uint16_t tGlyph = SfntFont().UnicodeMap().GlyphFor(c);
    const auto tAdvance = tGlyph == 0 ? std::nullopt : SfntFacts::Advance(SfntFont(), tGlyph);
    if (!tAdvance) continue;
    if (!tFirst) {
      tFirst = c;
      tWidth = *tAdvance;
    } else if (*tAdvance != tWidth) {
      ReportResult(Severity::kMinorError,
                   "The font is marked as fixed-pitch, but U+%04X is %d units wide and U+%04X is %d",
                   {*tFirst, tWidth, c, *tAdvance});
      return;
    }
  }
}
