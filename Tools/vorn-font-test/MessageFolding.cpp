#include "MessageFolding.h"

#include <algorithm>
#include <functional>

namespace tool {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsCapitalHex(char c) { return IsDigit(c) || (c >= 'A' && c <= 'F'); }
bool IsHex(char c) { return IsCapitalHex(c) || (c >= 'a' && c <= 'f'); }

/// Whether a word of letters and digits is a number: decimal, hexadecimal with a prefix, or 4 or more capital
/// hexadecimal digits. Of the last, only 8 may lack a decimal digit, so that most words in capitals stay.
bool IsNumber(std::string_view word) {
  if (std::ranges::all_of(word, IsDigit)) return true;
  if (word.starts_with("0x") || word.starts_with("0X")) return std::ranges::all_of(word.substr(2), IsHex);
  return word.size() >= 4 && std::ranges::all_of(word, IsCapitalHex) &&
         (word.size() == 8 || std::ranges::any_of(word, IsDigit));
}

/// A word that is no number, with its runs of digits replaced.
void AppendWord(std::string& text, std::string_view word) {
  for (size_t i = 0; i < word.size(); ++i) {
    if (!IsDigit(word[i])) {
      text += word[i];
    } else if (i == 0 || !IsDigit(word[i - 1])) {
      text += '#';
    }
  }
}

}  // namespace

std::string WithoutNumbers(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    size_t end = at;
    while (end < text.size() && (IsLetter(text[end]) || IsDigit(text[end]))) ++end;
    if (end == at) {
      result += text[at++];
      continue;
    }
    const std::string_view word = text.substr(at, end - at);
    at = end;
    const bool afterSign = result.ends_with('-') && (result.size() == 1 || !IsLetter(result[result.size() - 2]));
    if (!IsNumber(word)) {
      AppendWord(result, word);
    } else {
      if (afterSign) result.pop_back();
      result += '#';
    }
  }
  return result;
}

void MessageFolding::Count(std::string_view text) {
  const size_t kind = KindOf(text);
  const auto known = groups_.find(kind);
  if (known != groups_.end()) {
    ++known->second.count;
  } else if (groups_.size() < kMostKinds) {
    groups_[kind].count = 1;
  }
}

MessageFolding::Decision MessageFolding::Decide(std::string_view text) {
  const auto known = groups_.find(KindOf(text));
  if (known == groups_.end()) return {.show = true};
  Group& group = known->second;
  if (group.count <= kMessagesBeforeFolding + 1) return {.show = true};
  ++group.seen;
  const bool last = group.seen == kMessagesBeforeFolding;
  return {.show = group.seen <= kMessagesBeforeFolding, .leftOut = last ? group.count - kMessagesBeforeFolding : 0};
}

size_t MessageFolding::KindOf(std::string_view text) { return std::hash<std::string>()(WithoutNumbers(text)); }

}  // namespace tool
