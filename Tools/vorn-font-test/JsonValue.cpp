#include "JsonValue.h"

#include <Tova/Tova.hpp>
#include <nlohmann/json.hpp>

#include "EscapedText.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

std::string Copied(const Tova::String& text) { return std::string(Tova::Text(text)); }

Json ToTree(TovaTypeRef value) {
  switch (TovaGetTypeID(value)) {
    case kTovaTypeNone:
      return nullptr;
    case kTovaTypeString:
      return std::string(Tova::Text(Tova::AsString(value)));
    case kTovaTypeNumber: {
      TovaNumberRef number = Tova::AsNumber(value);
      return TovaNumberIsReal(number) ? Json(TovaNumberGetReal(number)) : Json(TovaNumberGetInteger(number));
    }
    case kTovaTypeBoolean:
      return TovaBooleanGetValue(Tova::AsBoolean(value));
    case kTovaTypeDate:
      return Copied(Tova::Adopt(TovaDateCopyISO8601(static_cast<TovaDateRef>(value))));
    case kTovaTypeArray: {
      Json array = Json::array();
      TovaArrayRef values = Tova::AsArray(value);
      for (TovaIndex i = 0; i < TovaArrayGetCount(values); ++i) {
        array.push_back(ToTree(TovaArrayGetValueAtIndex(values, i)));
      }
      return array;
    }
    case kTovaTypeDictionary: {
      Json object = Json::object();
      TovaDictionaryRef entries = Tova::AsDictionary(value);
      for (TovaIndex i = 0; i < TovaDictionaryGetCount(entries); ++i) {
        object[std::string(Tova::Text(TovaDictionaryGetKeyAtIndex(entries, i)))] =
            ToTree(TovaDictionaryGetValueAtIndex(entries, i));
      }
      return object;
    }
    default:
      return Copied(Tova::Adopt(TovaCopyDescription(value)));
  }
}

}  // namespace

std::string ToJson(TovaTypeRef value) { return EscapeForJson(ToTree(value).dump()); }

}  // namespace tool
