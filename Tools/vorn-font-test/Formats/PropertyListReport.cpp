#include "Formats/PropertyListReport.h"

#include <Tova/Tova.hpp>
#include <stdexcept>
#include <utility>
#include <vector>

namespace tool {
namespace {

/// The text of a list that the library made, null when it could not.
void Write(const Tova::Data& data, const TextSink& sink) {
  if (!data) throw std::runtime_error("the report has no form as a property list");
  // The bytes of UTF-8 text; char may look at any object.
  sink({reinterpret_cast<const char*>(TovaDataGetBytes(data.get())), TovaDataGetLength(data.get())});
}

/// Makes the values of a tree.
class TreeBuilder : public TreeSink {
 public:
  /// The whole tree, after its last piece.
  Tova::Value Take() { return std::move(root_); }

  void BeginArray() override { open_.push_back({.array = Tova::Adopt(TovaArrayCreateMutable())}); }
  void EndArray() override { Close(); }
  void BeginDictionary() override { open_.push_back({.dictionary = Tova::Adopt(TovaDictionaryCreateMutable())}); }
  void EndDictionary() override { Close(); }
  void Key(std::string_view key) override { open_.back().key = StringOf(key); }
  void Text(std::string_view text) override { Value(StringOf(text).get()); }
  void Number(int64_t number) override { Value(Tova::Adopt(TovaNumberCreateWithInteger(number)).get()); }
  void Value(TovaTypeRef value) override {
    if (open_.empty()) {
      root_ = Tova::Share(value);
    } else if (open_.back().array) {
      TovaArrayAppendValue(open_.back().array.get(), value);
    } else {
      TovaDictionarySetValue(open_.back().dictionary.get(), open_.back().key.get(), value);
    }
  }

 private:
  struct Container {
    Tova::MutableArray array = {};  ///< or
    Tova::MutableDictionary dictionary = {};
    Tova::String key = {};  ///< of the dictionary's next value
  };

  static Tova::String StringOf(std::string_view text) {
    return Tova::Adopt(TovaStringCreateWithLossyUTF8(text.data(), text.size()));
  }

  void Close() {
    const Container closed = std::move(open_.back());
    open_.pop_back();
    if (closed.array) {
      Value(closed.array.get());
    } else {
      Value(closed.dictionary.get());
    }
  }

  std::vector<Container> open_;  ///< the outermost first
  Tova::Value root_;
};

/// How deep the dictionary of a file lies in the list: in the root's array.
constexpr int kFileDepth = 2;

}  // namespace

std::string PropertyListReport::Head(const Totals&) const {
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0">
<dict>
	<key>files</key>
	<array>
)";
}

void PropertyListReport::WriteFile(const FileReport& report, const TextSink& sink) const {
  TreeBuilder tree;
  WriteFileEntry(report, choices_, tree);
  Write(Tova::Adopt(TovaPropertyListCreateXMLElement(tree.Take().get(), kFileDepth)), sink);
}

std::string PropertyListReport::End(const Totals&) const { return "\t</array>\n</dict>\n</plist>\n"; }

void WritePropertyList(TovaTypeRef value, const TextSink& sink) {
  Write(Tova::Adopt(TovaPropertyListCreateXMLData(value)), sink);
}

}  // namespace tool
