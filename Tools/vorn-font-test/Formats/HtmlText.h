#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tool {

/// Text as it may stand in an HTML element or a quoted attribute, of any bytes. What would hide or reorder the line is
/// escaped as for a terminal.
std::string EscapeHtml(std::string_view text);

/// Writes JSON that may stand in a <script> element, value by value; commas come by themselves. Texts may hold any
/// bytes; what would hide or reorder the line is escaped as for a terminal, and so shown by who reads them.
class ScriptJson {
 public:
  explicit ScriptJson(std::string& out) : out_(out) {}

  void Open(char bracket);
  void Close(char bracket);
  /// What follows is the value of this name.
  void Key(std::string_view name);
  void Text(std::string_view text);
  void Number(int64_t number);
  void Null();

  void TextEntry(std::string_view name, std::string_view text) { Key(name), Text(text); }
  void NumberEntry(std::string_view name, int64_t number) { Key(name), Number(number); }

 private:
  void Separate();

  std::string& out_;
  bool needsComma_ = false;
};

}  // namespace tool
