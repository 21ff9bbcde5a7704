#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "Platform/Value.h"

/// Immutable text, always valid UTF-8.
struct TovaString final : Tova::Object {
  explicit TovaString(std::string contents) : Object(kTovaTypeString), text(std::move(contents)) {}

  bool IsEqual(const Object& other, int depth) const override;
  size_t Hash(int depth) const override;
  void Describe(std::string& out, int depth) const override;
  void Destroy() const override { delete this; }

  const std::string text;
};

namespace Tova {

/// A new string, owned by the caller, of text known to be valid UTF-8.
inline TovaStringRef NewString(std::string text) { return new TovaString(std::move(text)); }

}  // namespace Tova
