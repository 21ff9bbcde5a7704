#pragma once

#include <string>
#include <string_view>

namespace tool {

/// Text as it may go to a terminal. Names out of a font, and file names, can hold anything; what would drive the
/// terminal, hide or reorder the line is written as an escape: bytes that are no UTF-8, and control characters below
/// U+0080, as \x1b, other control characters, line separators and marks of writing direction as \u202e.
std::string EscapeForTerminal(std::string_view text);

/// A finished JSON text whose strings may hold such characters, with JSON escapes in place of them.
std::string EscapeForJson(std::string_view json);

}  // namespace tool
