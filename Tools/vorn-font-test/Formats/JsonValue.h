#pragma once

#include <Tova/Tova.h>

#include <string>
#include <vector>

#include "Formats/TreeSink.h"
#include "Report/EscapedText.h"

namespace tool {

/// Writes a tree as JSON in one line, keys in the order they come, dates as ISO 8601 UTC strings. Control characters
/// are escaped. Takes no memory to speak of, however large the tree is.
class JsonWriter : public TreeSink {
 public:
  /// The sink must outlive it.
  explicit JsonWriter(const TextSink& sink) : sink_(sink) {}

  void BeginArray() override { Begin("["); }
  void EndArray() override { End("]"); }
  void BeginDictionary() override { Begin("{"); }
  void EndDictionary() override { End("}"); }
  void Key(std::string_view key) override;
  void Text(std::string_view text) override;
  void Number(int64_t number) override;
  void Value(TovaTypeRef value) override;

 private:
  /// To be called before each value, for the comma.
  void Separate();
  void Begin(std::string_view bracket);
  void End(std::string_view bracket);
  void Real(double number);
  void Array(TovaArrayRef values);
  void Dictionary(TovaDictionaryRef entries);

  const TextSink& sink_;
  int depth_ = 0;
  bool isFirst_ = true;   ///< in the array or dictionary
  bool isKeyed_ = false;  ///< a key stands before the value
};

/// Writes a value in the same way.
void WriteJson(TovaTypeRef value, const TextSink& sink);

/// A small value as such a line.
std::string ToJson(TovaTypeRef value);

}  // namespace tool
