#include "TableAccess/TableClasses/FTFontTable_cmap.h"

#include <array>

namespace {

constexpr uint32_t kAny = 0xFFFFFFFF;

/// What an encoding costs, which is an object of several words, and looked at by every search.
constexpr uint64_t kStepsOfEncoding = 16;

bool Matches(uint32_t iWanted, uint32_t iValue) { return iWanted == kAny || iWanted == iValue; }

}  // namespace

void FTFontTable_cmap::ReadDataInternal() const {
  const Tova::ByteView tTable = Bytes();
  _fVersion = tTable.U16(0);
  _fEncodings.clear();
  const Tova::RecordArray tRecords(tTable, 4, tTable.U16(2), 8);
  ChargeWork(kStepsOfEncoding * tRecords.Held());
  _fEncodings.reserve(tRecords.Held());
  for (const Tova::ByteView tRecord : tRecords) {
    if (tRecord.Size() < 8) break;
    _fEncodings.emplace_back(tTable.From(tRecord.U32(4)), tRecord.U16(0), tRecord.U16(2));
  }
  FindUnicodeIndex();
}

void FTFontTable_cmap::FindUnicodeIndex() const {
  struct Choice {
    uint32_t platform;
    uint32_t script;
  };
  constexpr std::array<Choice, 7> kChoices = {{{0, 4}, {0, 3}, {0, 0}, {0, 2}, {0, 1}, {3, 1}, {3, 10}}};
  _fUnicodeIndex.reset();
  for (const Choice& tChoice : kChoices) {
    uint64_t tIndex = 0;
    if (!FindEncoding(tChoice.platform, tChoice.script, kAny, tIndex)) continue;
    _fUnicodeIndex = tIndex;
    return;
  }
}

bool FTFontTable_cmap::operator==(const FTFontTable_cmap& iOther) const {
  return Version() == iOther.Version() && Encodings() == iOther.Encodings();
}

uint16_t FTFontTable_cmap::Version() const {
  ReadData();
  return _fVersion;
}

const FTFontTable_cmap::EncodingArray& FTFontTable_cmap::Encodings() const {
  ReadData();
  return _fEncodings;
}

const FTEncoding* FTFontTable_cmap::GetIndEncoding(uint64_t iIndex) const {
  const EncodingArray& tEncodings = Encodings();
  return iIndex < tEncodings.size() ? &tEncodings[iIndex] : nullptr;
}

const FTEncoding* FTFontTable_cmap::FindEncoding(uint32_t iPlatform, uint32_t iScript, uint32_t iLanguage,
                                                 uint64_t& oIndex) const {
  const EncodingArray& tEncodings = Encodings();
  for (uint64_t i = 0; i < tEncodings.size(); ++i) {
    const FTEncoding& tEncoding = tEncodings[i];
    if (Matches(iPlatform, tEncoding.GetPlatform()) && Matches(iScript, tEncoding.GetScript()) &&
        Matches(iLanguage, tEncoding.GetLanguage())) {
      oIndex = i;
      return &tEncoding;
    }
  }
  return nullptr;
}

const FTEncoding* FTFontTable_cmap::FindUnicodeEncoding(uint64_t& oIndex) const {
  ReadData();
  if (!_fUnicodeIndex) return nullptr;
  oIndex = *_fUnicodeIndex;
  return &_fEncodings[oIndex];
}

Tova::Data FTFontTable_cmap::RebuildDataInternal() const {
  return Tova::Adopt(TovaDataCreate(Bytes().Data(), Bytes().Size()));
}
