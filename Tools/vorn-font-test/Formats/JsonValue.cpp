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

class Writer {
 public:
  explicit Writer(const TextSink& sink) : sink_(sink) {}

  void Write(TovaTypeRef value, int depth) {
    if (depth > kMaximumDepth) throw std::runtime_error("the report is nested too deeply for JSON");
    switch (TovaGetTypeID(value)) {
      case kTovaTypeNone:
        return sink_("null");
      case kTovaTypeString:
        return WriteJsonString(Tova::Text(Tova::AsString(value)), sink_);
      case kTovaTypeNumber:
        return WriteNumber(Tova::AsNumber(value));
      case kTovaTypeBoolean:
        return sink_(TovaBooleanGetValue(Tova::AsBoolean(value)) ? "true" : "false");
      case kTovaTypeDate:
        return WriteCopied(Tova::Adopt(TovaDateCopyISO8601(static_cast<TovaDateRef>(value))));
      case kTovaTypeArray:
        return WriteArray(Tova::AsArray(value), depth);
      case kTovaTypeDictionary:
        return WriteDictionary(Tova::AsDictionary(value), depth);
      default:
        return WriteCopied(Tova::Adopt(TovaCopyDescription(value)));
    }
  }

 private:
  void WriteCopied(const Tova::String& text) { WriteJsonString(Tova::Text(text), sink_); }

  void WriteNumber(TovaNumberRef number) {
    std::array<char, 32> digits;
    const double real = TovaNumberGetReal(number);
    const bool isReal = TovaNumberIsReal(number);
    if (isReal && !std::isfinite(real)) return sink_("null");
    char* const end = digits.data() + digits.size();
    const auto result = isReal ? std::to_chars(digits.data(), end, real)
                               : std::to_chars(digits.data(), end, TovaNumberGetInteger(number));
    const std::string_view text(digits.data(), static_cast<size_t>(result.ptr - digits.data()));
    sink_(text);
    if (isReal && text.find_first_of(".e") == std::string_view::npos) sink_(".0");  // so that it stays a real
  }

  void WriteArray(TovaArrayRef values, int depth) {
    sink_("[");
    for (TovaIndex i = 0; i < TovaArrayGetCount(values); ++i) {
      if (i > 0) sink_(",");
      Write(TovaArrayGetValueAtIndex(values, i), depth + 1);
    }
    sink_("]");
  }

  void WriteDictionary(TovaDictionaryRef entries, int depth) {
    sink_("{");
    for (TovaIndex i = 0; i < TovaDictionaryGetCount(entries); ++i) {
      if (i > 0) sink_(",");
      WriteJsonString(Tova::Text(TovaDictionaryGetKeyAtIndex(entries, i)), sink_);
      sink_(":");
      Write(TovaDictionaryGetValueAtIndex(entries, i), depth + 1);
    }
    sink_("}");
  }

  const TextSink& sink_;
};

}  // namespace

void WriteJson(TovaTypeRef value, const TextSink& sink) { Writer(sink).Write(value, 0); }

std::string ToJson(TovaTypeRef value) {
  std::string text;
  WriteJson(value, [&](std::string_view piece) { text += piece; });
  return text;
}

}  // namespace tool
