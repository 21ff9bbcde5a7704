#include "Tests/VornFontTesterStructure_post.h"

#include <algorithm>
#include <cstdlib>

#include "TableAccess/FTLimits.h"

namespace {

using Table = FTFontTable_post;

constexpr uint64_t kEntries = Table::kHeaderSize + 2;
/// Zero bytes behind the last name that pad the table.
constexpr uint64_t kMostPadding = 3;

}  // namespace

void VornFontTesterStructure_post::CheckTable(const Table& iTable) const {
  if (iTable.GetSize() < Table::kHeaderSize) {
    ReportResult(Severity::kFatalError, "The table is %d bytes long; it needs at least %d",
                 {iTable.GetSize(), Table::kHeaderSize});
    return;
  }
  SfntFont().SpendWork(kFTStepsOfGlyphName * iTable.GetGlyphCount());
  CheckNames(iTable);
  CheckMemory(iTable.GetMinMemType42(), iTable.GetMaxMemType42());
  CheckMemory(iTable.GetMinMemType1(), iTable.GetMaxMemType1());
  CheckUnderline(iTable);
}

void VornFontTesterStructure_post::CheckNames(const Table& iTable) const {
  const uint64_t tSize = iTable.GetSize();
  const uint32_t tGlyphCount = SfntFont().CountFontGlyphs();
  const auto tHolds = [&](uint32_t iCount, uint64_t iBytes) {
    if (iBytes <= tSize) return true;
    ReportResult(Severity::kMajorError, "The names of %d glyphs need %d bytes, but the table has %d",
                 {iCount, iBytes, tSize});
    return false;
  };
  switch (iTable.GetFormat()) {
    case Table::kStandardNames:
    case Table::kNoNames:
      CheckStandardNames(iTable);
      return;
    case Table::kCharacterCodes:
      tHolds(tGlyphCount, Table::kHeaderSize + uint64_t{2} * tGlyphCount);
      return;
    case Table::kStoredNames:
    case Table::kNameOffsets:
      break;
    default:
      ReportResult(Severity::kMajorError, "The table has the unknown format 0x%08X", {iTable.GetFormat()});
      return;
  }
  const bool tHasOffsets = iTable.GetFormat() == Table::kNameOffsets;
  const uint32_t tCount = iTable.StatedGlyphCount();
  if (tHasOffsets) {
    ReportResultIfAsked(Severity::kTechnicalError, "Format 2.5 is obsolete; formats 2 and 3 replace it");
  }
  if (tSize < kEntries) {
    ReportResult(Severity::kFatalError, "The table ends before its glyph count");
    return;
  }
  if (!tHolds(tCount, kEntries + uint64_t{tHasOffsets ? 1u : 2u} * tCount)) return;
  CheckGlyphCount(tCount, tGlyphCount);
  if (tHasOffsets) {
    CheckNameOffsets(iTable);
  } else {
    CheckStoredNames(iTable);
  }
}

void VornFontTesterStructure_post::CheckStandardNames(const Table& iTable) const {
  const uint32_t tGlyphCount = SfntFont().CountFontGlyphs();
  const bool tNamesGlyphs = iTable.GetFormat() == Table::kStandardNames;
  if (tNamesGlyphs && tGlyphCount != 0 && tGlyphCount != Table::kStandardNameCount) {
    ReportResult(Severity::kMinorError, "Format 1 names exactly %d glyphs, but the font has %d",
                 {Table::kStandardNameCount, tGlyphCount});
  }
  if (iTable.GetSize() > Table::kHeaderSize) {
    ReportResultIfAsked(Severity::kTechnicalError, "The table is %d bytes long; its format takes %d",
                        {iTable.GetSize(), Table::kHeaderSize});
  }
}

void VornFontTesterStructure_post::CheckGlyphCount(uint32_t iCount, uint32_t iGlyphCount) const {
  if (iCount == iGlyphCount || iGlyphCount == 0) return;
  ReportResult(iCount < iGlyphCount ? Severity::kMajorError : Severity::kMinorError,
               "The table names %d glyphs, but the font has %d", {iCount, iGlyphCount});
}

void VornFontTesterStructure_post::CheckNameOffsets(const Table& iTable) const {
  const uint32_t tCount = iTable.GetGlyphCount();
  uint32_t tOutside = 0;
  uint32_t tFirst = 0;
  bool tAllZero = true;
  for (uint32_t i = 0; i < tCount; ++i) {
    const int32_t tIndex = iTable.GetNameIndex(i);
    if (tIndex != static_cast<int32_t>(i)) tAllZero = false;
    const bool tIsName = tIndex >= 0 && tIndex < static_cast<int32_t>(Table::kStandardNameCount);
    if (!tIsName && tOutside++ == 0) tFirst = i;
  }
  if (tOutside > 0) {
    ReportResult(Severity::kMajorError, "%d glyphs have no standard name; glyph %d has the name index %d",
                 {tOutside, tFirst, iTable.GetNameIndex(tFirst)});
  }
  if (tAllZero && tCount > 0) {
    ReportResultIfAsked(Severity::kTechnicalError, "All name offsets are zero; format 1 would do");
  }
}

void VornFontTesterStructure_post::CheckStoredNames(const Table& iTable) const {
  uint32_t tNeeded = 0;
  std::vector<bool> tUsed(iTable.CountStoredNames());
  for (uint32_t i = 0; i < iTable.GetGlyphCount(); ++i) {
    const auto tIndex = static_cast<uint32_t>(iTable.GetNameIndex(i));
    if (tIndex < Table::kStandardNameCount) continue;
    const uint32_t tName = tIndex - Table::kStandardNameCount;
    tNeeded = std::max(tNeeded, tName + 1);
    if (tName < tUsed.size()) tUsed[tName] = true;
  }
  CheckNameIndices(iTable);
  CheckNameData(iTable, tNeeded);
  tUsed.resize(std::min<size_t>(tUsed.size(), tNeeded));
  CheckUnusedNames(tUsed);
}

void VornFontTesterStructure_post::CheckNameIndices(const Table& iTable) const {
  const uint32_t tStored = iTable.CountStoredNames();
  uint32_t tNameless = 0;
  uint32_t tFirst = 0;
  for (uint32_t i = 0; i < iTable.GetGlyphCount(); ++i) {
    const auto tIndex = static_cast<uint32_t>(iTable.GetNameIndex(i));
    if (tIndex >= Table::kStandardNameCount + tStored && tNameless++ == 0) tFirst = i;
  }
  if (tNameless > 0) {
    ReportResult(Severity::kMajorError,
                 "%d glyphs have no name, since the table holds only %d names; glyph %d has the name index %d",
                 {tNameless, tStored, tFirst, iTable.GetNameIndex(tFirst)});
  }
}

/// iNeeded: the names up to the last that a glyph uses.
void VornFontTesterStructure_post::CheckNameData(const Table& iTable, uint32_t iNeeded) const {
  const uint32_t tStored = iTable.CountStoredNames();
  const uint64_t tEnd = iTable.StoredNamesEnd();
  if (tEnd < iTable.GetSize()) {
    const uint64_t tLeft = iTable.GetSize() - tEnd;
    const uint32_t tBytes = 1u + iTable.Bytes().U8(tEnd);
    const At tHere(*this, {.offset = tEnd});
    const char* tFormat = "The last name needs %d bytes, but only %d are left";
    if (tStored < iNeeded) {
      ReportResult(Severity::kMinorError, tFormat, {tBytes, tLeft});
    } else {
      ReportResultIfAsked(Severity::kTechnicalError, tFormat, {tBytes, tLeft});
    }
    return;
  }
  if (tStored < iNeeded) return;
  bool tHasText = false;
  uint64_t tBytesBehind = 0;
  for (uint32_t i = iNeeded; i < tStored; ++i) {
    tHasText = tHasText || !iTable.GetStoredName(i).Empty();
    tBytesBehind += 1 + iTable.GetStoredName(i).Size();
  }
  if (tHasText) {
    ReportResultIfAsked(Severity::kTechnicalError, "The table holds %d names, but the glyphs use only %d",
                        {tStored, iNeeded});
  } else if (tBytesBehind > kMostPadding) {
    ReportResultIfAsked(Severity::kTechnicalError, "%d bytes follow the last name in use", {tBytesBehind});
  }
}

/// iUsed: for each stored name up to the last in use, whether a glyph uses it.
void VornFontTesterStructure_post::CheckUnusedNames(const std::vector<bool>& iUsed) const {
  if (iUsed.empty()) return;
  if (!iUsed[0]) ReportResultIfAsked(Severity::kTechnicalError, "No glyph uses the first stored name");
  const auto tUnused = std::count(iUsed.begin() + 1, iUsed.end(), false);
  if (tUnused > 0) {
    const auto tFirst = std::find(iUsed.begin() + 1, iUsed.end(), false) - iUsed.begin();
    ReportResultIfAsked(Severity::kTechnicalError, "%d stored names are used by no glyph, the first of them name %d",
                        {tUnused, tFirst});
  }
}

void VornFontTesterStructure_post::CheckMemory(uint32_t iMinimum, uint32_t iMaximum) const {
  if (iMaximum > 0 && iMinimum > iMaximum) {
    ReportResultIfAsked(Severity::kTechnicalError, "The minimum memory use (%u) exceeds the maximum (%u)",
                        {iMinimum, iMaximum});
  }
}

void VornFontTesterStructure_post::CheckUnderline(const Table& iTable) const {
  const int32_t tThickness = iTable.GetUnderlineThickness();
  const int32_t tPosition = iTable.GetUnderlinePosition();
  const int32_t tEm = SfntFont().GetFontUnitsPerEm();
  if (tThickness <= 0) {
    ReportResult(Severity::kMinorError, "The underline thickness is %d; it should be positive", {tThickness});
  }
  if (tEm > 0 && std::abs(tPosition) > tEm) {
    ReportResult(Severity::kMinorError, "The underline position is %d, farther from the baseline than the em (%d)",
                 {tPosition, tEm});
  }
}
