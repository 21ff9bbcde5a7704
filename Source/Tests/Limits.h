#pragma once

#include <cstdint>

/// Messages that a check whose findings are not bounded by the table's bytes adds to a report; the findings after them
/// count in the result only. More than a person reads, and some tens of megabytes.
inline constexpr int64_t kMaxMessagesOfCheck = 65536;

/// Device widths that are compared with scaled advances. Enough for every glyph at each of the 256 sizes that a device
/// record can have; records that overlap could ask for billions.
inline constexpr uint64_t kMaxDeviceWidthsCompared = uint64_t{256} * 65536;
