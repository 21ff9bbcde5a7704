#pragma once

#include <cstdint>

namespace Tova {

/// Whether a character is a letter with case (upper, lower or title) or a decimal digit, by the general categories of
/// the Unicode version of the ICU that the library was built with.
bool IsLetterOrDigit(uint32_t character);

}  // namespace Tova
