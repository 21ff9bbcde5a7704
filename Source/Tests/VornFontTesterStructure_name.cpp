#include "Tests/VornFontTesterStructure_name.h"

#include <algorithm>
#include <string>

#include "TableAccess/FTLimits.h"
#include "Tests/NameText.h"
#include "Tests/SfntFacts.h"

namespace {

constexpr uint64_t kHeaderSize = 6;
constexpr uint64_t kRecordSize = 12;
constexpr uint64_t kTagRecordSize = 4;
/// Languages from here on are language tags in a table of format 1.
constexpr uint32_t kFirstTag = 0x8000;
constexpr uint32_t kAnyLanguage = 0xFFFF;

/// The names that programs ask for: family, style, full, PostScript, typographic and WWS names.
constexpr bool IsKeyCode(uint32_t iNameCode) {
  return iNameCode == 1 || iNameCode == 2 || iNameCode == 4 || iNameCode == 6 || iNameCode == 16 || iNameCode == 17 ||
         iNameCode == 21 || iNameCode == 22;
}

constexpr bool IsSpace(char32_t iCharacter) {
  return iCharacter == 0x20 || iCharacter == 0xA0 || (iCharacter >= 0x2000 && iCharacter <= 0x200A) ||
         iCharacter == 0x202F || iCharacter == 0x205F || iCharacter == 0x3000;
}

/// Whether UTF-16 text is 1 to 127 ASCII letters, digits and hyphens, as language tags are.
bool IsLanguageTag(Tova::ByteView iText) {
  const uint64_t tCount = iText.Size() / 2;
  if (iText.Size() % 2 != 0 || tCount < 1 || tCount > 127) return false;
  for (uint64_t i = 0; i < tCount; ++i) {
    const uint16_t tUnit = iText.U16(2 * i);
    const bool tAllowed = (tUnit >= 'a' && tUnit <= 'z') || (tUnit >= 'A' && tUnit <= 'Z') ||
                          (tUnit >= '0' && tUnit <= '9') || tUnit == '-';
    if (!tAllowed) return false;
  }
  return true;
}

}  // namespace

/// Where things lie in the table, in bytes from its start.
struct VornFontTesterStructure_name::Layout {
  explicit Layout(Tova::ByteView iBytes) : bytes(iBytes) {
    count = bytes.U16(2);
    held = std::min<uint64_t>(count, Room(kHeaderSize, kRecordSize));
    end = kHeaderSize + kRecordSize * held;
    if (bytes.U16(0) != 1) return;
    hasTags = true;
    if (held < count) return;
    tags = end + 2;
    tagsHeld = std::min<uint64_t>(bytes.U16(end), Room(tags, kTagRecordSize));
    end = tags + kTagRecordSize * tagsHeld;
  }

  /// The whole records that fit behind the position.
  uint64_t Room(uint64_t iStart, uint64_t iSize) const {
    return bytes.Size() > iStart ? (bytes.Size() - iStart) / iSize : 0;
  }
  Tova::ByteView Record(uint64_t iIndex) const { return bytes.Slice(kHeaderSize + kRecordSize * iIndex, kRecordSize); }
  uint64_t Storage() const { return bytes.U16(4); }

  Tova::ByteView bytes;
  uint64_t count = 0;
  uint64_t held = 0;
  uint64_t end = 0;  ///< of the records held and, in format 1, of the tag records held
  bool hasTags = false;
  uint64_t tags = 0;
  uint64_t tagsHeld = 0;
};

/// What the checks of one record know of those before it.
struct VornFontTesterStructure_name::Walk {
  std::map<Codes, uint32_t> firstWithCodes;
  Codes before;
  bool outOfOrderReported = false;
};

void VornFontTesterStructure_name::CheckTable(const FTFontTable_name& iTable) const {
  const Layout tLayout(iTable.Bytes());
  if (iTable.GetSize() < kHeaderSize) {
    ReportResult(Severity::kFatalError, "The table is %d bytes long, too short for its header of %d bytes",
                 {iTable.GetSize(), kHeaderSize});
    return;
  }
  const bool tHeaderIsGood = CheckHeader(tLayout);
  CheckLanguageTags(tLayout);
  const bool tTextsAreInside = CheckStorage(tLayout);
  if (tHeaderIsGood && tTextsAreInside) CheckEntries(iTable, tLayout);
}

bool VornFontTesterStructure_name::CheckHeader(const Layout& iLayout) const {
  const uint16_t tFormat = iLayout.bytes.U16(0);
  if (tFormat > 1) {
    ReportResult(Severity::kMinorError, "The table has format %d; only formats 0 and 1 are defined", {tFormat});
  }
  if (iLayout.count > iLayout.held) {
    ReportResult(Severity::kFatalError, "The header announces %d names, but the table has room for %d",
                 {iLayout.count, iLayout.held});
  }
  if (iLayout.count == 0) ReportResult(Severity::kMajorError, "The table holds no names");
  return iLayout.count == iLayout.held;
}

void VornFontTesterStructure_name::CheckLanguageTags(const Layout& iLayout) const {
  for (uint64_t i = 0; i < iLayout.tagsHeld; ++i) {
    const uint64_t tRecord = iLayout.tags + kTagRecordSize * i;
    const uint64_t tLength = iLayout.bytes.U16(tRecord);
    const uint64_t tStart = iLayout.Storage() + iLayout.bytes.U16(tRecord + 2);
    if (!iLayout.bytes.Holds(tStart, tLength) || !IsLanguageTag(iLayout.bytes.Slice(tStart, tLength))) {
      const At tHere(*this, {.offset = tRecord});
      ReportResult(Severity::kMinorError, "Language tag %d is not usable text inside the table", {i});
    }
  }
}

bool VornFontTesterStructure_name::CheckStorage(const Layout& iLayout) const {
  const uint64_t tSize = iLayout.bytes.Size();
  bool tHasText = false;
  for (uint64_t i = 0; i < iLayout.held && !tHasText; ++i) tHasText = iLayout.Record(i).U16(8) > 0;
  const bool tBeyond = iLayout.Storage() > tSize && tHasText;
  if (tBeyond) {
    ReportResult(Severity::kFatalError, "The string storage starts at byte %d, beyond the end of the table (%d bytes)",
                 {iLayout.Storage(), tSize});
  }
  if (iLayout.Storage() < iLayout.end && iLayout.count > 0) {
    ReportResult(Severity::kMinorError,
                 "The string storage starts at byte %d, inside the name records, which end at byte %d",
                 {iLayout.Storage(), iLayout.end});
  }
  return !tBeyond && CheckTextPlaces(iLayout);
}

bool VornFontTesterStructure_name::CheckTextPlaces(const Layout& iLayout) const {
  const uint64_t tSize = iLayout.bytes.Size();
  bool tInside = true;
  for (uint64_t i = 0; i < iLayout.held; ++i) {
    const Tova::ByteView tRecord = iLayout.Record(i);
    const uint64_t tLength = tRecord.U16(8);
    const uint64_t tStart = iLayout.Storage() + tRecord.U16(10);
    if (tLength == 0 || iLayout.bytes.Holds(tStart, tLength)) continue;
    const At tHere(*this, {.offset = kHeaderSize + kRecordSize * i});
    tInside = false;
    if (tStart >= tSize) {
      ReportResult(Severity::kFatalError, "Entry %d starts at byte %d, beyond the end of the table (%d bytes)",
                   {i, tStart, tSize});
    } else {
      ReportResult(Severity::kFatalError, "Entry %d ends at byte %d, beyond the end of the table (%d bytes)",
                   {i, tStart + tLength, tSize});
    }
  }
  return tInside;
}

void VornFontTesterStructure_name::CheckEntries(const FTFontTable_name& iTable, const Layout& iLayout) const {
  Walk tWalk;
  uint64_t tTextBytes = 0;
  const std::span<const FTNameTableEntry> tEntries = iTable.Names();
  for (uint32_t i = 0; i < tEntries.size(); ++i) {
    const FTNameTableEntry& tEntry = tEntries[i];
    const At tHere(*this, {.offset = kHeaderSize + kRecordSize * i});
    const Codes tCodes = {tEntry.GetPlatform(), tEntry.GetScript(), tEntry.GetLanguage(), tEntry.GetNameCode()};
    tTextBytes += tEntry.GetUnswappedNameDataLength();
    const bool tReadsText = tTextBytes <= FTLimits::Get().nameTextBytes;
    CheckCodes(i, tEntry, iLayout);
    CheckOrder(i, tCodes, tWalk);
    if (tReadsText) CheckRepetition(i, tCodes, tEntries, tWalk);
    CheckNameCode(i, tEntry);
    if (tReadsText) CheckText(i, tEntry);
  }
}

void VornFontTesterStructure_name::CheckCodes(uint32_t iIndex, const FTNameTableEntry& iEntry,
                                              const Layout& iLayout) const {
  const uint32_t tPlatform = iEntry.GetPlatform();
  const uint32_t tLanguage = iEntry.GetLanguage();
  const bool tAnyLanguage = tPlatform == NameText::kUnicode && tLanguage == kAnyLanguage;
  if (iLayout.hasTags && tLanguage >= kFirstTag && !tAnyLanguage) {
    if (tLanguage - kFirstTag >= iLayout.tagsHeld) {
      ReportResult(Severity::kMinorError, "Entry %d uses language tag %d, but the table has %d",
                   {iIndex, tLanguage - kFirstTag, iLayout.tagsHeld});
    }
    return;
  }
  ValidatePlatformScriptLanguages(iIndex, tPlatform, iEntry.GetScript(), tAnyLanguage ? 0xFFFFFFFF : tLanguage);
  if (tPlatform == NameText::kMicrosoft && (tLanguage == 0 || tLanguage >= kFirstTag)) {
    ReportResultIfAsked(Severity::kTechnicalError, "Entry %d has the language code 0x%04X, which names no language",
                        {iIndex, tLanguage});
  }
}

void VornFontTesterStructure_name::CheckOrder(uint32_t iIndex, const Codes& iCodes, Walk& ioWalk) const {
  if (iIndex > 0 && iCodes < ioWalk.before && !ioWalk.outOfOrderReported) {
    ioWalk.outOfOrderReported = true;
    ReportResultIfAsked(Severity::kTechnicalError,
                        "Entry %d is out of order; entries ascend by platform, script, language and name code",
                        {iIndex});
  }
  ioWalk.before = iCodes;
}

void VornFontTesterStructure_name::CheckRepetition(uint32_t iIndex, const Codes& iCodes,
                                                   std::span<const FTNameTableEntry> iEntries, Walk& ioWalk) const {
  const auto [tFirst, tIsNew] = ioWalk.firstWithCodes.emplace(iCodes, iIndex);
  if (tIsNew) return;
  if (iEntries[tFirst->second] == iEntries[iIndex]) {
    ReportResultIfAsked(Severity::kTechnicalError, "Entries %d and %d give the same name twice",
                        {tFirst->second, iIndex});
  } else {
    ReportResult(Severity::kMinorError,
                 "Entries %d and %d give different texts for name code %d in the same platform, script and language",
                 {tFirst->second, iIndex, std::get<3>(iCodes)});
  }
}

void VornFontTesterStructure_name::CheckNameCode(uint32_t iIndex, const FTNameTableEntry& iEntry) const {
  const uint32_t tNameCode = iEntry.GetNameCode();
  if (tNameCode == 15 || (tNameCode >= 26 && tNameCode <= 255)) {
    ReportResultIfAsked(Severity::kTechnicalError, "Entry %d has the reserved name code %d", {iIndex, tNameCode});
  }
}

void VornFontTesterStructure_name::CheckText(uint32_t iIndex, const FTNameTableEntry& iEntry) const {
  const uint64_t tLength = iEntry.GetUnswappedNameDataLength();
  const uint32_t tNameCode = iEntry.GetNameCode();
  if (tLength == 0) {
    if (IsKeyCode(tNameCode)) {
      ReportResult(Severity::kMinorError, "Entry %d (name code %d) is empty", {iIndex, tNameCode});
    }
    return;
  }
  if (iEntry.GetEncoding() == kTovaTextEncodingUTF16BigEndian && tLength % 2 != 0) {
    ReportResult(Severity::kMajorError, "Entry %d is %d bytes long; UTF-16 text has an even number of bytes",
                 {iIndex, tLength});
    return;
  }
  const TovaStringRef tText = NameText::Of(iEntry);
  if (tText) {
    CheckCharacters(iIndex, tNameCode, SfntFacts::Characters(Tova::Text(tText)));
  } else if (iEntry.GetPlatform() != NameText::kValdor) {  // its makers' variants are not all known to converters
    ReportResult(Severity::kMinorError, "The text of entry %d (name code %d) cannot be converted to Unicode",
                 {iIndex, tNameCode});
  }
}

void VornFontTesterStructure_name::CheckCharacters(uint32_t iIndex, uint32_t iNameCode,
                                                   std::u32string_view iText) const {
  const bool tMayBreakLines = !IsKeyCode(iNameCode) && iNameCode != 3 && iNameCode != 25;
  const auto tControl = std::ranges::find_if(iText, [&](char32_t iCharacter) {
    const bool tBreaksLine = iCharacter == '\t' || iCharacter == '\n' || iCharacter == '\r';
    return SfntFacts::IsControl(iCharacter) && !(tMayBreakLines && tBreaksLine);
  });
  if (tControl != iText.end()) {
    const char* tFormat = "The text of entry %d (name code %d) contains the control character U+%04X";
    if (tMayBreakLines) {
      ReportResultIfAsked(Severity::kTechnicalError, tFormat, {iIndex, iNameCode, uint32_t{*tControl}});
    } else {
      ReportResult(Severity::kMinorError, tFormat, {iIndex, iNameCode, uint32_t{*tControl}});
    }
  } else if (IsKeyCode(iNameCode) && !iText.empty() && (IsSpace(iText.front()) || IsSpace(iText.back()))) {
    ReportResult(Severity::kMinorError, "The text of entry %d (name code %d) begins or ends with white space",
                 {iIndex, iNameCode});
  }
}
