// C++ companion of Tova.h: owning references and typed format arguments. Header-only.
#pragma once

#include <Tova/Tova.h>

#include <concepts>
#include <initializer_list>
#include <string_view>
#include <type_traits>
#include <utility>

namespace Tova {

/// Owns one reference to a Tova value, or none. T is a reference type of Tova.h, such as TovaStringRef.
/// Made with Adopt (takes over a reference that a Create or Copy function returned) or Share (adds one).
template <class T>
class Ref {
 public:
  Ref() = default;
  Ref(const Ref& other) : value_(other.value_) { TovaRetain(value_); }
  Ref(Ref&& other) noexcept : value_(std::exchange(other.value_, nullptr)) {}
  /// From a reference to a narrower type: a mutable array to an array, anything to TovaTypeRef.
  template <class U, class = std::enable_if_t<std::is_convertible_v<U, T>>>
  Ref(const Ref<U>& other) : value_(other.get()) {  // NOLINT(google-explicit-constructor)
    TovaRetain(value_);
  }
  Ref& operator=(Ref other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Ref() { TovaRelease(value_); }

  /// The borrowed reference, to hand to the C functions.
  T get() const { return value_; }
  explicit operator bool() const { return value_ != nullptr; }
  /// Gives the reference to the caller, who releases it.
  [[nodiscard]] T Detach() { return std::exchange(value_, nullptr); }

  static Ref Adopting(T value) {
    Ref result;
    result.value_ = value;
    return result;
  }

 private:
  T value_ = nullptr;
};

/// Takes over a reference that the caller owns.
template <class T>
Ref<T> Adopt(T value) {
  return Ref<T>::Adopting(value);
}

/// Adds a reference of its own to a borrowed one.
template <class T>
Ref<T> Share(T value) {
  TovaRetain(value);
  return Ref<T>::Adopting(value);
}

using Value = Ref<TovaTypeRef>;
using String = Ref<TovaStringRef>;
using Number = Ref<TovaNumberRef>;
using Date = Ref<TovaDateRef>;
using Data = Ref<TovaDataRef>;
using Array = Ref<TovaArrayRef>;
using MutableArray = Ref<TovaMutableArrayRef>;
using Dictionary = Ref<TovaDictionaryRef>;
using MutableDictionary = Ref<TovaMutableDictionaryRef>;
using Url = Ref<TovaURLRef>;
using MessagePort = Ref<TovaMessagePortRef>;
using LocalMessagePort = Ref<TovaLocalMessagePortRef>;

/// A string of UTF-8 text; none when the text is not valid UTF-8.
inline String MakeString(std::string_view text) { return Adopt(TovaStringCreateWithUTF8(text.data(), text.size())); }

/// The text of a string, valid as long as the string is; empty for null.
inline std::string_view Text(TovaStringRef string) {
  return string ? std::string_view(TovaStringGetUTF8(string), TovaStringGetUTF8Length(string)) : std::string_view();
}
inline std::string_view Text(const String& string) { return Text(string.get()); }

inline TovaBooleanRef Boolean(bool value) { return value ? kTovaBooleanTrue : kTovaBooleanFalse; }

/// The value as the type wanted, or null when it is of another type (or null).
inline TovaStringRef AsString(TovaTypeRef value) {
  return TovaGetTypeID(value) == kTovaTypeString ? static_cast<TovaStringRef>(value) : nullptr;
}
inline TovaArrayRef AsArray(TovaTypeRef value) {
  return TovaGetTypeID(value) == kTovaTypeArray ? static_cast<TovaArrayRef>(value) : nullptr;
}
inline TovaDictionaryRef AsDictionary(TovaTypeRef value) {
  return TovaGetTypeID(value) == kTovaTypeDictionary ? static_cast<TovaDictionaryRef>(value) : nullptr;
}
inline TovaBooleanRef AsBoolean(TovaTypeRef value) {
  return TovaGetTypeID(value) == kTovaTypeBoolean ? static_cast<TovaBooleanRef>(value) : nullptr;
}
inline TovaNumberRef AsNumber(TovaTypeRef value) {
  return TovaGetTypeID(value) == kTovaTypeNumber ? static_cast<TovaNumberRef>(value) : nullptr;
}

/// An immutable array of the values.
inline Array MakeArray(std::initializer_list<TovaTypeRef> values) {
  const auto array = Adopt(TovaArrayCreateMutable());
  for (const TovaTypeRef value : values) TovaArrayAppendValue(array.get(), value);
  return Adopt(TovaArrayCreateCopy(array.get()));
}

/// One argument of a format: an integer, a real, a Tova value or a text, borrowed for the length of the call.
class FormatArgument : public TovaFormatArgument {
 public:
  template <std::integral I>
  FormatArgument(I integer) {  // NOLINT(google-explicit-constructor)
    kind = kTovaFormatArgumentInteger;
    content.integer = static_cast<int64_t>(integer);
  }
  FormatArgument(double real) {  // NOLINT(google-explicit-constructor)
    kind = kTovaFormatArgumentReal;
    content.real = real;
  }
  FormatArgument(const char* text) {  // NOLINT(google-explicit-constructor)
    kind = kTovaFormatArgumentText;
    content.text = text;
  }
  FormatArgument(TovaTypeRef value) {  // NOLINT(google-explicit-constructor)
    kind = kTovaFormatArgumentValue;
    content.value = value;
  }
  template <class T>
  FormatArgument(const Ref<T>& value)  // NOLINT(google-explicit-constructor)
      : FormatArgument(static_cast<TovaTypeRef>(value.get())) {}
};
static_assert(sizeof(FormatArgument) == sizeof(TovaFormatArgument), "passed to C as an array");

/// Formats as TovaStringCreateWithFormat does; none when the format and the arguments do not fit.
inline String Format(TovaStringRef format, std::initializer_list<FormatArgument> arguments) {
  return Adopt(TovaStringCreateWithFormat(format, arguments.begin(), arguments.size()));
}
inline String Format(std::string_view format, std::initializer_list<FormatArgument> arguments) {
  return Format(MakeString(format).get(), arguments);
}

}  // namespace Tova
