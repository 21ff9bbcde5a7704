#include "Platform/ResourceFile.h"

namespace Tova {
namespace {

constexpr uint64_t kHeaderSize = 16;
constexpr uint64_t kMinimumMapLength = 30;
constexpr uint64_t kTypeListAt = 24;
constexpr uint64_t kNameListAt = 26;
constexpr uint64_t kTypeSize = 8;
constexpr uint64_t kReferenceSize = 12;
constexpr uint16_t kNoName = 0xFFFF;

}  // namespace

std::optional<ResourceFile> ResourceFile::Open(ByteView fork) {
  const uint64_t mapOffset = fork.U32(4);
  const uint64_t mapLength = fork.U32(12);
  if (!fork.Holds(0, kHeaderSize) || mapLength < kMinimumMapLength || !fork.Holds(mapOffset, mapLength)) {
    return std::nullopt;
  }
  const ByteView map = fork.Slice(mapOffset, mapLength);
  if (!map.Holds(map.U16(kTypeListAt), sizeof(uint16_t))) return std::nullopt;
  return ResourceFile(fork.Slice(fork.U32(0), fork.U32(8)), map);
}

ResourceList ResourceFile::List(uint32_t type) const {
  ResourceList list;
  const uint64_t types = map_.U16(kTypeListAt);
  for (const ByteView entry : RecordArray(map_, types + 2, Wrap16(uint64_t{map_.U16(types)} + 1), kTypeSize)) {
    if (entry.U32(0) != type || !entry.Holds(0, kTypeSize)) continue;
    list.data_ = data_;
    list.map_ = map_;
    list.type_ = type;
    list.count_ = uint32_t{entry.U16(4)} + 1;
    list.references_ = types + entry.U16(6);
    break;
  }
  return list;
}

std::optional<Resource> ResourceList::operator[](uint32_t index) const {
  const uint64_t at = references_ + kReferenceSize * index;
  if (index >= count_ || !map_.Holds(at, kReferenceSize)) return std::nullopt;
  const uint64_t data = map_.U24(at + 5);
  if (!data_.Holds(data, 4) || !data_.Holds(data + 4, data_.U32(data))) return std::nullopt;
  Resource resource = {.type = type_, .id = map_.S16(at), .name = {}, .data = data_.Slice(data + 4, data_.U32(data))};
  if (const uint16_t name = map_.U16(at + 2); name != kNoName) {
    const uint64_t nameAt = uint64_t{map_.U16(kNameListAt)} + name;
    resource.name = map_.Slice(nameAt + 1, map_.U8(nameAt));
  }
  return resource;
}

}  // namespace Tova
