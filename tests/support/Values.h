#pragma once

#include <Tova/Tova.hpp>
#include <string>
#include <utility>
#include <vector>

namespace test {

/// An array of values that are borrowed for the length of the call.
inline Tova::MutableArray Array(const std::vector<TovaTypeRef>& values) {
  auto array = Tova::Adopt(TovaArrayCreateMutable());
  for (const TovaTypeRef value : values) TovaArrayAppendValue(array.get(), value);
  return array;
}

/// A dictionary of values that are borrowed for the length of the call.
inline Tova::MutableDictionary Dictionary(const std::vector<std::pair<TovaStringRef, TovaTypeRef>>& entries) {
  auto dictionary = Tova::Adopt(TovaDictionaryCreateMutable());
  for (const auto& [key, value] : entries) TovaDictionarySetValue(dictionary.get(), key, value);
  return dictionary;
}

inline Tova::Url FileUrl(const std::string& path) { return Tova::Adopt(TovaURLCreateWithFilePath(path.c_str())); }

/// What TovaCopyDescription says of the value.
inline std::string Description(TovaTypeRef value) {
  return std::string(Tova::Text(Tova::Adopt(TovaCopyDescription(value))));
}

}  // namespace test
