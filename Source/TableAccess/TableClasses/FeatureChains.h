#pragma once

#include <cstdint>

#include "Platform/ByteView.h"

class FTWorkBudget;

/// Walks the chains of 'mort' and 'morx', which differ in the widths of two counts only.
///
/// Bytes: an 8-byte table header whose last four are the chain count, then the chains. A chain: default flags u32,
/// chain length u32, feature entry count and subtable count (u16 each in 'mort', u32 each in 'morx'), the feature
/// entries, the subtables. A feature entry: feature type u16, setting u16, enable flags u32, disable flags u32.
namespace FeatureChains {

enum class CountWidth : uint8_t { k16Bits = 2, k32Bits = 4 };

/// How many features are on by default: over all chains, the entries whose enable flags are not 0 and are all set in
/// the default flags of the chain. Throws "The chain head points beyond the end of the table" or "The feature entry
/// points beyond the end of the table" when one does, and also when chains overlap so often that their heads and
/// entries are larger than the table by megabytes.
uint64_t CountDefaultFeatures(Tova::ByteView iBytes, CountWidth iWidth, FTWorkBudget& ioBudget);

}  // namespace FeatureChains
