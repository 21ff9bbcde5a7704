#include "TableAccess/TableClasses/FTFontTable_name.h"

#include <utility>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/TableClasses/FTTableOwner.h"

/// What an entry costs, which is an object with a text.
static constexpr uint64_t kStepsOfName = 8;

void FTFontTable_name::ReadDataInternal() const {
  const Tova::ByteView tTable = Bytes();
  _fFormat = tTable.U16(0);
  _fStringBaseOffset = tTable.U16(4);
  const uint64_t tLimit = tTable.Size();
  FTWorkBudget* tBudget = Owner() ? &Owner()->GetWorkBudget() : nullptr;
  Entries tNames;
  const Tova::RecordArray tRecords(tTable, 6, tTable.U16(2), 12);
  ChargeWork(kStepsOfName * tRecords.Held());
  for (const Tova::ByteView tRecord : tRecords) {
    const uint64_t tLength = tRecord.U16(8);
    const uint64_t tStart = uint64_t{_fStringBaseOffset} + tRecord.U16(10);
    if (tLength != 0) {
      if (tStart >= tLimit) {
        FTThrow("tNameStart >= tTableLimit && tLength != 0", "A name entry starts beyond the end of the 'name' table");
      }
      if (tStart + tLength > tLimit) {
        FTThrow("tNameStart + tLength > tTableLimit", "A name entry extends beyond the end of the 'name' table");
      }
    }
    tNames.emplace_back(tTable.Slice(tStart, tLength), tRecord.U16(6), tRecord.U16(0), tRecord.U16(2), tRecord.U16(4),
                        tBudget);
  }
  _fNames = std::move(tNames);
}

bool FTFontTable_name::operator==(const FTFontTable_name& iOther) const {
  return Format() == iOther.Format() && Names() == iOther.Names();
}

uint16_t FTFontTable_name::Format() const {
  ReadData();
  return _fFormat;
}

uint16_t FTFontTable_name::StringBaseOffset() const {
  ReadData();
  return _fStringBaseOffset;
}

const FTFontTable_name::Entries& FTFontTable_name::Names() const {
  ReadData();
  return _fNames;
}

const FTNameTableEntry* FTFontTable_name::GetIndName(uint64_t iIndex) const {
  const Entries& tNames = Names();
  return iIndex < tNames.size() ? &tNames[iIndex] : nullptr;
}

const FTNameTableEntry* FTFontTable_name::FindName(uint32_t iNameCode, uint32_t iPlatform, uint32_t iScript,
                                                   uint32_t iLanguage, uint64_t& oIndex) const {
  constexpr uint32_t kAny = 0xFFFFFFFF;
  const auto tMatches = [](uint32_t iWanted, uint32_t iValue) { return iWanted == kAny || iWanted == iValue; };
  const Entries& tNames = Names();
  for (uint64_t i = 0; i < tNames.size(); ++i) {
    const FTNameTableEntry& tEntry = tNames[i];
    if (tEntry.GetNameCode() == iNameCode && tMatches(iPlatform, tEntry.GetPlatform()) &&
        tMatches(iScript, tEntry.GetScript()) && tMatches(iLanguage, tEntry.GetLanguage())) {
      oIndex = i;
      return &tEntry;
    }
  }
  return nullptr;
}

bool FTFontTable_name::SetIndName(uint64_t iIndex, const Tova::String& iName) {
  if (!GetIndName(iIndex)) return false;
  _fNames[iIndex].SetNameString(iName);
  return true;
}

void FTFontTable_name::SetName(uint32_t iNameCode, uint32_t iPlatform, uint32_t iScript, uint32_t iLanguage,
                               const Tova::String& iName) {
  uint64_t tIndex = 0;
  if (!FindName(iNameCode, iPlatform, iScript, iLanguage, tIndex)) {
    tIndex = _fNames.size();
    _fNames.emplace_back(Tova::ByteView(), iNameCode, iPlatform, iScript, iLanguage);
  }
  SetIndName(tIndex, iName);
}

bool FTFontTable_name::DeleteName(uint32_t iNameCode, uint32_t iPlatform, uint32_t iScript, uint32_t iLanguage) {
  uint64_t tIndex = 0;
  if (!FindName(iNameCode, iPlatform, iScript, iLanguage, tIndex)) return false;
  _fNames.erase(_fNames.begin() + static_cast<std::ptrdiff_t>(tIndex));
  return true;
}

void FTFontTable_name::DeleteData() {
  ReadData();
  _fNames.clear();
}
