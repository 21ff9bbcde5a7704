#include "TableAccess/AncillaryClasses/FTLayoutChains.h"

FTLayoutChain FTLayoutChains::ReadChain(uint64_t iAt) const {
  FTLayoutChain tChain = {iAt, ChainHeaderSize(), _fBytes.U32(iAt), _fBytes.U32(iAt + 4), 0, 0};
  const bool tExtended = _fWidth == Width::kExtended;
  tChain.featureCount = tExtended ? _fBytes.U32(iAt + 8) : _fBytes.U16(iAt + 8);
  tChain.subtableCount = tExtended ? _fBytes.U32(iAt + 12) : _fBytes.U16(iAt + 10);
  return tChain;
}

FTLayoutSubtable FTLayoutChains::ReadSubtable(uint64_t iAt) const {
  const uint64_t tSize = SubtableHeaderSize();
  if (_fWidth == Width::kExtended) return {iAt, tSize, _fBytes.U32(iAt), _fBytes.U32(iAt + 4), _fBytes.U32(iAt + 8)};
  return {iAt, tSize, _fBytes.U16(iAt), _fBytes.U16(iAt + 2), _fBytes.U32(iAt + 4)};
}

std::vector<FTLayoutChain> FTLayoutChains::ReadSoundChains() const {
  std::vector<FTLayoutChain> tChains;
  uint64_t tAt = kTableHeaderSize;
  for (uint32_t i = 0; i < CountChains() && _fBytes.Holds(tAt, ChainHeaderSize()); ++i) {
    const FTLayoutChain tChain = ReadChain(tAt);
    if (!HasSoundLength(tChain)) break;
    tChains.push_back(tChain);
    tAt += tChain.length;
  }
  return tChains;
}
