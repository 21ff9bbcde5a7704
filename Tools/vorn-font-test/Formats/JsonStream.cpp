#include "Formats/JsonStream.h"

namespace tool {
namespace {

constexpr size_t kBufferSize = size_t{16} * 1024;

}  // namespace

void JsonStream::BeginValue() {
  if (comma_) text_ += ',';
  comma_ = true;
}

JsonStream& JsonStream::Open(char bracket) {
  BeginValue();
  text_ += bracket;
  comma_ = false;
  return *this;
}

JsonStream& JsonStream::Close(char bracket) {
  text_ += bracket;
  comma_ = true;
  if (text_.size() >= kBufferSize) Finish();
  return *this;
}

JsonStream& JsonStream::Key(std::string_view key) {
  BeginValue();
  text_.append("\"").append(key).append("\":");
  comma_ = false;
  return *this;
}

JsonStream& JsonStream::Text(std::string_view text) {
  BeginValue();
  WriteJsonString(text, append_);
  return *this;
}

JsonStream& JsonStream::Line() {
  if (comma_) text_ += ',';
  text_ += '\n';
  comma_ = false;
  return *this;
}

JsonStream& JsonStream::Plain(std::string_view value) {
  BeginValue();
  text_ += value;
  return *this;
}

void JsonStream::Finish() {
  sink_(text_);
  text_.clear();
}

}  // namespace tool
