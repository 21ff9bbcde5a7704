#include "Formats/HtmlText.h"

#include <algorithm>

#include "Report/EscapedText.h"

namespace tool {
namespace {

/// Whether a character of ASCII stands for itself in JSON and in HTML.
bool IsPlain(char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\' && c != '<' && c != '&'; }

}  // namespace

std::string EscapeHtml(std::string_view text) {
  std::string result;
  for (const char c : EscapeForTerminal(text)) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      case '\'':
        result += "&#39;";
        break;
      default:
        result += c;
    }
  }
  return result;
}

void ScriptJson::Open(char bracket) {
  Separate();
  out_ += bracket;
  needsComma_ = false;
}

void ScriptJson::Close(char bracket) {
  out_ += bracket;
  needsComma_ = true;
}

void ScriptJson::Key(std::string_view name) {
  Separate();
  out_.append("\"").append(name).append("\":");
  needsComma_ = false;
}

void ScriptJson::Text(std::string_view text) {
  Separate();
  needsComma_ = true;
  if (std::ranges::all_of(text, IsPlain)) {
    out_.append("\"").append(text).append("\"");
    return;
  }
  // No "<" may stand there: it could begin the end of the element, or a comment.
  WriteJsonString(EscapeForTerminal(text), [this](std::string_view piece) {
    for (const char c : piece) c == '<' ? out_ += "\\u003c" : out_ += c;
  });
}

void ScriptJson::Number(int64_t number) {
  Separate();
  needsComma_ = true;
  out_ += std::to_string(number);
}

void ScriptJson::Null() {
  Separate();
  needsComma_ = true;
  out_ += "null";
}

void ScriptJson::Separate() {
  if (needsComma_) out_ += ',';
}

}  // namespace tool
