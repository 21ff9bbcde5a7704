#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// The columns of a terminal that a text without control characters takes: East Asian wide characters take two,
/// combining marks none.
size_t Columns(std::string_view text);

/// The text in lines of at most so many columns, broken at spaces; a word that is longer has a line of its own.
std::vector<std::string> WrappedLines(std::string_view text, size_t columns);

/// A label and the text beside it, wrapped: further lines are indented as far as the first line's text. Ends in a line
/// break.
std::string Labelled(std::string_view label, std::string_view text, size_t width);

/// So many spaces.
inline std::string Spaces(size_t count) { return std::string(count, ' '); }

/// The text with spaces up to that many columns.
std::string Padded(std::string_view text, size_t columns);

}  // namespace tool
