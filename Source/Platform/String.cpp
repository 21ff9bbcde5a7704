#include "Platform/String.h"

#include <cstring>
#include <functional>

#include "Platform/Utf8.h"

bool TovaString::IsEqual(const Object& other, int /*depth*/) const {
  return text == static_cast<const TovaString&>(other).text;
}

size_t TovaString::Hash(int /*depth*/) const { return std::hash<std::string>()(text); }

void TovaString::Describe(std::string& out, int /*depth*/) const { out += text; }

TovaStringRef TovaStringCreateWithUTF8(const char* bytes, size_t length) {
  if (!bytes && length > 0) return nullptr;
  return Tova::Guarded([&]() -> TovaStringRef {
    const std::string_view text(bytes, length);
    return Tova::IsUtf8(text) ? Tova::NewString(std::string(text)) : nullptr;
  });
}

TovaStringRef TovaStringCreateWithCString(const char* text) {
  return text ? TovaStringCreateWithUTF8(text, std::strlen(text)) : nullptr;
}

TovaStringRef TovaStringCreateWithLossyUTF8(const char* bytes, size_t length) {
  if (!bytes && length > 0) return nullptr;
  return Tova::Guarded([&] {
    std::string text;
    Tova::AppendLossy(text, std::string_view(bytes, length));
    return Tova::NewString(std::move(text));
  });
}

const char* TovaStringGetUTF8(TovaStringRef string) { return string ? string->text.c_str() : nullptr; }

size_t TovaStringGetUTF8Length(TovaStringRef string) { return string ? string->text.size() : 0; }
