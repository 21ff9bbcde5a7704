#include "TableAccess/FontClasses/FTFont_FOND.h"

#include <utility>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/FontClasses/FTOutlineFileName.h"
#include "TableAccess/FontClasses/FTStyleNames.h"

namespace {

constexpr int64_t kWidthsAt = 16;
constexpr int64_t kKerningAt = 20;
constexpr int64_t kStyleMappingAt = 24;
constexpr int64_t kFATCountAt = 52;
constexpr int64_t kFATAt = 54;
constexpr int64_t kFATEntrySize = 6;

/// A kerning entry's style and pair count, and a pair.
constexpr int64_t kKernEntryHeaderSize = 4;
constexpr int64_t kKernPairSize = 4;

constexpr int64_t kStyleMappingHeaderSize = 58;

/// Outline files of a family; it has so many styles.
constexpr size_t kMaxType1Fonts = 48;

/// What the names of all styles, and a look for a file, count as steps of work.
constexpr uint64_t kNamesSteps = 48 * 256;
constexpr uint64_t kLookUpSteps = 1024;

}  // namespace

FTFont_FOND& FTFont_FOND::operator=(const FTFont_FOND& iOther) {
  if (this == &iOther) return *this;
  FTFont_resource::operator=(iOther);
  _fLayout = {};
  return *this;
}

// The layout.

void FTFont_FOND::CheckIntegrity() const {
  const auto tCheck = [this](int64_t iAt, const char* iAssertion, const char* iFailure) {
    if (U32At(iAt) != 0 && U32At(iAt) >= Length()) FTThrow(iAssertion, iFailure);
  };
  tCheck(kStyleMappingAt, "tStyleOffset >= GetUnswappedDataLength()",
         "The 'FOND' resource has a bad style mapping table offset");
  tCheck(kKerningAt, "tKernOffset >= GetUnswappedDataLength()", "The 'FOND' resource has a bad kerning table offset");
  tCheck(kWidthsAt, "tWidthOffset >= GetUnswappedDataLength()", "The 'FOND' resource has a bad width table offset");
}

const FTFont_FOND::Layout& FTFont_FOND::Read() const {
  ReadData();
  return _fLayout;
}

void FTFont_FOND::ReadDataInternal() const {
  _fLayout = {};
  _fLayout.fatEntryCount = uint32_t{U16At(kFATCountAt)} + 1;
  SpendWork(GetFAT().Held());
  for (const Tova::ByteView tEntry : GetFAT()) _fLayout.hasOutlineFont |= tEntry.U16(0) == 0;
  // Entries beyond the end read as zeros, so that their size is 0.
  _fLayout.hasOutlineFont |= GetFAT().Held() < _fLayout.fatEntryCount;

  if (const int64_t tStyle = U32At(kStyleMappingAt); tStyle != 0 && tStyle < Length()) {
    const int64_t tGlyphEncoding = tStyle + S32At(tStyle + 2);
    const bool tBad = tStyle + kStyleMappingHeaderSize > Length() || tGlyphEncoding < 0 || tGlyphEncoding > Length();
    if (!tBad) _fLayout.styleMapping = tStyle;
  }
  ReadKerning();
  if (const int64_t tWidths = U32At(kWidthsAt); tWidths != 0 && tWidths < Length()) _fLayout.widths = tWidths;
  ReadOffsetsAndBoxes();
  LookForType1Fonts();
}

void FTFont_FOND::ReadKerning() const {
  const int64_t tKerning = S32At(kKerningAt);
  if (tKerning == 0 || tKerning + 6 >= Length()) return;
  _fLayout.kerning = tKerning;
  _fLayout.kernEntryCount = uint32_t{U16At(tKerning)} + 1;
  _fLayout.kernEntries = tKerning + 2;
}

void FTFont_FOND::ReadOffsetsAndBoxes() const {
  const int64_t tOffsets = kFATAt + kFATEntrySize * _fLayout.fatEntryCount;
  if (tOffsets >= Length() || IsTableAt(tOffsets)) return;
  const int16_t tOffsetCount = Tova::WrapSigned16(U16At(tOffsets) + 1);
  const int64_t tBoxes = tOffsets + 2 + 4 * int64_t{tOffsetCount};
  if (tBoxes >= Length()) return;
  _fLayout.offsetCount = tOffsetCount;
  _fLayout.offsets = tOffsets + 2;
  if (tBoxes + 2 >= Length()) return;
  _fLayout.boxCount = Tova::WrapSigned16(U16At(tBoxes) + 1);
  // quirk: box-room. The count of boxes, not their size; what is too long is told by the test of the boxes.
  if (_fLayout.boxCount >= 1 && tBoxes + _fLayout.boxCount + 12 <= Length()) _fLayout.boxes = tBoxes + 2;
}

bool FTFont_FOND::IsTableAt(int64_t iPosition) const {
  return _fLayout.styleMapping == iPosition || _fLayout.kerning == iPosition || _fLayout.widths == iPosition;
}

// The font association table.

Tova::RecordArray FTFont_FOND::GetFAT() const {
  return Tova::RecordArray(Bytes(), kFATAt, uint64_t{U16At(kFATCountAt)} + 1, kFATEntrySize);
}

bool FTFont_FOND::ListsOutlineFont(int32_t iID) const {
  ReadData();
  SpendWork(GetFAT().Held());
  for (const Tova::ByteView tEntry : GetFAT()) {
    if (tEntry.U16(0) == 0 && int32_t{tEntry.U16(4)} == iID) return true;
  }
  return iID == 0 && GetFAT().Held() < GetFAT().Claimed();
}

// Kerning.

FTFont_FOND::Position FTFont_FOND::GetIndKernEntry(uint64_t iEntry) const {
  if (iEntry >= GetKernEntryCount()) return std::nullopt;
  SpendWork(iEntry);
  int64_t tAt = *_fLayout.kernEntries;
  for (uint64_t i = 0; i < iEntry; ++i) {
    tAt += kKernEntryHeaderSize + kKernPairSize * S16At(tAt + 2);
    if (tAt < 0 || tAt > Length()) {
      FTThrow("tEntry < tResource || tEntry > tResourceEnd",
              "The 'FOND' resource contains more kerning data than it has room for");
    }
  }
  return tAt;
}

int16_t FTFont_FOND::GetIndKernPairCount(uint64_t iEntry) const {
  const Position tEntry = GetIndKernEntry(iEntry);
  return tEntry ? S16At(*tEntry + 2) : int16_t{0};
}

FTFont_FOND::Position FTFont_FOND::GetIndKernPair(uint64_t iEntry, uint64_t iPair) const {
  const Position tEntry = GetIndKernEntry(iEntry);
  const int16_t tPairCount = tEntry ? S16At(*tEntry + 2) : int16_t{0};
  if (tPairCount <= 0 || iPair >= static_cast<uint64_t>(tPairCount)) return std::nullopt;
  return *tEntry + kKernEntryHeaderSize + kKernPairSize * static_cast<int64_t>(iPair);
}

// PostScript names and outline files.

const std::vector<Tova::String>& FTFont_FOND::GetPostScriptNames() const {
  ReadData();
  if (!_fLayout.postScriptNames) {
    SpendWork(kNamesSteps);
    std::vector<Tova::String> tNames;
    if (_fLayout.styleMapping) tNames = FTStyleNames(Bytes(), *_fLayout.styleMapping).MakePostScriptNames();
    _fLayout.postScriptNames = std::move(tNames);
  }
  return *_fLayout.postScriptNames;
}

uint64_t FTFont_FOND::GetPostScriptNameCount() const { return GetPostScriptNames().size(); }

TovaStringRef FTFont_FOND::GetIndPostScriptName(uint64_t iIndex) const {
  try {
    const std::vector<Tova::String>& tNames = GetPostScriptNames();
    return iIndex < tNames.size() ? tNames[iIndex].get() : nullptr;
  } catch (const FTException&) {
    return nullptr;
  }
}

const FTLWFNFontContainer* FTFont_FOND::GetIndType1Font(uint64_t iIndex) const {
  return iIndex < GetType1FontCount() ? _fLayout.type1Fonts[iIndex].get() : nullptr;
}

/// A family whose names cannot be made has no outline files.
void FTFont_FOND::LookForType1Fonts() const {
  for (uint64_t i = 0; const TovaStringRef tName = GetIndPostScriptName(i); ++i) {
    auto tContainer = Type1FontContainerFromName(tName);
    if (tContainer && _fLayout.type1Fonts.size() < kMaxType1Fonts) {
      _fLayout.type1Fonts.push_back(std::move(tContainer));
    }
  }
}

std::shared_ptr<const FTLWFNFontContainer> FTFont_FOND::Type1FontContainerFromName(TovaStringRef iName) const {
  const Tova::String tFileName = FTMake533NameFromFullName(iName);
  if (!Owner() || !tFileName) return nullptr;
  SpendWork(kLookUpSteps);
  return Owner()->FindOutlineFile(std::string(Tova::Text(tFileName)));
}
