#pragma once

#include <cstdint>

// Bounds on what font data may make the library do. Honest fonts stay far below them.

/// Fonts in a collection. One more than these is refused as unreadable: a file of a few gigabytes can claim a billion
/// fonts, and each costs memory before its directory is looked at.
inline constexpr uint32_t kFTMaxCollectionFonts = 65535;
