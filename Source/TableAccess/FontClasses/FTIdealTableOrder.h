#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>
#include <optional>
#include <vector>

/// Tags in the order in which a font's tables are best laid out.
using FTTableOrder = std::vector<uint32_t>;

/// The order that serves unless the user has set another.
const FTTableOrder& FTDefaultTableOrder();

/// The order of the process, read once from the preference "TableOrder" of the domain "veltrin.fonts.Quillon"; where
/// there is none, the default order is written there. Null when the preference holds something that is no order.
const FTTableOrder* FTIdealTableOrder();

/// The order that a preference's value stands for: an array of strings, each the four bytes of a tag as they lie in the
/// host's memory (a little-endian host writes "daeh" for 'head'). Elements that are no strings, or longer than seven
/// characters of the Roman encoding, are left out; "????" ends the order. None when the value is no array.
std::optional<FTTableOrder> FTTableOrderFromPreference(TovaTypeRef iValue);

/// The order as such a value.
Tova::Array FTPreferenceFromTableOrder(const FTTableOrder& iOrder);
