#include "TableAccess/AncillaryClasses/FTCompoundTrueTypeGlyph.h"

#include <algorithm>
#include <bitset>

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/AncillaryClasses/FTSimpleTrueTypeGlyph.h"
#include "TableAccess/TableClasses/FTFontTable_glyf.h"

namespace {

constexpr char kSource[] = "TableAccess/AncillaryClasses/FTCompoundTrueTypeGlyph";

// Component flags.
constexpr uint16_t kArgumentsAreWords = 0x0001;
constexpr uint16_t kOneScale = 0x0008;
constexpr uint16_t kMoreComponents = 0x0020;
constexpr uint16_t kTwoScales = 0x0040;
constexpr uint16_t kTwoByTwo = 0x0080;

uint16_t ValueAt(const std::vector<uint16_t>& iValues, uint16_t iIndex) {
  return iIndex < iValues.size() ? iValues[iIndex] : uint16_t{0xFFFF};
}

}  // namespace

/// A compound glyph being read, and the totals of the components before the next one.
struct FTCompoundTrueTypeGlyph::Level {
  const FTCompoundTrueTypeGlyph* glyph;
  uint16_t next = 0;
  uint16_t points = 0;
  uint16_t contours = 0;
  uint16_t depth = 0;
};

void FTCompoundTrueTypeGlyph::ReadDataInternal() const {
  ReadComponents();
  std::vector<Level> tPath = {{.glyph = this}};
  while (true) {
    Level& tLevel = tPath.back();
    if (const FTCompoundTrueTypeGlyph* tUnread = NextUnreadComponent(tLevel)) {
      if (!tUnread->BeginReading()) continue;
      tUnread->ReadComponents();
      tPath.push_back({.glyph = tUnread});
      continue;
    }
    const FTCompoundTrueTypeGlyph& tGlyph = *tLevel.glyph;
    tGlyph._fComponentPointCount = tLevel.points;
    tGlyph._fComponentContourCount = tLevel.contours;
    tGlyph._fComponentDepth = Tova::Wrap16(uint64_t{tLevel.depth} + 1);
    tPath.pop_back();
    if (tPath.empty()) return;
    tGlyph.MarkDataRead();
  }
}

/// Adds up the components from the level's next one on, and stops at a compound glyph that has not been read: that one
/// is returned, and comes first the next time. Null when all have been added.
const FTCompoundTrueTypeGlyph* FTCompoundTrueTypeGlyph::NextUnreadComponent(Level& ioLevel) const {
  const std::vector<uint16_t>& tIDs = *ioLevel.glyph->_fComponentIDs;
  for (; ioLevel.next < tIDs.size(); ++ioLevel.next) {
    const FTTrueTypeGlyph* tOther = GetTable()->GetGlyph(tIDs[ioLevel.next]);
    if (!tOther)
      FTThrowAt("tOther == NULL", "An attempt was made to access a glyph with an invalid index", kSource, 160);
    uint64_t tPoints = ioLevel.points;
    uint64_t tContours = ioLevel.contours;
    if (const auto* tCompound = dynamic_cast<const FTCompoundTrueTypeGlyph*>(tOther)) {
      if (!tCompound->DataRead()) return tCompound;
      tPoints += tCompound->_fComponentPointCount;
      tContours += tCompound->_fComponentContourCount;
      ioLevel.depth = std::max(ioLevel.depth, tCompound->_fComponentDepth);
    } else if (const auto* tSimple = dynamic_cast<const FTSimpleTrueTypeGlyph*>(tOther)) {
      tPoints += tSimple->GetPointCount();
      tContours += tSimple->GetContourCount();
    }
    ioLevel.points = Tova::Wrap16(tPoints);
    ioLevel.contours = Tova::Wrap16(tContours);
  }
  return nullptr;
}

/// The part of reading that looks at this glyph alone.
void FTCompoundTrueTypeGlyph::ReadComponents() const {
  ReadComponentIDs();
  if (GetUnswappedDataLength() < kHeaderSize)
    FTThrowAt("GetUnswappedDataLength() < 5 * sizeof( uint16_t )", "A glyph had bad data", kSource, 139);
  _fComponentFlags = GenerateComponentFlags();
  _fSubcomponentCount = Tova::Wrap16(_fComponentIDs->size());
}

uint16_t FTCompoundTrueTypeGlyph::GetComponentCount() const {
  ReadComponentIDs();
  ReadData();
  return Tova::Wrap16(_fComponentIDs->size());
}

uint16_t FTCompoundTrueTypeGlyph::GetComponentID(uint16_t iIndex) const {
  return _fComponentIDs ? ValueAt(*_fComponentIDs, iIndex) : uint16_t{0xFFFF};
}

uint16_t FTCompoundTrueTypeGlyph::GetComponentFlags(uint16_t iIndex) const { return ValueAt(_fComponentFlags, iIndex); }

uint16_t FTCompoundTrueTypeGlyph::GetSubcomponentCount() const {
  ReadData();
  return _fSubcomponentCount;
}

uint16_t FTCompoundTrueTypeGlyph::GetComponentPointCount() const {
  ReadData();
  return _fComponentPointCount;
}

uint16_t FTCompoundTrueTypeGlyph::GetComponentContourCount() const {
  ReadData();
  return _fComponentContourCount;
}

uint16_t FTCompoundTrueTypeGlyph::GetComponentDepth() const {
  ReadData();
  return _fComponentDepth;
}

void FTCompoundTrueTypeGlyph::ReadComponentIDs() const {
  if (!_fComponentIDs) _fComponentIDs = GenerateComponentIDs();
}

uint16_t FTCompoundTrueTypeGlyph::GetComponentSizeFromFlags(uint16_t iFlags) {
  const int tSize = iFlags & kArgumentsAreWords ? 8 : 6;
  if (iFlags & kTwoByTwo) return static_cast<uint16_t>(tSize + 8);
  if (iFlags & kTwoScales) return static_cast<uint16_t>(tSize + 4);
  if (iFlags & kOneScale) return static_cast<uint16_t>(tSize + 2);
  return static_cast<uint16_t>(tSize);
}

std::vector<uint16_t> FTCompoundTrueTypeGlyph::GenerateComponentFlags() const { return GenerateComponentWords(0); }

std::vector<uint16_t> FTCompoundTrueTypeGlyph::GenerateComponentIDs() const { return GenerateComponentWords(2); }

/// The word at this offset of every component record. The offset of a record is a 16-bit number: a run of components
/// that is longer goes on at the record's start, and ends where it meets a component again.
std::vector<uint16_t> FTCompoundTrueTypeGlyph::GenerateComponentWords(uint16_t iOffset) const {
  std::vector<uint16_t> tWords;
  if (GetUnswappedDataLength() <= kHeaderSize) return tWords;
  const Tova::ByteView tBytes = GetUnswappedData();
  std::bitset<0x8000> tMet;  // by half the offset, which is always even
  uint16_t tAt = kHeaderSize;
  uint16_t tFlags;
  do {
    tMet.set(tAt / 2);
    GetTable()->ChargeDecoding(1);
    tFlags = tBytes.U16(tAt);
    tWords.push_back(tBytes.U16(uint64_t{tAt} + iOffset));
    tAt = Tova::Wrap16(uint64_t{tAt} + GetComponentSizeFromFlags(tFlags));
  } while ((tFlags & kMoreComponents) && !tMet.test(tAt / 2));
  return tWords;
}
