#include "TableAccess/Glyphs/FTComponentRun.h"

namespace {

constexpr uint16_t kHeaderSize = 10;

// Component flags.
constexpr uint16_t kArgumentsAreWords = 0x0001;
constexpr uint16_t kOneScale = 0x0008;
constexpr uint16_t kMoreComponents = 0x0020;
constexpr uint16_t kTwoScales = 0x0040;
constexpr uint16_t kTwoByTwo = 0x0080;

uint16_t OffsetAfter(Tova::ByteView iBytes, uint16_t iAt) {
  return Tova::Wrap16(uint64_t{iAt} + FTComponentRun::SizeFromFlags(iBytes.U16(iAt)));
}

}  // namespace

FTComponentRun::FTComponentRun(Tova::ByteView iBytes, uint64_t iLength)
    : _fBytes(iBytes), _fAt(kHeaderSize), _fMore(iLength > kHeaderSize) {}

std::optional<FTComponent> FTComponentRun::Next() {
  if (!_fMore) return std::nullopt;
  const FTComponent tComponent = {_fBytes.U16(_fAt), _fBytes.U16(uint64_t{_fAt} + 2)};
  const uint16_t tNext = OffsetAfter(_fBytes, _fAt);
  _fMore = (tComponent.flags & kMoreComponents) && !IsMet(tNext);
  _fAt = tNext;
  return tComponent;
}

/// Whether the run has been at the offset that it comes to now.
bool FTComponentRun::IsMet(uint16_t iOffset) {
  if (!_fMet) {
    if (iOffset > _fAt) return false;
    _fMet = std::make_unique<Offsets>();
    for (uint16_t tAt = kHeaderSize; tAt < _fAt; tAt = OffsetAfter(_fBytes, tAt)) _fMet->set(tAt / 2);
    _fMet->set(_fAt / 2);
  }
  if (_fMet->test(iOffset / 2)) return true;
  _fMet->set(iOffset / 2);
  return false;
}

uint16_t FTComponentRun::SizeFromFlags(uint16_t iFlags) {
  const int tSize = iFlags & kArgumentsAreWords ? 8 : 6;
  if (iFlags & kTwoByTwo) return static_cast<uint16_t>(tSize + 8);
  if (iFlags & kTwoScales) return static_cast<uint16_t>(tSize + 4);
  if (iFlags & kOneScale) return static_cast<uint16_t>(tSize + 2);
  return static_cast<uint16_t>(tSize);
}
