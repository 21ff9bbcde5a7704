#pragma once

#include <Tova/Tova.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Platform/Value.h"

/// Values in order. Only one made mutable changes.
struct TovaArray final : Tova::Collection {
  explicit TovaArray(bool canChange) : Collection(kTovaTypeArray), isMutable(canChange) {}

  bool IsEqual(const Object& other, int depth) const override;
  size_t Hash(int depth) const override;
  void Describe(std::string& out, int depth) const override;
  void Destroy() const override { delete this; }
  TovaTypeRef TakeChild() override;

  const bool isMutable;
  std::vector<Tova::Value> values;
};

/// Values by key, in the order in which the keys first came. Only one made mutable changes.
struct TovaDictionary final : Tova::Collection {
  struct Entry {
    Tova::String key;
    Tova::Value value;
  };

  explicit TovaDictionary(bool canChange) : Collection(kTovaTypeDictionary), isMutable(canChange) {}

  bool IsEqual(const Object& other, int depth) const override;
  size_t Hash(int depth) const override;
  void Describe(std::string& out, int depth) const override;
  void Destroy() const override { delete this; }
  TovaTypeRef TakeChild() override;

  /// The place of a key among the entries; their number when it is not there.
  size_t Find(TovaStringRef key) const;
  /// Appends an entry whose key is not there yet.
  void Append(Tova::String key, Tova::Value value);
  void Remove(size_t place);

  const bool isMutable;
  std::vector<Entry> entries;

 private:
  void IndexFrom(size_t first);
  /// Places by the text of their keys, kept only when a linear search would be slow.
  std::unordered_map<std::string_view, size_t> places_;
};
