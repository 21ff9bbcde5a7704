#include "TableAccess/FontClasses/FTStyleNames.h"

#include <algorithm>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/AncillaryClasses/FTText.h"

namespace {

constexpr int64_t kIndexesAt = 10;
constexpr int64_t kStringsAt = 60;
constexpr size_t kMaxNameLength = 255;

}  // namespace

std::vector<Tova::String> FTStyleNames::MakePostScriptNames() const {
  std::vector<Tova::String> tNames;
  for (int tStyle = 0; tStyle < kStyleCount; ++tStyle) {
    // quirk: style-index-twice. The index of a style leads to another index, and that one to the name.
    const Tova::String tName = FTDecodeText(MakeName(GetIndex(tStyle)), kTovaTextEncodingRoman);
    const auto tIsName = [&tName](const Tova::String& iOther) { return TovaEqual(iOther.get(), tName.get()); };
    if (tName && std::ranges::none_of(tNames, tIsName)) tNames.push_back(tName);
  }
  return tNames;
}

int8_t FTStyleNames::GetIndex(int iStyle) const {
  return _fResource.S8(static_cast<uint64_t>(_fTable + kIndexesAt + iStyle));
}

std::string FTStyleNames::MakeName(int iIndex) const {
  std::string tName;
  AppendString(tName, 1);
  const int tNumber = GetIndex(iIndex);
  if (tNumber <= 1) return tName;
  const int64_t tList = FindStringOrThrow(tNumber);
  for (int i = 1; i <= U8At(tList); ++i) AppendString(tName, U8At(tList + i));
  return tName;
}

void FTStyleNames::AppendString(std::string& ioName, int iNumber) const {
  ioName += ReadString(FindStringOrThrow(iNumber));
  if (ioName.size() > kMaxNameLength) {
    FTThrow("tName.length() > 255", "The 'FOND' resource has a corrupt PostScript name");
  }
}

int64_t FTStyleNames::FindStringOrThrow(int iNumber) const {
  const std::optional<int64_t> tString = FindString(iNumber);
  if (!tString) FTThrow("tString >= tResourceEnd", "The 'FOND' resource has bad data in its style name table");
  return *tString;
}

std::optional<int64_t> FTStyleNames::FindString(int iNumber) const {
  const size_t tIndex = iNumber > 1 ? static_cast<size_t>(iNumber - 1) : 0;
  if (_fStrings.empty()) _fStrings.push_back(_fTable + kStringsAt);
  while (_fStrings.size() <= tIndex) {
    const int64_t tNext = _fStrings.back() + 1 + U8At(_fStrings.back());
    if (tNext >= static_cast<int64_t>(_fResource.Size())) return std::nullopt;
    _fStrings.push_back(tNext);
  }
  return _fStrings[tIndex];
}

std::string FTStyleNames::ReadString(int64_t iString) const {
  std::string tText;
  for (int i = 1; i <= U8At(iString); ++i) tText += static_cast<char>(U8At(iString + i));
  return tText;
}
