#pragma once

#include <Tova/Tova.h>

#include <string_view>

namespace tool {

/// Takes a tree of arrays and dictionaries piece by piece, in order: a dictionary's entries are each a key and what
/// stands under it.
class TreeSink {
 public:
  virtual ~TreeSink() = default;

  virtual void BeginArray() = 0;
  virtual void EndArray() = 0;
  virtual void BeginDictionary() = 0;
  virtual void EndDictionary() = 0;
  virtual void Key(std::string_view key) = 0;
  virtual void Text(std::string_view text) = 0;
  virtual void Number(int64_t number) = 0;
  /// A whole value, with all that is in it; null too.
  virtual void Value(TovaTypeRef value) = 0;
};

}  // namespace tool
