#include "Formats/LineWrapping.h"

#include <algorithm>
#include <cstdint>

#include "Report/EscapedText.h"

namespace tool {
namespace {

struct Range {
  uint32_t first;
  uint32_t last;
};

/// The blocks of Unicode whose characters are wide by its property East_Asian_Width, roughly.
constexpr Range kWide[] = {{0x1100, 0x115F}, {0x2E80, 0x303E},   {0x3041, 0x4DBF},   {0x4E00, 0xA4CF},
                           {0xAC00, 0xD7A3}, {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},
                           {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};
constexpr Range kCombining[] = {
    {0x0300, 0x036F}, {0x200B, 0x200D}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}};

template <size_t N>
bool IsIn(const Range (&ranges)[N], uint32_t code) {
  return std::ranges::any_of(ranges, [code](const Range& range) { return range.first <= code && code <= range.last; });
}

}  // namespace

size_t Columns(std::string_view text) {
  size_t columns = 0;
  while (!text.empty()) {
    const Utf8Character character = DecodeUtf8(text);
    text.remove_prefix(std::max<size_t>(character.bytes, 1));
    if (character.code >= 0x300 && IsIn(kCombining, character.code)) continue;
    columns += character.code >= 0x1100 && IsIn(kWide, character.code) ? 2 : 1;
  }
  return columns;
}

std::vector<std::string> WrappedLines(std::string_view text, size_t columns) {
  std::vector<std::string> lines(1);
  size_t column = 0;
  while (!text.empty()) {
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(std::min(word.size() + 1, text.size()));
    const size_t width = Columns(word);
    if (!lines.back().empty() && column + 1 + width > columns) {
      lines.emplace_back();
      column = 0;
    }
    if (!lines.back().empty()) {
      lines.back() += ' ';
      ++column;
    }
    lines.back() += word;
    column += width;
  }
  return lines;
}

std::string Labelled(std::string_view label, std::string_view text, size_t width) {
  const size_t indent = Columns(label);
  std::string result;
  for (const std::string& line : WrappedLines(text, width > indent ? width - indent : 1)) {
    result.append(result.empty() ? std::string(label) : Spaces(indent)).append(line).append("\n");
  }
  return result;
}

std::string Padded(std::string_view text, size_t columns) {
  const size_t width = Columns(text);
  return std::string(text) + Spaces(width < columns ? columns - width : 0);
}

}  // namespace tool
