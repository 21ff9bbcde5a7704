#pragma once

#include <cstdint>

/// Messages that a check whose findings are not bounded by the table's bytes adds to a report; the findings after them
/// count in the result only. More than a person reads; they take some 40 megabytes.
inline constexpr int64_t kMaxMessagesOfCheck = 65536;

/// The same for the checks of every glyph. Large fonts that can be used give more: one message for each component of a
/// compound glyph, or for each device width. They take some 150 megabytes.
inline constexpr int64_t kMaxMessagesOfGlyphs = 262144;

/// Device widths that are compared with scaled advances. Enough for every glyph at each of the 256 sizes that a device
/// record can have; records that overlap could ask for billions.
inline constexpr uint64_t kMaxDeviceWidthsCompared = uint64_t{256} * 65536;

/// Groups, array entries, characters and mappings that the structure test of 'cmap' looks at in all subtables: seven
/// times as many as there are characters. Records and subtables can share and overlap their bytes, so that a megabyte
/// asks for billions; a table that asks for more than these is refused as invalid.
inline constexpr uint64_t kMaxCmapChecks = 1 << 23;
