#pragma once

#include <cstdint>
#include <vector>

#include "Platform/ByteView.h"

/// An entry of a chain's feature list: the chain's flags become (flags & disable) | enable where the setting is chosen.
struct FTLayoutFeature {
  uint16_t fType = 0;
  uint16_t fSetting = 0;
  uint32_t fEnableFlags = 0;
  uint32_t fDisableFlags = 0;

  static constexpr uint64_t kSize = 12;
  static FTLayoutFeature Read(Tova::ByteView iBytes, uint64_t iAt) {
    return {iBytes.U16(iAt), iBytes.U16(iAt + 2), iBytes.U32(iAt + 4), iBytes.U32(iAt + 8)};
  }
};

/// The head of a chain of 'morx' or 'mort', as it is stored.
struct FTLayoutChain {
  uint64_t offset;      ///< bytes from the start of the table
  uint64_t headerSize;  ///< bytes of the head
  uint32_t defaultFlags;
  uint32_t length;  ///< bytes, head included
  uint32_t featureCount;
  uint32_t subtableCount;

  uint64_t Features() const { return offset + headerSize; }
  uint64_t Subtables() const { return Features() + FTLayoutFeature::kSize * featureCount; }
};

/// The head of a subtable of a chain, as it is stored.
struct FTLayoutSubtable {
  uint64_t offset;
  uint64_t headerSize;
  uint32_t length;  ///< bytes, head included
  uint32_t coverage;
  uint32_t subFeatureFlags;  ///< it runs while the chain's flags have one of these
};

/// The layout of chains in 'morx' (extended) and 'mort' (classic), which differ in the widths of fields.
///
/// Bytes: a table header of 8 whose last four are the chain count, then the chains, one after the other. A chain:
/// default flags u32, length u32, feature count and subtable count (u32 each in 'morx', u16 in 'mort'), the feature
/// entries (FTLayoutFeature), the subtables. A subtable: length and coverage (u32 each, u16 in 'mort'), subfeature
/// flags u32, body. As in "The 'morx' table" and "The 'mort' table" of the TrueType reference.
class FTLayoutChains {
 public:
  enum class Width : uint8_t { kClassic, kExtended };

  static constexpr uint64_t kTableHeaderSize = 8;

  FTLayoutChains(Tova::ByteView iBytes, Width iWidth) : _fBytes(iBytes), _fWidth(iWidth) {}

  /// As stored.
  uint32_t CountChains() const { return _fBytes.U32(4); }
  uint64_t ChainHeaderSize() const { return _fWidth == Width::kExtended ? 16 : 12; }
  uint64_t SubtableHeaderSize() const { return _fWidth == Width::kExtended ? 12 : 8; }
  FTLayoutChain ReadChain(uint64_t iAt) const;
  FTLayoutSubtable ReadSubtable(uint64_t iAt) const;

  /// Whether the chain's length has room for its head and stays inside the table.
  bool HasSoundLength(const FTLayoutChain& iChain) const {
    return iChain.length >= iChain.headerSize && _fBytes.Holds(iChain.offset, iChain.length);
  }
  /// The chains up to the first whose head or length is wrong.
  std::vector<FTLayoutChain> ReadSoundChains() const;

 private:
  Tova::ByteView _fBytes;
  Width _fWidth;
};
