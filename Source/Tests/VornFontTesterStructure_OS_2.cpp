#include "Tests/VornFontTesterStructure_OS_2.h"

#include <array>
#include <bit>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "TableAccess/TableClasses/FTFontTable_post.h"
#include "Tests/SfntFacts.h"

namespace {

using Fields = FTOS2Fields;

/// The lengths of the versions, in bytes. Version 0 was 68 bytes long in its first edition.
constexpr uint64_t kLengths[] = {78, 86, 96, 96, 96, 100};
constexpr uint64_t kFirstEditionLength = 68;

/// Bits of the embedding word.
constexpr uint16_t kReservedEmbedding = 0xFCF1;
constexpr uint16_t kEmbeddingLevels = 0x000E;
constexpr uint16_t kRestricted = 0x0002;

/// Bits of the style word, and those of the header's.
constexpr uint16_t kItalic = 1 << 0;
constexpr uint16_t kBold = 1 << 5;
constexpr uint16_t kRegular = 1 << 6;
constexpr uint16_t kOblique = 1 << 9;
constexpr uint16_t kReservedStyles = 0xFC00;
constexpr uint16_t kStylesOfVersion4 = 0x0380;
constexpr uint16_t kHeaderBold = 1 << 0;
constexpr uint16_t kHeaderItalic = 1 << 1;

/// The kind of family that the other PANOSE digits are judged for, and the digit and value of monospaced faces.
constexpr uint8_t kLatinText = 2;
constexpr uint8_t kProportion = 3;
constexpr uint8_t kMonospaced = 9;

}  // namespace

bool VornFontTesterStructure_OS_2::ExecuteTest() const {
  const auto tFields = SfntFacts::OS2Fields(SfntFont());
  if (!tFields && SfntFont().IsSbitOnly()) return false;
  if (!tFields) {
    ReportResult(Severity::kMinorError, "The font has no 'OS/2' table, which the Microsoft platform requires");
    return true;
  }
  const At tHere(*this, {.table = FTTag(SfntFont().HasTaggedTable(FTTag("OS_2")) ? "OS_2" : "OS/2")});
  if (!tFields->Has(Fields::kVersion)) {
    ReportResult(Severity::kFatalError, "The table is %d bytes long, too short for a version number",
                 {tFields->Size()});
    return true;
  }
  CheckFields(*tFields);
  return true;
}

void VornFontTesterStructure_OS_2::CheckFields(const Fields& iFields) const {
  CheckSize(iFields);
  CheckClasses(iFields);
  CheckEmbedding(iFields);
  CheckScriptMetrics(iFields);
  CheckFamilyClass(iFields);
  CheckPanose(iFields);
  CheckCharacterRanges(iFields);
  CheckVendor(iFields);
  CheckStyleWord(iFields);
  CheckStyleAgainstHeader(iFields);
  CheckFirstAndLast(iFields);
  CheckLineMetrics(iFields);
  CheckAverageWidth(iFields);
  CheckCodePages(iFields);
  CheckHeights(iFields);
  CheckSpecialCharacters(iFields);
  CheckOpticalSizes(iFields);
}

void VornFontTesterStructure_OS_2::CheckSize(const Fields& iFields) const {
  const uint16_t tVersion = iFields.Version();
  const uint64_t tSize = iFields.Size();
  const uint64_t tExpected = kLengths[iFields.EffectiveVersion()];
  const uint64_t tLeast = tVersion == 0 ? kFirstEditionLength : tExpected;
  const char* tFormat = "A table of version %d takes %d bytes, but this one has %d";
  if (tVersion > Fields::kLastVersion) {
    ReportResult(Severity::kMinorError, "The table has the unknown version %d", {tVersion});
  }
  if (tSize < tLeast) {
    ReportResult(Severity::kMajorError, tFormat, {tVersion, tExpected, tSize});
  } else if (tVersion <= Fields::kLastVersion && tSize != tExpected && tSize != tLeast) {
    ReportResultIfAsked(Severity::kTechnicalError, tFormat, {tVersion, tExpected, tSize});
  }
}

void VornFontTesterStructure_OS_2::CheckClasses(const Fields& iFields) const {
  const uint16_t tWeight = iFields.WeightClass();
  const uint16_t tWidth = iFields.WidthClass();
  if (iFields.Has(Fields::kWeightClass)) {
    if (tWeight == 0 || tWeight > 1000) {
      ReportResult(Severity::kMinorError, "The weight class is %d; it should be from 1 to 1000", {tWeight});
    } else if (tWeight < 10) {
      ReportResult(Severity::kMinorError, "The weight class is %d; the values 1 to 9 belong to an obsolete scale",
                   {tWeight});
    }
  }
  if (iFields.Has(Fields::kWidthClass) && (tWidth < 1 || tWidth > 9)) {
    ReportResult(Severity::kMinorError, "The width class is %d; it should be from 1 to 9", {tWidth});
  }
}

void VornFontTesterStructure_OS_2::CheckEmbedding(const Fields& iFields) const {
  const uint16_t tWord = iFields.Type();
  if (tWord & kReservedEmbedding) {
    ReportResultIfAsked(Severity::kTechnicalError, "The embedding word 0x%04X has reserved bits set", {tWord});
  }
  const auto tLevels = static_cast<uint16_t>(tWord & kEmbeddingLevels);
  if (std::popcount(tLevels) > 1 && iFields.Version() >= 3) {  // before, the least restrictive one counted
    ReportResult(Severity::kMinorError, "The embedding word 0x%04X has more than one of the bits 1 to 3 set", {tWord});
  }
  if (tLevels == kRestricted) {
    ReportResultIfAsked(Severity::kInformation, "The embedding word 0x%04X forbids embedding", {tWord});
  }
}

void VornFontTesterStructure_OS_2::CheckScriptMetrics(const Fields& iFields) const {
  struct Metric {
    const Field& field;
    int32_t value;
    bool isSize;
  };
  const Metric tMetrics[] = {{Fields::kSubscriptXSize, iFields.SubscriptXSize(), true},
                             {Fields::kSubscriptYSize, iFields.SubscriptYSize(), true},
                             {Fields::kSubscriptXOffset, iFields.SubscriptXOffset(), false},
                             {Fields::kSubscriptYOffset, iFields.SubscriptYOffset(), false},
                             {Fields::kSuperscriptXSize, iFields.SuperscriptXSize(), true},
                             {Fields::kSuperscriptYSize, iFields.SuperscriptYSize(), true},
                             {Fields::kSuperscriptXOffset, iFields.SuperscriptXOffset(), false},
                             {Fields::kSuperscriptYOffset, iFields.SuperscriptYOffset(), false},
                             {Fields::kStrikeoutSize, iFields.StrikeoutSize(), true},
                             {Fields::kStrikeoutPosition, iFields.StrikeoutPosition(), false}};
  const int32_t tEm = SfntFont().GetFontUnitsPerEm();
  for (const auto& [tField, tValue, tIsSize] : tMetrics) {
    if (!iFields.Has(tField)) continue;
    if (tIsSize && tValue <= 0) {
      ReportResult(Severity::kMinorError, "%@ is %d; it should be positive", {Tova::MakeString(tField.name), tValue});
    } else if (tEm > 0 && std::abs(tValue) > 2 * tEm) {
      ReportResult(Severity::kMinorError, "%@ is %d, more than twice the em (%d)",
                   {Tova::MakeString(tField.name), tValue, tEm});
    }
  }
}

void VornFontTesterStructure_OS_2::CheckFamilyClass(const Fields& iFields) const {
  const int32_t tClass = iFields.FamilyClass() >> 8;
  if (tClass == 6 || tClass == 11 || tClass > 12) {
    ReportResultIfAsked(Severity::kTechnicalError, "The family class %d is reserved", {tClass});
  }
}

void VornFontTesterStructure_OS_2::CheckPanose(const Fields& iFields) const {
  constexpr uint8_t kHighest[] = {5, 15, 11, 9, 9, 10, 11, 15, 13, 7};
  if (!iFields.Has(Fields::kPanose)) return;
  const FTPanose tPanose = iFields.Panose();
  const bool tIsLatinText = tPanose.digits[0] == kLatinText;
  for (uint32_t i = 0; i < (tIsLatinText ? std::size(kHighest) : 1); ++i) {
    if (tPanose.digits[i] <= kHighest[i]) continue;
    ReportResultIfAsked(Severity::kTechnicalError, "PANOSE digit %d is %d; the highest value is %d",
                        {i + 1, tPanose.digits[i], kHighest[i]});
    break;
  }
  const bool tHasPost = SfntFont().HasTaggedTable(FTFontTable_post::kTag);
  if (tIsLatinText && tPanose.digits[kProportion] == kMonospaced && tHasPost &&
      !SfntFont().FindTable<FTFontTable_post>()->IsFixedPitch()) {
    ReportResultIfAsked(Severity::kTechnicalError, "PANOSE calls the font monospaced; the 'post' table does not");
  }
}

void VornFontTesterStructure_OS_2::CheckVendor(const Fields& iFields) const {
  if (!iFields.Has(Fields::kVendID)) return;
  const uint32_t tVendor = iFields.VendID();
  for (int tShift = 24; tShift >= 0; tShift -= 8) {
    const uint32_t tByte = tVendor >> tShift & 0xFF;
    if (tByte >= 0x20 && tByte <= 0x7E) continue;
    ReportResultIfAsked(Severity::kTechnicalError, "The vendor code 0x%08X has unprintable characters", {tVendor});
    return;
  }
}

void VornFontTesterStructure_OS_2::CheckStyleWord(const Fields& iFields) const {
  if (!iFields.Has(Fields::kSelection)) return;
  const uint16_t tWord = iFields.Selection();
  if (tWord & kReservedStyles) {
    ReportResultIfAsked(Severity::kTechnicalError, "The style word 0x%04X has reserved bits set", {tWord});
  }
  if (iFields.Version() < 4 && tWord & kStylesOfVersion4) {
    ReportResultIfAsked(Severity::kTechnicalError, "The style word 0x%04X uses bits that version %d does not have",
                        {tWord, iFields.Version()});
  }
  if (tWord & kRegular && tWord & (kItalic | kBold)) {
    ReportResult(Severity::kMajorError, "The style word 0x%04X calls the font regular as well as bold or italic",
                 {tWord});
  }
  if ((tWord & (kItalic | kBold | kRegular | kOblique)) == 0) {
    ReportResultIfAsked(Severity::kTechnicalError, "The style word 0x%04X gives no style", {tWord});
  }
}

void VornFontTesterStructure_OS_2::CheckStyleAgainstHeader(const Fields& iFields) const {
  if (!iFields.Has(Fields::kSelection)) return;
  const uint16_t tWord = iFields.Selection();
  const bool tIsBold = (tWord & kBold) != 0;
  const bool tIsItalic = (tWord & kItalic) != 0;
  if (const FTFontTable_head* tHeader = SfntFacts::Header(SfntFont())) {
    const uint16_t tStyle = tHeader->ValdourStyle();
    if (tIsBold != ((tStyle & kHeaderBold) != 0)) {
      ReportResult(Severity::kMinorError,
                   "The style word 0x%04X and the header's style bits 0x%04X disagree about bold", {tWord, tStyle});
    }
    if (tIsItalic != ((tStyle & kHeaderItalic) != 0)) {
      ReportResult(Severity::kMinorError,
                   "The style word 0x%04X and the header's style bits 0x%04X disagree about italic", {tWord, tStyle});
    }
  }
  const uint16_t tWeight = iFields.WeightClass();
  if (tIsBold && tWeight >= 10 && tWeight <= 499) {
    ReportResult(Severity::kMinorError, "The style word calls the font bold, but the weight class is %d", {tWeight});
  }
}
