#include "Formats/JsonValue.h"

#include <Tova/Tova.hpp>
#include <array>
#include <charconv>
#include <cmath>
#include <stdexcept>

namespace tool {
namespace {

/// How deep arrays and dictionaries may lie in one another, so that no nest overflows the stack.
constexpr int kMaximumDepth = 512;

}  // namespace

void JsonWriter::Separate() {
  if (!isFirst_ && !isKeyed_) sink_(",");
  isFirst_ = false;
  isKeyed_ = false;
}

void JsonWriter::Begin(std::string_view bracket) {
  if (++depth_ > kMaximumDepth) throw std::runtime_error("the report is nested too deeply for JSON");
  Separate();
  sink_(bracket);
  isFirst_ = true;
}

void JsonWriter::End(std::string_view bracket) {
  --depth_;
  sink_(bracket);
  isFirst_ = false;
}

void JsonWriter::Key(std::string_view key) {
  Text(key);
  sink_(":");
  isKeyed_ = true;
}

void JsonWriter::Text(std::string_view text) {
  Separate();
  WriteJsonString(text, sink_);
}

void JsonWriter::Number(int64_t number) {
  Separate();
  std::array<char, 32> digits;
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  sink_({digits.data(), static_cast<size_t>(result.ptr - digits.data())});
}

void JsonWriter::Real(double number) {
  Separate();
  if (!std::isfinite(number)) return sink_("null");
  std::array<char, 32> digits;
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  const std::string_view text(digits.data(), static_cast<size_t>(result.ptr - digits.data()));
  sink_(text);
  if (text.find_first_of(".e") == std::string_view::npos) sink_(".0");  // so that it stays a real
}

void JsonWriter::Value(TovaTypeRef value) {
  switch (TovaGetTypeID(value)) {
    case kTovaTypeNone:
      Separate();
      return sink_("null");
    case kTovaTypeString:
      return Text(Tova::Text(Tova::AsString(value)));
    case kTovaTypeNumber: {
      TovaNumberRef number = Tova::AsNumber(value);
      return TovaNumberIsReal(number) ? Real(TovaNumberGetReal(number)) : Number(TovaNumberGetInteger(number));
    }
    case kTovaTypeBoolean:
      Separate();
      return sink_(TovaBooleanGetValue(Tova::AsBoolean(value)) ? "true" : "false");
    case kTovaTypeDate:
      return Text(Tova::Text(Tova::Adopt(TovaDateCopyISO8601(static_cast<TovaDateRef>(value)))));
    case kTovaTypeArray:
      return Array(Tova::AsArray(value));
    case kTovaTypeDictionary:
      return Dictionary(Tova::AsDictionary(value));
    default:
      return Text(Tova::Text(Tova::Adopt(TovaCopyDescription(value))));
  }
}

void JsonWriter::Array(TovaArrayRef values) {
  BeginArray();
  for (TovaIndex i = 0; i < TovaArrayGetCount(values); ++i) Value(TovaArrayGetValueAtIndex(values, i));
  EndArray();
}

void JsonWriter::Dictionary(TovaDictionaryRef entries) {
  BeginDictionary();
  for (TovaIndex i = 0; i < TovaDictionaryGetCount(entries); ++i) {
    Key(Tova::Text(TovaDictionaryGetKeyAtIndex(entries, i)));
    Value(TovaDictionaryGetValueAtIndex(entries, i));
  }
  EndDictionary();
}

void WriteJson(TovaTypeRef value, const TextSink& sink) { JsonWriter(sink).Value(value); }

std::string ToJson(TovaTypeRef value) {
  std::string text;
  const TextSink sink = [&](std::string_view piece) { text += piece; };
  WriteJson(value, sink);
  return text;
}

}  // namespace tool
