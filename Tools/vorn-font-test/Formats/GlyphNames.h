#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Report/Report.h"

namespace tool {

/// A glyph of a message as people know it: its name, the character that leads to it, its index.
/// "uni018B U+018B (333)", "U+018B (333)", "glyph 333".
std::string GlyphLabel(const Message& message);

/// What a message says: its text without the table or test before it and without the glyph's index, which GlyphLabel
/// tells.
std::string_view Words(const Message& message);

/// Ascending numbers as ranges, as many as fit into so many columns: "482, 1414, 1574-1590 and 12 more".
std::string Ranges(const std::vector<int64_t>& numbers, size_t columns);

}  // namespace tool
