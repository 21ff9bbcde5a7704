#include <Tova/Tova.hpp>
#include <charconv>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "Platform/Base64.h"
#include "Platform/Collections.h"
#include "Platform/Scalars.h"
#include "Platform/String.h"
#include "Platform/Utf8.h"

namespace Tova {
namespace {

std::string_view Trim(std::string_view text) {
  constexpr std::string_view kSpace = " \t\r\n";
  text.remove_prefix(std::min(text.find_first_not_of(kSpace), text.size()));
  return text.substr(0, text.find_last_not_of(kSpace) + 1);
}

template <class T>
std::optional<T> ParseNumber(std::string_view text) {
  text = Trim(text);
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  T value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

constexpr unsigned int kParseFlags = pugi::parse_default | pugi::parse_ws_pcdata_single;

/// Turns the elements of a property list into values.
class Reader {
 public:
  /// Null when the bytes are no property list; Reason then says why.
  Value Read(std::string_view bytes) {
    // So that a program's handler for a lack of memory is asked here, too.
    [[maybe_unused]] static const bool once =
        (pugi::set_memory_management_functions([](size_t size) { return operator new(size); },
                                               [](void* memory) { operator delete(memory); }),
         true);
    pugi::xml_document document;
    const auto result = document.load_buffer(bytes.data(), bytes.size(), kParseFlags);
    if (!result) {
      return Fail("malformed XML at byte " + std::to_string(result.offset) + ": " + result.description());
    }
    if (!KnowsAllReferences(bytes)) return Fail("unknown entity");
    const pugi::xml_node root = OnlyElement(document);
    if (std::string_view(root.name()) != "plist") return Fail("the document is no <plist>");
    const pugi::xml_node content = OnlyElement(root);
    return content ? ReadValue(content, 0) : Fail("<plist> does not hold exactly one value");
  }

  const std::string& Reason() const { return reason_; }

 private:
  Value Fail(std::string reason) {
    if (reason_.empty()) reason_ = std::move(reason);
    return Value();
  }

  Value FailAt(const pugi::xml_node& node, std::string_view problem) {
    std::string reason = "<";
    reason += node.name();
    reason += "> at byte " + std::to_string(node.offset_debug()) + " ";
    return Fail(reason.append(problem));
  }

  /// Whether the text begins, after an '&', with a reference that XML itself defines.
  static bool IsReference(std::string_view text) {
    const std::string_view name = text.substr(0, text.find(';'));
    if (name.size() == text.size()) return false;
    if (!name.starts_with('#'))
      return name == "amp" || name == "lt" || name == "gt" || name == "quot" || name == "apos";
    const bool hexadecimal = name.starts_with("#x");
    const std::string_view digits = name.substr(hexadecimal ? 2 : 1);
    return !digits.empty() &&
           digits.find_first_not_of(hexadecimal ? "0123456789abcdefABCDEF" : "0123456789") == digits.npos;
  }

  /// Whether every '&' of the document's text begins such a reference; pugixml passes others through.
  static bool KnowsAllReferences(std::string_view bytes) {
    if (bytes.find('&') == bytes.npos) return true;
    struct Walker : pugi::xml_tree_walker {
      bool for_each(pugi::xml_node& node) override {
        const std::string_view text = node.type() == pugi::node_pcdata ? node.value() : "";
        for (size_t at = text.find('&'); at != text.npos; at = text.find('&', at + 1)) {
          if (!IsReference(text.substr(at + 1))) return false;
        }
        return true;
      }
    } walker;
    pugi::xml_document unresolved;
    unresolved.load_buffer(bytes.data(), bytes.size(), kParseFlags & ~pugi::parse_escapes);
    return unresolved.traverse(walker);
  }

  static bool IsBlank(const pugi::xml_node& node) {
    return node.type() == pugi::node_pcdata && Trim(node.value()).empty();
  }

  /// The one element in a node; null when there are more, or other text.
  static pugi::xml_node OnlyElement(const pugi::xml_node& node) {
    pugi::xml_node found;
    for (const pugi::xml_node& child : node) {
      if (IsBlank(child)) continue;
      if (found || child.type() != pugi::node_element) return pugi::xml_node();
      found = child;
    }
    return found;
  }

  /// The text of an element that holds nothing else; none (with the reason kept) for another.
  std::optional<std::string> ReadText(const pugi::xml_node& node) {
    std::string text;
    for (const pugi::xml_node& child : node) {
      if (child.type() == pugi::node_element) {
        FailAt(node, "holds an element");
        return std::nullopt;
      }
      text += child.value();
    }
    if (IsUtf8(text)) return text;
    FailAt(node, "is not valid UTF-8");
    return std::nullopt;
  }

  Value ReadValue(const pugi::xml_node& node, int depth) {
    if (depth >= kMaximumDepth) return Fail("collections lie too deep in one another");
    const std::string_view name = node.name();
    if (name == "dict") return ReadDictionary(node, depth);
    if (name == "array") return ReadArray(node, depth);
    const auto text = ReadText(node);
    if (!text) return Value();
    if (name == "string") return Adopt<TovaTypeRef>(NewString(*text));
    if (name == "integer") {
      const auto number = ParseNumber<int64_t>(*text);
      return number ? Adopt<TovaTypeRef>(new TovaNumber(*number)) : FailAt(node, "is no 64-bit integer");
    }
    if (name == "real") {
      const auto number = ParseNumber<double>(*text);
      return number ? Adopt<TovaTypeRef>(new TovaNumber(*number)) : FailAt(node, "is no number");
    }
    if (name == "true" || name == "false") {
      return Trim(*text).empty() ? Value(Share<TovaTypeRef>(Boolean(name == "true"))) : FailAt(node, "is not empty");
    }
    if (name == "date") {
      const auto time = ParseTime(Trim(*text));
      return time ? Adopt<TovaTypeRef>(new TovaDate(*time)) : FailAt(node, "is no date like 2026-01-31T09:30:00Z");
    }
    if (name == "data") {
      auto bytes = DecodeBase64(*text);
      return bytes ? Adopt<TovaTypeRef>(new TovaData(std::move(*bytes))) : FailAt(node, "is not base 64");
    }
    return FailAt(node, "is no element of a property list");
  }

  Value ReadArray(const pugi::xml_node& node, int depth) {
    auto array = Adopt(new TovaArray(false));
    for (const pugi::xml_node& child : node) {
      if (IsBlank(child)) continue;
      if (child.type() != pugi::node_element) return FailAt(node, "holds text");
      Value value = ReadValue(child, depth + 1);
      if (!value) return value;
      array.get()->values.push_back(std::move(value));
    }
    return array;
  }

  Value ReadDictionary(const pugi::xml_node& node, int depth) {
    auto dictionary = Adopt(new TovaDictionary(false));
    String key;
    for (const pugi::xml_node& child : node) {
      if (IsBlank(child)) continue;
      const bool isKey = std::string_view(child.name()) == "key";
      if (child.type() != pugi::node_element || isKey == static_cast<bool>(key)) {
        return FailAt(node, "is no row of keys and values");
      }
      if (isKey) {
        const auto text = ReadText(child);
        if (!text) return Value();
        key = Adopt(NewString(*text));
        continue;
      }
      Value value = ReadValue(child, depth + 1);
      if (!value) return value;
      if (dictionary.get()->Find(key.get()) < dictionary.get()->entries.size()) return FailAt(node, "repeats a key");
      dictionary.get()->Append(std::exchange(key, String()), std::move(value));
    }
    return key ? FailAt(node, "ends with a key") : dictionary;
  }

  std::string reason_;
};

/// Writes values as elements.
class Writer {
 public:
  /// None when the value holds something that has no form in a property list.
  std::optional<std::string> Write(TovaTypeRef value) {
    out_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n";
    if (!WriteValue(value, 0)) return std::nullopt;
    out_ += "</plist>\n";
    return std::move(out_);
  }

  /// The same without the document around the element, indented.
  std::optional<std::string> WriteElement(TovaTypeRef value, int depth) {
    if (depth < 0 || !WriteValue(value, depth)) return std::nullopt;
    return std::move(out_);
  }

 private:
  /// Whether the bytes at the position are U+FFFE or U+FFFF, which XML cannot carry.
  static bool IsNoncharacter(std::string_view text, size_t at) {
    return text.substr(at, 3) == "\xEF\xBF\xBE" || text.substr(at, 3) == "\xEF\xBF\xBF";
  }

  void Escape(std::string_view text) {
    for (size_t i = 0; i < text.size(); ++i) {
      const char c = text[i];
      if (c == '&') {
        out_ += "&amp;";
      } else if (c == '<') {
        out_ += "&lt;";
      } else if (c == '>') {
        out_ += "&gt;";
      } else if (c == '\r') {
        out_ += "&#13;";  // a bare one would be read as a line feed
      } else if (c >= 0 && c < ' ' && c != '\t' && c != '\n') {
        AppendUtf8(out_, kReplacementCharacter);
      } else if (c == '\xEF' && IsNoncharacter(text, i)) {
        AppendUtf8(out_, kReplacementCharacter);
        i += 2;
      } else {
        out_ += c;
      }
    }
  }

  void WriteElement(std::string_view name, std::string_view text) {
    (out_ += '<').append(name) += '>';
    Escape(text);
    (out_ += "</").append(name) += ">\n";
  }

  void Indent(int depth) { out_.append(static_cast<size_t>(depth), '\t'); }

  bool WriteValue(TovaTypeRef value, int depth) {
    if (depth >= kMaximumDepth) return false;
    Indent(depth);
    switch (TovaGetTypeID(value)) {
      case kTovaTypeString:
        WriteElement("string", static_cast<TovaStringRef>(value)->text);
        return true;
      case kTovaTypeNumber: {
        const auto* number = static_cast<TovaNumberRef>(value);
        WriteElement(number->isReal ? "real" : "integer",
                     number->isReal ? FormatReal(number->real) : std::to_string(number->integer));
        return true;
      }
      case kTovaTypeBoolean:
        out_ += static_cast<TovaBooleanRef>(value)->value ? "<true/>\n" : "<false/>\n";
        return true;
      case kTovaTypeDate:
        WriteElement("date", FormatTime(static_cast<TovaDateRef>(value)->time));
        return true;
      case kTovaTypeData:
        WriteElement("data", EncodeBase64(static_cast<TovaDataRef>(value)->bytes));
        return true;
      case kTovaTypeArray:
        return WriteArray(static_cast<TovaArrayRef>(value), depth);
      case kTovaTypeDictionary:
        return WriteDictionary(static_cast<TovaDictionaryRef>(value), depth);
      default:
        return false;
    }
  }

  bool WriteArray(TovaArrayRef array, int depth) {
    out_ += "<array>\n";
    for (const Value& value : array->values) {
      if (!WriteValue(value.get(), depth + 1)) return false;
    }
    Indent(depth);
    out_ += "</array>\n";
    return true;
  }

  bool WriteDictionary(TovaDictionaryRef dictionary, int depth) {
    out_ += "<dict>\n";
    for (const TovaDictionary::Entry& entry : dictionary->entries) {
      Indent(depth + 1);
      WriteElement("key", entry.key.get()->text);
      if (!WriteValue(entry.value.get(), depth + 1)) return false;
    }
    Indent(depth);
    out_ += "</dict>\n";
    return true;
  }

  std::string out_;
};

Value ReadPropertyList(std::string_view bytes, TovaStringRef* error) {
  Reader reader;
  Value value = reader.Read(bytes);
  if (!value && error) {
    *error = TovaStringCreateWithLossyUTF8(reader.Reason().data(), reader.Reason().size());
  }
  return value;
}

}  // namespace
}  // namespace Tova

TovaTypeRef TovaPropertyListCreateWithData(TovaDataRef data, TovaStringRef* error) {
  if (error) *error = nullptr;
  if (!data) return nullptr;
  return Tova::Guarded([&] { return Tova::ReadPropertyList(data->bytes, error).Detach(); });
}

TovaTypeRef TovaPropertyListCreateWithStream(FILE* stream, TovaStringRef* error) {
  if (error) *error = nullptr;
  if (!stream) return nullptr;
  return Tova::Guarded([&]() -> TovaTypeRef {
    std::string bytes;
    char block[16384];
    while (const size_t got = fread(block, 1, sizeof(block), stream)) bytes.append(block, got);
    if (ferror(stream)) {
      if (error) *error = Tova::NewString("the stream cannot be read");
      return nullptr;
    }
    return Tova::ReadPropertyList(bytes, error).Detach();
  });
}

TovaDataRef TovaPropertyListCreateXMLData(TovaTypeRef value) {
  return Tova::Guarded([&]() -> TovaDataRef {
    auto text = Tova::Writer().Write(value);
    return text ? new TovaData(std::move(*text)) : nullptr;
  });
}

TovaDataRef TovaPropertyListCreateXMLElement(TovaTypeRef value, int depth) {
  return Tova::Guarded([&]() -> TovaDataRef {
    auto text = Tova::Writer().WriteElement(value, depth);
    return text ? new TovaData(std::move(*text)) : nullptr;
  });
}
