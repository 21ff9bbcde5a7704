#include "Tests/VornFontTesterConsistency_cmap.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <optional>

#include "Tests/SfntFacts.h"

namespace {

constexpr uint32_t kFirstSupplementary = 0x10000;
constexpr uint32_t kEndOfUnicode = 0x110000;

/// Codes of the Roman encoding whose character differs between editions of it.
constexpr uint32_t kUnsettled[] = {0xB5, 0xBD, 0xC6, 0xCA, 0xDB, 0xF0};

/// How many characters something holds for, and the first of them.
struct Tally {
  uint32_t count = 0;
  uint32_t first = 0;

  void Add(uint32_t iCharacter) {
    if (count++ == 0) first = iCharacter;
  }
  /// The characters of a word of a page, those from iFirst on.
  void AddWord(uint32_t iFirst, uint32_t iWord) {
    if (iWord == 0) return;
    if (count == 0) first = iFirst + static_cast<uint32_t>(std::countr_zero(iWord));
    count += static_cast<uint32_t>(std::popcount(iWord));
  }
};

/// The characters below the limit that one encoding has and the other lacks.
Tally Missing(const FTGlyphPages& iHere, const FTGlyphPages& iThere, uint32_t iLimit = kEndOfUnicode) {
  Tally tMissing;
  for (const FTGlyphPages::Page* tPage : iHere.Pages()) {
    const uint32_t tStart = tPage->number * FTGlyphPages::kPageSize;
    if (tStart >= iLimit) break;
    const FTGlyphPages::Page* tOther = iThere.FindPage(tPage->number);
    for (uint32_t i = 0; i < tPage->words.size(); ++i) {
      tMissing.AddWord(tStart + 32 * i, tPage->words[i] & ~(tOther ? tOther->words[i] : 0));
    }
  }
  return tMissing;
}

/// The characters with one glyph here and another there.
Tally Disagreements(const FTGlyphPages& iHere, const FTGlyphPages& iThere) {
  Tally tDisagreements;
  for (const FTGlyphPages::Page* tPage : iHere.Pages()) {
    const FTGlyphPages::Page* tOther = iThere.FindPage(tPage->number);
    if (!tOther || tOther->glyphs == tPage->glyphs) continue;
    for (uint32_t i = 0; i < FTGlyphPages::kPageSize; ++i) {
      const bool tBothMap = tPage->glyphs[i] != 0 && tOther->glyphs[i] != 0;
      if (tBothMap && tPage->glyphs[i] != tOther->glyphs[i]) {
        tDisagreements.Add(tPage->number * FTGlyphPages::kPageSize + i);
      }
    }
  }
  return tDisagreements;
}

/// The Unicode character of a code of the Roman encoding; none without one.
std::optional<uint32_t> RomanCharacter(uint8_t iCode) {
  const auto tText = Tova::Adopt(TovaStringCreateWithBytes(&iCode, 1, kTovaTextEncodingRoman));
  const std::u32string tCharacters = SfntFacts::Characters(Tova::Text(tText));
  return tCharacters.size() == 1 ? std::optional<uint32_t>(tCharacters[0]) : std::nullopt;
}

/// The glyph of a one-byte code in a subtable of format 0 or 6, from its bytes.
uint16_t GlyphOfCode(Tova::ByteView iSubtable, uint32_t iCode) {
  if (iSubtable.U16(0) == 0) return iSubtable.U8(6 + iCode);
  const uint32_t tFirst = iSubtable.U16(6);
  const bool tHasCode = iCode >= tFirst && iCode - tFirst < iSubtable.U16(8);
  return tHasCode ? iSubtable.U16(10 + uint64_t{2} * (iCode - tFirst)) : uint16_t{0};
}

}  // namespace

void VornFontTesterConsistency_cmap::CheckTable(const FTFontTable_cmap& iTable) const {
  const auto& tEncodings = SfntFont().UnicodeMap().Encodings();
  for (auto tFirst = tEncodings.begin(); tFirst != tEncodings.end(); ++tFirst) {
    for (auto tSecond = tFirst + 1; tSecond != tEncodings.end(); ++tSecond) CheckPair(*tFirst, *tSecond);
  }
  CheckRoman(iTable);
}

void VornFontTesterConsistency_cmap::CheckPair(const Encoding& iFirst, const Encoding& iSecond) const {
  const uint32_t tFirst = iFirst.record.index;
  const uint32_t tSecond = iSecond.record.index;
  if (const Tally tOther = Disagreements(iFirst.glyphs, iSecond.glyphs); tOther.count > 0) {
    ReportResult(Severity::kMajorError,
                 "Encodings %d and %d disagree on %d characters: U+%04X is glyph %d in the first and glyph %d in the "
                 "second",
                 {tFirst, tSecond, tOther.count, tOther.first, iFirst.glyphs.GlyphFor(tOther.first),
                  iSecond.glyphs.GlyphFor(tOther.first)});
  }
  const auto tReportLack = [this](uint32_t iLacking, const Tally& iMissing, uint32_t iOther) {
    if (iMissing.count == 0) return;
    ReportResult(Severity::kMinorError, "Encoding %d lacks %d characters of encoding %d, the first of them U+%04X",
                 {iLacking, iMissing.count, iOther, iMissing.first});
  };
  if (iFirst.record.IsFull() == iSecond.record.IsFull()) {
    tReportLack(tFirst, Missing(iSecond.glyphs, iFirst.glyphs), tSecond);
    tReportLack(tSecond, Missing(iFirst.glyphs, iSecond.glyphs), tFirst);
    return;
  }
  const Encoding& tFull = iFirst.record.IsFull() ? iFirst : iSecond;
  const Encoding& tBasic = iFirst.record.IsFull() ? iSecond : iFirst;
  if (const Tally tMissing = Missing(tBasic.glyphs, tFull.glyphs); tMissing.count > 0) {
    ReportResult(Severity::kMajorError,
                 "Encoding %d should have all characters of encoding %d, but lacks %d, the first of them U+%04X",
                 {tFull.record.index, tBasic.record.index, tMissing.count, tMissing.first});
  }
  tReportLack(tBasic.record.index, Missing(tFull.glyphs, tBasic.glyphs, kFirstSupplementary), tFull.record.index);
}

void VornFontTesterConsistency_cmap::CheckRoman(const FTFontTable_cmap& iTable) const {
  const FTUnicodeMap& tMap = SfntFont().UnicodeMap();
  const auto tRecord = std::ranges::find_if(
      tMap.Records(), [](const FTUnicodeMap::Record& iRecord) { return iRecord.platform == 1 && iRecord.script == 0; });
  if (tRecord == tMap.Records().end() || (tRecord->format != 0 && tRecord->format != 6)) return;
  const Tova::ByteView tSubtable = iTable.Bytes().From(tRecord->offset);
  uint32_t tCount = 0;
  uint8_t tFirst = 0;
  for (uint32_t tCode = 0x20; tCode <= 0xFF; ++tCode) {
    const bool tIsSettled =
        tCode <= 0x7E || (tCode >= 0x80 && std::ranges::find(kUnsettled, tCode) == std::end(kUnsettled));
    const uint16_t tGlyph = tIsSettled ? GlyphOfCode(tSubtable, tCode) : uint16_t{0};
    if (tGlyph == 0) continue;
    const auto tCharacter = RomanCharacter(static_cast<uint8_t>(tCode));
    const uint16_t tUnicodeGlyph = tCharacter ? tMap.GlyphFor(*tCharacter) : uint16_t{0};
    if (tUnicodeGlyph == 0 || tUnicodeGlyph == tGlyph) continue;
    if (tCount++ == 0) tFirst = static_cast<uint8_t>(tCode);
  }
  if (tCount == 0) return;
  const uint32_t tCharacter = *RomanCharacter(tFirst);
  ReportResult(Severity::kMinorError,
               "Encoding %d disagrees with the Unicode encodings on %d characters: code 0x%02X is glyph %d, but U+%04X "
               "is glyph %d",
               {tRecord->index, tCount, tFirst, GlyphOfCode(tSubtable, tFirst), tCharacter, tMap.GlyphFor(tCharacter)});
}
