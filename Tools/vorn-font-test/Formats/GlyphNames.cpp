#include "Formats/GlyphNames.h"

#include <array>
#include <cstdio>

#include "Formats/TextStyle.h"
#include "Report/EscapedText.h"
#include "Report/Rules.h"

namespace tool {
namespace {

constexpr size_t kLongestPrefix = 24;

/// Messages about the run stand without a table or test before them.
bool HasPrefix(const Message& message) { return !message.rule || message.rule->Group() != "run"; }

std::string CodePoint(int64_t character) {
  std::array<char, 24> text;
  const int length = std::snprintf(text.data(), text.size(), "U+%04llX", static_cast<unsigned long long>(character));
  return {text.data(), static_cast<size_t>(length)};
}

}  // namespace

std::string GlyphLabel(const Message& message) {
  std::string label = EscapeForTerminal(message.glyphName);
  if (message.character) label += (label.empty() ? "" : " ") + CodePoint(*message.character);
  const std::string index = std::to_string(message.glyph.value_or(0));
  return label.empty() ? "glyph " + index : label + " (" + index + ")";
}

std::string_view Words(const Message& message) {
  std::string_view words = message.text;
  if (const size_t colon = words.find(": "); HasPrefix(message) && colon < kLongestPrefix)
    words.remove_prefix(colon + 2);
  if (!message.glyph) return words;
  const std::string glyph = "Glyph " + std::to_string(*message.glyph);
  if (!words.starts_with(glyph) || words.size() == glyph.size()) return words;
  const size_t begin = words.find_first_not_of(":, ", glyph.size());
  return begin == glyph.size() || begin == words.npos ? words : words.substr(begin);
}

std::string Ranges(const std::vector<int64_t>& numbers, size_t columns) {
  std::string list;
  for (size_t i = 0; i < numbers.size();) {
    size_t end = i + 1;
    while (end < numbers.size() && numbers[end] == numbers[end - 1] + 1) ++end;
    std::string range = std::to_string(numbers[i]);
    if (end - i > 1) range.append(end - i > 2 ? "-" : ", ").append(std::to_string(numbers[end - 1]));
    const std::string more = " and " + Grouped(numbers.size() - i) + " more";
    const size_t left = numbers.size() - end;
    const std::string after = left == 0 ? "" : " and " + Grouped(left) + " more";
    if (!list.empty() && list.size() + 2 + range.size() + after.size() > columns) return list + more;
    list += (list.empty() ? "" : ", ") + range;
    i = end;
  }
  return list;
}

}  // namespace tool
