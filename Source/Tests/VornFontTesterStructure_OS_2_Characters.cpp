#include <algorithm>
#include <array>

#include "TableAccess/AncillaryClasses/FTUnicodeMap.h"
#include "Tests/VornFontTesterStructure_OS_2.h"

namespace {

using Fields = FTOS2Fields;

constexpr uint32_t kReservedRanges = 0xF8000000;  // of the fourth word
constexpr uint32_t kReservedCodePages1 = 0x1FC0FE00;
constexpr uint32_t kReservedCodePages2 = 0x0000FFFF;
constexpr uint32_t kSymbolCodePage = uint32_t{1} << 31;

/// The highest value of a character field, which stands for all above.
constexpr uint32_t kHighestField = 0xFFFF;

/// The range bit of the characters above U+FFFF.
constexpr uint32_t kSupplementaryBit = 57;

/// Range bits that stand for one block of characters which a font should not claim without any.
constexpr struct {
  uint32_t bit;
  uint32_t first;
  uint32_t last;
} kRanges[] = {{0, 0x0020, 0x007E},  {1, 0x00A0, 0x00FF},  {7, 0x0370, 0x03FF},  {9, 0x0400, 0x04FF},
               {11, 0x0590, 0x05FF}, {13, 0x0600, 0x06FF}, {15, 0x0900, 0x097F}, {24, 0x0E00, 0x0E7F},
               {49, 0x3040, 0x309F}, {50, 0x30A0, 0x30FF}, {56, 0xAC00, 0xD7AF}};

}  // namespace

/// Whether an encoding is that of a symbol font, whose characters are numbers of its own.
bool VornFontTesterStructure_OS_2::IsSymbolFont() const {
  return std::ranges::any_of(SfntFont().UnicodeMap().Records(), [](const FTUnicodeMap::Record& iRecord) {
    return iRecord.platform == 3 && iRecord.script == 0;
  });
}

void VornFontTesterStructure_OS_2::CheckCharacterRanges(const Fields& iFields) const {
  if (!ExecuteTestsWithSeverity(Severity::kTechnicalError)) return;
  if (iFields.UnicodeRange4() & kReservedRanges) {
    ReportResult(Severity::kTechnicalError, "The character range word 4 (0x%08X) has reserved bits set",
                 {iFields.UnicodeRange4()});
  }
  if (!SfntFont().UnicodeMap().Empty()) CheckRangeBits(iFields);
}

void VornFontTesterStructure_OS_2::CheckRangeBits(const Fields& iFields) const {
  const FTGlyphPages& tGlyphs = SfntFont().UnicodeMap().Glyphs();
  const std::array tWords = {iFields.UnicodeRange1(), iFields.UnicodeRange2(), iFields.UnicodeRange3(),
                             iFields.UnicodeRange4()};
  const auto tIsSet = [&](uint32_t iBit) { return (tWords[iBit / 32] >> iBit % 32 & 1) != 0; };
  if (iFields.Version() >= 2 && iFields.Has(Fields::kUnicodeRange2) &&
      tIsSet(kSupplementaryBit) != tGlyphs.FirstFrom(0x10000).has_value()) {
    ReportResult(Severity::kTechnicalError, "Range bit %d does not agree with the characters of the font",
                 {kSupplementaryBit});
  }
  for (const auto& [tBit, tFirst, tLast] : kRanges) {
    if (!tIsSet(tBit) || tGlyphs.FirstFrom(tFirst).value_or(tLast + 1) <= tLast) continue;
    ReportResult(Severity::kTechnicalError, "Range bit %d is set, but the font has no character from U+%04X to U+%04X",
                 {tBit, tFirst, tLast});
  }
}

void VornFontTesterStructure_OS_2::CheckFirstAndLast(const Fields& iFields) const {
  const FTGlyphPages& tGlyphs = SfntFont().UnicodeMap().Glyphs();
  if (!ExecuteTestsWithSeverity(Severity::kTechnicalError) || tGlyphs.Empty() || IsSymbolFont()) return;
  const auto tCapped = [](uint32_t iCharacter) { return std::min(iCharacter, kHighestField); };
  const uint32_t tLowest = tCapped(*tGlyphs.FirstFrom(0));
  const uint32_t tLowestPrinted = tCapped(tGlyphs.FirstFrom(' ').value_or(tLowest));
  const uint32_t tHighest = tCapped(*tGlyphs.LastUpTo(0x10FFFF));
  const uint32_t tHighestBasic = tGlyphs.LastUpTo(0xFFFF).value_or(tHighest);
  const uint32_t tFirst = iFields.FirstCharIndex();
  const uint32_t tLast = iFields.LastCharIndex();
  if (iFields.Has(Fields::kFirstCharIndex) && tFirst != tLowest && tFirst != tLowestPrinted) {
    ReportResult(Severity::kTechnicalError, "The first character is given as U+%04X, but is U+%04X", {tFirst, tLowest});
  }
  if (iFields.Has(Fields::kLastCharIndex) && tLast != tHighest && tLast != tHighestBasic) {
    ReportResult(Severity::kTechnicalError, "The last character is given as U+%04X, but is U+%04X", {tLast, tHighest});
  }
}

void VornFontTesterStructure_OS_2::CheckCodePages(const Fields& iFields) const {
  if (!ExecuteTestsWithSeverity(Severity::kTechnicalError) || !iFields.Has(Fields::kCodePageRange2)) return;
  const uint32_t tFirst = iFields.CodePageRange1();
  const uint32_t tSecond = iFields.CodePageRange2();
  if (tFirst & kReservedCodePages1 || tSecond & kReservedCodePages2) {
    ReportResult(Severity::kTechnicalError, "The code page words 0x%08X 0x%08X have reserved bits set",
                 {tFirst, tSecond});
  }
  if (tFirst == 0 && tSecond == 0) ReportResult(Severity::kTechnicalError, "No code page is declared");
  if (((tFirst & kSymbolCodePage) != 0) != IsSymbolFont()) {
    ReportResult(Severity::kTechnicalError, "Code page bit 31 (symbols) does not agree with the encodings of the font");
  }
}

void VornFontTesterStructure_OS_2::CheckSpecialCharacters(const Fields& iFields) const {
  const FTUnicodeMap& tMap = SfntFont().UnicodeMap();
  if (!ExecuteTestsWithSeverity(Severity::kTechnicalError) || tMap.Empty() || IsSymbolFont()) return;
  const uint32_t tBreak = iFields.BreakChar();
  const uint32_t tDefault = iFields.DefaultChar();
  if (iFields.Has(Fields::kBreakChar) && tBreak != ' ' && !tMap.Maps(tBreak)) {
    ReportResult(Severity::kTechnicalError, "The break character U+%04X is not mapped", {tBreak});
  }
  if (tDefault != 0 && !tMap.Maps(tDefault)) {
    ReportResult(Severity::kTechnicalError, "The default character U+%04X is not mapped", {tDefault});
  }
}
