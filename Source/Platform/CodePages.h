#pragma once

#include <Tova/Tova.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>

namespace Tova {

/// A text encoding of one- and two-byte codes, each of which stands for one character up to U+FFFF. The build writes
/// its tables.
struct CodePage {
  static constexpr char16_t kNone = 0xFFFF;
  static constexpr char16_t kFirstLead = 0xD800;
  static constexpr size_t kRow = 256;

  TovaTextEncoding encoding;
  /// Rows of 256, the first by the first byte: a character, kNone, or of the first byte of two, kFirstLead plus the
  /// number of the row by the second byte.
  std::span<const char16_t> characters;
  /// Pairs of a character and its code where that is not the first code that stands for the character.
  std::span<const uint16_t> preferred;

  /// The number of the row that a value of the first row leads to; 0 for any other value.
  static size_t RowOf(char16_t value) { return value >= kFirstLead && value < 0xE000 ? value - kFirstLead : 0; }

  /// The code of a character: a byte, or two with the first one in the upper eight bits; none for a character that the
  /// code page lacks. Looks at all codes.
  std::optional<uint16_t> CodeOf(char16_t character) const {
    if (character == kNone || RowOf(character) != 0) return std::nullopt;
    for (size_t i = 0; i < preferred.size(); i += 2) {
      if (preferred[i] == character) return preferred[i + 1];
    }
    const size_t place = static_cast<size_t>(std::ranges::find(characters, character) - characters.begin());
    if (place == characters.size()) return std::nullopt;
    if (place < kRow) return static_cast<uint16_t>(place);
    const auto firstRow = characters.first(kRow);
    const auto lead = std::ranges::find(firstRow, place / kRow, RowOf) - firstRow.begin();
    return static_cast<uint16_t>(static_cast<size_t>(lead) << 8 | place % kRow);
  }
};

/// The code page of an encoding, null for any other.
const CodePage* FindCodePage(TovaTextEncoding encoding);

}  // namespace Tova
