#pragma once

#include <concepts>
#include <string>
#include <string_view>

#include "Report/EscapedText.h"

namespace tool {

/// Writes JSON piece by piece, in one line: the caller opens and closes what it names, the commas come by themselves.
/// Keys are ASCII without anything to be escaped. What was written reaches the sink at the end at the latest.
class JsonStream {
 public:
  explicit JsonStream(const TextSink& sink) : sink_(sink) {}
  JsonStream(const JsonStream&) = delete;
  JsonStream& operator=(const JsonStream&) = delete;

  JsonStream& Open(char bracket);
  JsonStream& Close(char bracket);
  JsonStream& Key(std::string_view key);
  JsonStream& Text(std::string_view text);
  template <std::integral I>
  JsonStream& Number(I number) {
    return Plain(std::to_string(number));
  }
  JsonStream& Bool(bool value) { return Plain(value ? "true" : "false"); }
  JsonStream& Field(std::string_view key, std::string_view text) { return Key(key).Text(text); }
  /// {"text": ...}, the form of every text that is for people.
  JsonStream& Message(std::string_view key, std::string_view text) {
    return Key(key).Open('{').Field("text", text).Close('}');
  }
  /// A line break before the next value.
  JsonStream& Line();
  /// Hands on what is left.
  void Finish();

 private:
  JsonStream& Plain(std::string_view value);
  void BeginValue();

  const TextSink& sink_;
  std::string text_;
  const TextSink append_ = [this](std::string_view piece) { text_ += piece; };
  bool comma_ = false;  ///< before the next value
};

}  // namespace tool
