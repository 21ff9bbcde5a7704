#include <functional>

#include "Platform/Scalars.h"

bool TovaData::IsEqual(const Object& other, int /*depth*/) const {
  return bytes == static_cast<const TovaData&>(other).bytes;
}

size_t TovaData::Hash(int /*depth*/) const { return std::hash<std::string>()(bytes); }

void TovaData::Describe(std::string& out, int /*depth*/) const {
  constexpr size_t kShown = 32;
  constexpr std::string_view kDigits = "0123456789abcdef";
  out += '<';
  for (const char byte : std::string_view(bytes).substr(0, kShown)) {
    out += kDigits[static_cast<unsigned char>(byte) >> 4];
    out += kDigits[static_cast<unsigned char>(byte) & 15U];
  }
  out += bytes.size() > kShown ? "...>" : ">";
}

TovaDataRef TovaDataCreate(const uint8_t* bytes, size_t length) {
  if (!bytes && length > 0) return nullptr;
  return Tova::Guarded([&] { return new TovaData(std::string(bytes, bytes + length)); });
}

const uint8_t* TovaDataGetBytes(TovaDataRef data) {
  return data ? reinterpret_cast<const uint8_t*>(data->bytes.data()) : nullptr;
}

size_t TovaDataGetLength(TovaDataRef data) { return data ? data->bytes.size() : 0; }
