#include "TableAccess/TableClasses/FeatureChains.h"

#include "TableAccess/AncillaryClasses/FTException.h"
#include "TableAccess/AncillaryClasses/FTWorkBudget.h"
#include "TableAccess/FTLimits.h"

namespace FeatureChains {

namespace {

constexpr uint64_t kTableHeaderSize = 8;
constexpr uint64_t kFeatureEntrySize = 12;
constexpr uint64_t kStepsOfChain = 4;

struct Chain {
  uint32_t defaultFlags;
  uint32_t length;
  uint64_t featureCount;
};

uint64_t CountDefaultFeatures(const Chain& iChain, Tova::ByteView iEntries) {
  uint64_t tCount = 0;
  for (const Tova::ByteView tEntry : Tova::RecordArray(iEntries, 0, iChain.featureCount, kFeatureEntrySize)) {
    const uint32_t tEnableFlags = tEntry.U32(4);
    if (tEnableFlags != 0 && (tEnableFlags & ~iChain.defaultFlags) == 0) ++tCount;
  }
  return tCount;
}

}  // namespace

uint64_t CountDefaultFeatures(Tova::ByteView iBytes, CountWidth iWidth, FTWorkBudget& ioBudget) {
  const uint64_t tHeadSize = 8 + 2 * static_cast<uint64_t>(iWidth);
  const uint32_t tChainCount = iBytes.U32(4);
  uint64_t tCount = 0;
  uint64_t tAt = kTableHeaderSize;
  // Heads and entries of chains that follow one another use each byte once. A chain shorter than what it holds, of
  // length 0 even, has the next chain begin inside it; the walk is over when far more bytes have been used than there
  // are.
  uint64_t tUnused = kFTOverlappingChainBytes + iBytes.From(kTableHeaderSize).Size();
  for (uint32_t i = 0; i < tChainCount; ++i) {
    if (!iBytes.Holds(tAt, tHeadSize) || tHeadSize > tUnused) {
      FTThrow("tHeadSize > tUnused", "The chain head points beyond the end of the table");
    }
    const Chain tChain = {iBytes.U32(tAt), iBytes.U32(tAt + 4),
                          iWidth == CountWidth::k16Bits ? iBytes.U16(tAt + 8) : iBytes.U32(tAt + 8)};
    tUnused -= tHeadSize;
    const uint64_t tEntriesSize = tChain.featureCount * kFeatureEntrySize;
    if (!iBytes.Holds(tAt + tHeadSize, tEntriesSize) || tEntriesSize > tUnused) {
      FTThrow("tEntriesSize > tUnused", "The feature entry points beyond the end of the table");
    }
    tUnused -= tEntriesSize;
    ioBudget.Charge(kStepsOfChain + tChain.featureCount);
    tCount += CountDefaultFeatures(tChain, iBytes.Slice(tAt + tHeadSize, tEntriesSize));
    tAt += tChain.length;
  }
  return tCount;
}

}  // namespace FeatureChains
