#include "Platform/MessageFrame.h"

#include <Tova/Tova.h>

namespace Tova {
namespace {

uint32_t ReadU32(std::string_view bytes) {
  uint32_t value = 0;
  for (const char byte : bytes.substr(0, 4)) value = value << 8 | static_cast<uint8_t>(byte);
  return value;
}

void AppendU32(std::string& bytes, uint32_t value) {
  for (const int shift : {24, 16, 8, 0}) bytes += static_cast<char>(value >> shift);
}

}  // namespace

MessageHeader MessageHeader::Read(std::string_view bytes) {
  return {.id = static_cast<int32_t>(ReadU32(bytes)), .length = ReadU32(bytes.substr(4))};
}

bool MessageHeader::IsAcceptable() const { return length <= kTovaMessagePortMaximumLength; }

std::string MakeMessageFrame(int32_t id, std::string_view data) {
  std::string frame;
  frame.reserve(MessageHeader::kLength + data.size());
  AppendU32(frame, static_cast<uint32_t>(id));
  AppendU32(frame, static_cast<uint32_t>(data.size()));
  return frame.append(data);
}

}  // namespace Tova
