#include "TableAccess/TableClasses/FTFontTable_Chains.h"

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/FTLimits.h"

namespace {

constexpr uint64_t kFeatureEntrySize = FTLayoutFeature::kSize;

}  // namespace

/// Counts the bytes of entries and heads that are looked at. Those of chains that do not overlap are there once; a
/// hostile table makes every chain claim all that follow.
class FTFontTable_Chains::Work {
 public:
  explicit Work(uint64_t iTableSize) : _fLeft(FTLimits::Get().overlappingChainBytes + iTableSize) {}
  bool Spend(uint64_t iBytes) {
    if (iBytes > _fLeft) return false;
    _fLeft -= iBytes;
    return true;
  }

 private:
  uint64_t _fLeft;
};

uint64_t FTFontTable_Chains::GetFeatureCount(uint64_t iChain) const {
  const std::vector<FTLayoutChain> tChains = ReadChains();
  return iChain < tChains.size() ? tChains[iChain].featureCount : 0;
}

bool FTFontTable_Chains::GetIndFeature(uint64_t iChain, uint64_t iIndex, FTLayoutFeature& oFeature) const {
  const std::vector<FTLayoutChain> tChains = ReadChains();
  if (iChain >= tChains.size() || iIndex >= tChains[iChain].featureCount) return false;
  const uint64_t tFeature = tChains[iChain].Features() + iIndex * kFeatureEntrySize;
  RequireFeature(tFeature);
  oFeature = FTLayoutFeature::Read(Bytes(), tFeature);
  return true;
}

uint64_t FTFontTable_Chains::CountDefaultFeatures() const {
  Work tWork(GetSize());
  uint64_t tCount = 0;
  for (const FTLayoutChain& tChain : ReadChains()) {
    const uint64_t tEntries = CountDefaultEntries(tChain, tWork);
    tCount += tEntries == 0 && RunsByDefault(tChain, tWork) ? 1 : tEntries;
  }
  return tCount;
}

std::vector<FTLayoutChain> FTFontTable_Chains::ReadChains() const {
  const FTLayoutChains tLayout = Chains();
  std::vector<FTLayoutChain> tChains = tLayout.ReadSoundChains();
  if (tChains.size() < tLayout.CountChains()) {
    const uint64_t tChain =
        tChains.empty() ? FTLayoutChains::kTableHeaderSize : tChains.back().offset + tChains.back().length;
    const bool tHasHead = Bytes().Holds(tChain, tLayout.ChainHeaderSize());
    FTThrow({tHasHead ? "tNextChain > tTableLimit" : "tChain + tHeaderSize > tTableLimit",
             "The chain head points beyond the end of the table", SourceFile(), __LINE__});
  }
  return tChains;
}

void FTFontTable_Chains::RequireFeature(uint64_t iAt) const {
  if (!Bytes().Holds(iAt, kFeatureEntrySize)) {
    FTThrow({"tFeature + kFeatureEntrySize > tTableLimit", "The feature entry points beyond the end of the table",
             SourceFile(), __LINE__});
  }
}

uint64_t FTFontTable_Chains::CountDefaultEntries(const FTLayoutChain& iChain, Work& ioWork) const {
  uint64_t tCount = 0;
  for (uint64_t i = 0; i < iChain.featureCount; ++i) {
    const uint64_t tFeature = iChain.Features() + i * kFeatureEntrySize;
    ChargeWork(1);
    RequireFeature(ioWork.Spend(kFeatureEntrySize) ? tFeature : GetSize());
    const FTLayoutFeature tEntry = FTLayoutFeature::Read(Bytes(), tFeature);
    if (tEntry.fType != 0 && tEntry.fEnableFlags != 0 && (tEntry.fEnableFlags & ~iChain.defaultFlags) == 0) ++tCount;
  }
  return tCount;
}

bool FTFontTable_Chains::RunsByDefault(const FTLayoutChain& iChain, Work& ioWork) const {
  uint64_t tAt = iChain.Subtables();
  for (uint32_t i = 0; i < iChain.subtableCount; ++i) {
    const FTLayoutSubtable tSubtable = Chains().ReadSubtable(tAt);
    if (!Bytes().Holds(tAt, tSubtable.headerSize) || !ioWork.Spend(tSubtable.headerSize)) return false;
    if ((tSubtable.subFeatureFlags & iChain.defaultFlags) != 0) return true;
    if (tSubtable.length < tSubtable.headerSize) return false;
    tAt += tSubtable.length;
  }
  return false;
}
