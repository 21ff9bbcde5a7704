#include "Tests/VornFontTesterUsability_cmap.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>

#include "Platform/Letters.h"
#include "TableAccess/TableClasses/FTFontTable_cmap.h"
#include "Tests/SfntFacts.h"

namespace {

constexpr uint32_t kSpace = 0x0020;
constexpr uint32_t kNoBreakSpace = 0x00A0;
constexpr uint32_t kEuro = 0x20AC;
constexpr uint32_t kLastCharacter = 0x10FFFF;

struct Range {
  uint32_t first;
  uint32_t last;
  constexpr uint32_t Size() const { return last - first + 1; }
  constexpr bool Contains(uint32_t iCharacter) const { return first <= iCharacter && iCharacter <= last; }
};

constexpr Range kLowerCase = {'a', 'z'};
constexpr Range kUpperCase = {'A', 'Z'};
constexpr Range kDigits = {'0', '9'};
constexpr Range kPrintableAscii = {0x21, 0x7E};

/// Characters that draw nothing.
constexpr Range kSpaces[] = {{0x0020, 0x0020}, {0x00A0, 0x00A0}, {0x2000, 0x200A},
                             {0x202F, 0x202F}, {0x205F, 0x205F}, {0x3000, 0x3000}};

constexpr bool IsPrivate(uint32_t iCharacter) {
  return Range{0xE000, 0xF8FF}.Contains(iCharacter) || iCharacter >= 0xF0000;
}

constexpr bool IsSurrogate(uint32_t iCharacter) { return Range{0xD800, 0xDFFF}.Contains(iCharacter); }

constexpr bool IsNoncharacter(uint32_t iCharacter) {
  return Range{0xFDD0, 0xFDEF}.Contains(iCharacter) || (iCharacter & 0xFFFE) == 0xFFFE;
}

/// How many characters something holds for, and the first of them.
struct Tally {
  uint32_t count = 0;
  uint32_t first = 0;

  void Add(uint32_t iCharacter) {
    if (count++ == 0) first = iCharacter;
  }
};

template <class Rule>
Tally Count(const FTUnicodeMap& iMap, Rule iRule) {
  Tally tTally;
  iMap.Glyphs().ForEach([&](uint32_t iCharacter, uint16_t iGlyph) {
    if (iRule(iCharacter, iGlyph)) tTally.Add(iCharacter);
    return true;
  });
  return tTally;
}

Tally CountMissing(const FTUnicodeMap& iMap, const Range& iRange) {
  Tally tTally;
  for (uint32_t c = iRange.first; c <= iRange.last; ++c) {
    if (!iMap.Maps(c)) tTally.Add(c);
  }
  return tTally;
}

}  // namespace

bool VornFontTesterUsability_cmap::ExecuteTest() const {
  const At tHere(*this, {.table = FTFontTable_cmap::kTag});
  const FTUnicodeMap& tMap = SfntFont().UnicodeMap();
  if (!CheckEncodings(tMap)) return true;
  CheckFormats(tMap);
  CheckGlyphsExist(tMap);
  const uint32_t tPrivate = Count(tMap, [](uint32_t c, uint16_t) { return IsPrivate(c); }).count;
  const bool tIsPrivate = uint64_t{10} * tPrivate > uint64_t{9} * tMap.Glyphs().Count();
  if (!tIsPrivate) CheckSpaces(tMap);
  CheckBlanks(tMap);
  CheckBasicSets(tMap);
  CheckNoncharacters(tMap);
  CheckReach(tMap);
  if (tIsPrivate) {
    ReportResultIfAsked(Severity::kInformation, "%d of the %d characters are private-use characters",
                        {tPrivate, tMap.Glyphs().Count()});
  }
  CheckEuro(tMap);
  return true;
}

/// Whether there are characters to look at.
bool VornFontTesterUsability_cmap::CheckEncodings(const FTUnicodeMap& iMap) const {
  if (iMap.Records().empty()) {
    ReportResult(Severity::kFatalError, "The font has no character mapping");
  } else if (std::ranges::none_of(iMap.Records(), &FTUnicodeMap::Record::IsUnicode)) {
    ReportNoUnicodeEncoding(iMap);
  } else if (iMap.Encodings().empty()) {
    ReportResult(Severity::kMajorError,
                 "None of the Unicode encodings has a format that text layout reads (4, 6, 10, 12 or 13)");
  } else if (iMap.Empty()) {
    ReportResult(Severity::kFatalError, "The Unicode encodings map no character to a glyph");
  } else {
    return true;
  }
  return false;
}

void VornFontTesterUsability_cmap::ReportNoUnicodeEncoding(const FTUnicodeMap& iMap) const {
  const auto tHas = [&](auto iRule) { return std::ranges::any_of(iMap.Records(), iRule); };
  if (tHas([](const auto& iRecord) { return iRecord.platform == 3 && iRecord.script == 0; })) {
    ReportResultIfAsked(Severity::kInformation, "The font is a symbol font; its characters have no Unicode values");
  } else if (tHas([](const auto& iRecord) { return iRecord.platform == 1; })) {
    ReportResult(Severity::kMinorError, "The font has no Unicode encoding, only encodings of the Valdor platform");
  } else {
    ReportResult(Severity::kFatalError, "The font has no encoding that text layout can use");
  }
}

void VornFontTesterUsability_cmap::CheckFormats(const FTUnicodeMap& iMap) const {
  for (const FTUnicodeMap::Record& tRecord : iMap.Records()) {
    if (!tRecord.IsUnicode() || !tRecord.inside) continue;
    const bool tIsForAll = tRecord.format == 12 || tRecord.format == 13;
    if (tRecord.IsReadable() && (tRecord.IsFull() || !tIsForAll)) continue;
    const At tHere(*this, {.offset = tRecord.offset});
    ReportResultIfAsked(Severity::kTechnicalError,
                        "Encoding %d (platform %d, script %d) has format %d, which is not meant for it",
                        {tRecord.index, tRecord.platform, tRecord.script, tRecord.format});
  }
}

void VornFontTesterUsability_cmap::CheckGlyphsExist(const FTUnicodeMap& iMap) const {
  const uint16_t tGlyphCount = SfntFont().CountFontGlyphs();
  if (tGlyphCount == 0) return;
  const Tally tBeyond = Count(iMap, [=](uint32_t, uint16_t iGlyph) { return iGlyph >= tGlyphCount; });
  if (tBeyond.count == 0) return;
  ReportResult(Severity::kMajorError,
               "%d characters are mapped to glyphs that the font does not have; U+%04X is mapped to glyph %d of %d",
               {tBeyond.count, tBeyond.first, iMap.GlyphFor(tBeyond.first), tGlyphCount});
}

/// The character's glyph when the font has it; none also when the number of glyphs is not known.
std::optional<uint16_t> VornFontTesterUsability_cmap::ExistingGlyph(const FTUnicodeMap& iMap,
                                                                    uint32_t iCharacter) const {
  const uint16_t tGlyph = iMap.GlyphFor(iCharacter);
  return tGlyph != 0 && tGlyph < SfntFont().CountFontGlyphs() ? std::optional(tGlyph) : std::nullopt;
}

void VornFontTesterUsability_cmap::CheckSpaces(const FTUnicodeMap& iMap) const {
  if (!iMap.Maps(kSpace)) {
    ReportResult(Severity::kMajorError, "The font has no space character (U+%04X)", {kSpace});
  }
  if (!iMap.Maps(kNoBreakSpace)) {
    ReportResultIfAsked(Severity::kInformation, "The font has no no-break space (U+%04X)", {kNoBreakSpace});
  }
}

void VornFontTesterUsability_cmap::CheckBlanks(const FTUnicodeMap& iMap) const {
  const std::optional<FTGlyphInk> tInk = SfntFacts::GlyphInk(SfntFont());
  if (tInk) CheckBlankSpaces(iMap, *tInk);
  CheckSpaceWidths(iMap);
  if (tInk) CheckBlankLetters(iMap, *tInk);
}

void VornFontTesterUsability_cmap::CheckBlankSpaces(const FTUnicodeMap& iMap, const FTGlyphInk& iInk) const {
  for (const auto& [tFirst, tLast] : kSpaces) {
    for (uint32_t c = tFirst; c <= tLast; ++c) {
      const std::optional<uint16_t> tGlyph = ExistingGlyph(iMap, c);
      if (!tGlyph || iInk.IsBlank(*tGlyph)) continue;
      const At tHere(*this, {.glyph = *tGlyph});
      ReportResult(c < 0x2000 ? Severity::kMajorError : Severity::kMinorError,
                   "Character U+%04X must be blank, but glyph %d is not", {c, *tGlyph});
    }
  }
}

void VornFontTesterUsability_cmap::CheckSpaceWidths(const FTUnicodeMap& iMap) const {
  const auto tAdvance = [&](uint32_t iCharacter) -> std::optional<uint16_t> {
    const std::optional<uint16_t> tGlyph = ExistingGlyph(iMap, iCharacter);
    return tGlyph ? SfntFacts::Advance(SfntFont(), *tGlyph) : std::nullopt;
  };
  const std::optional<uint16_t> tSpace = tAdvance(kSpace);
  const std::optional<uint16_t> tNoBreakSpace = tAdvance(kNoBreakSpace);
  if (tSpace && *tSpace == 0) {
    const At tHere(*this, {.glyph = iMap.GlyphFor(kSpace)});
    ReportResult(Severity::kMajorError, "The space character (glyph %d) has no width", {iMap.GlyphFor(kSpace)});
  }
  const int32_t tEm = SfntFont().GetFontUnitsPerEm();
  if (tSpace && tNoBreakSpace && tEm > 0 && 100 * std::abs(*tSpace - *tNoBreakSpace) > tEm) {
    ReportResult(Severity::kMinorError, "The space is %d units wide, but the no-break space %d",
                 {*tSpace, *tNoBreakSpace});
  }
}

void VornFontTesterUsability_cmap::CheckBlankLetters(const FTUnicodeMap& iMap, const FTGlyphInk& iInk) const {
  for (const uint32_t tTag : {FTTag("CBDT"), FTTag("COLR"), FTTag("SVG "), FTTag("sbix")}) {
    if (SfntFont().HasTaggedTable(tTag)) return;
  }
  const uint16_t tGlyphCount = SfntFont().CountFontGlyphs();
  if (SfntFont().HasSbitGlyphs() || tGlyphCount == 0) return;
  const Tally tBlank = Count(iMap, [&](uint32_t iCharacter, uint16_t iGlyph) {
    return iGlyph < tGlyphCount && iInk.IsBlank(iGlyph) && Tova::IsLetterOrDigit(iCharacter);
  });
  if (tBlank.count == 0) return;
  const uint16_t tGlyph = iMap.GlyphFor(tBlank.first);
  const At tHere(*this, {.glyph = tGlyph});
  ReportResult(Severity::kMajorError, "%d letters or digits have a blank glyph, the first of them U+%04X (glyph %d)",
               {tBlank.count, tBlank.first, tGlyph});
}

void VornFontTesterUsability_cmap::CheckBasicSets(const FTUnicodeMap& iMap) const {
  const auto tCheck = [&](const Range& iSet) {
    const Tally tMissing = CountMissing(iMap, iSet);
    const uint32_t tMapped = iSet.Size() - tMissing.count;
    if (tMissing.count > 0 && 4 * tMapped >= 3 * iSet.Size()) {
      ReportResult(Severity::kMinorError, "Of the %d characters U+%04X to U+%04X the font has %d; U+%04X is missing",
                   {iSet.Size(), iSet.first, iSet.last, tMapped, tMissing.first});
    }
    return tMissing.count == 0;
  };
  bool tPartsAreWhole = true;
  for (const Range& tSet : {kLowerCase, kUpperCase, kDigits}) tPartsAreWhole = tCheck(tSet) && tPartsAreWhole;
  if (tPartsAreWhole) tCheck(kPrintableAscii);
}

void VornFontTesterUsability_cmap::CheckNoncharacters(const FTUnicodeMap& iMap) const {
  if (!ExecuteTestsWithSeverity(Severity::kTechnicalError)) return;
  const Tally tSurrogates = Count(iMap, [](uint32_t c, uint16_t) { return IsSurrogate(c); });
  if (tSurrogates.count > 0) {
    ReportResult(Severity::kTechnicalError, "%d surrogates are mapped, the first of them U+%04X",
                 {tSurrogates.count, tSurrogates.first});
  }
  const Tally tNoncharacters = Count(iMap, [](uint32_t c, uint16_t) { return IsNoncharacter(c); });
  if (tNoncharacters.count > 0) {
    ReportResult(Severity::kTechnicalError, "%d noncharacters are mapped, the first of them U+%04X",
                 {tNoncharacters.count, tNoncharacters.first});
  }
}

void VornFontTesterUsability_cmap::CheckReach(const FTUnicodeMap& iMap) const {
  for (const FTUnicodeMap::Encoding& tEncoding : iMap.Encodings()) {
    if (tEncoding.reach <= kLastCharacter) continue;
    const At tHere(*this, {.offset = tEncoding.record.offset});
    ReportResult(Severity::kMajorError, "Encoding %d maps values up to 0x%08lX, beyond U+10FFFF",
                 {tEncoding.record.index, tEncoding.reach});
  }
}

void VornFontTesterUsability_cmap::CheckEuro(const FTUnicodeMap& iMap) const {
  if (iMap.Maps(kEuro) || CountMissing(iMap, kPrintableAscii).count > 0) return;
  ReportResultIfAsked(Severity::kInformation, "The font has the printable ASCII characters but no euro sign (U+%04X)",
                      {kEuro});
}
