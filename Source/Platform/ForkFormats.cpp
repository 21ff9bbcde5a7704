#include "Platform/ForkFormats.h"

namespace Tova {
namespace {

constexpr uint32_t kSidecarMagic = 0x00051607;
constexpr uint32_t kOneFileMagic = 0x00051600;
constexpr uint32_t kVersion = 0x00020000;
constexpr uint64_t kEntryCountAt = 24;
constexpr uint64_t kEntriesAt = 26;
constexpr uint64_t kEntrySize = 12;
enum EntryId : uint32_t { kDataFork = 1, kResourceFork = 2, kFinderInfo = 9 };

constexpr uint64_t kHeaderSize = 128;
constexpr uint8_t kMaximumNameLength = 63;

/// The whole range, none when a part of it does not exist.
std::optional<ByteView> WholeSlice(ByteView bytes, uint64_t at, uint64_t length) {
  if (!bytes.Holds(at, length)) return std::nullopt;
  return bytes.Slice(at, length);
}

std::optional<ForkParts> ReadEntryTable(ByteView bytes, uint32_t magic) {
  if (bytes.U32(0) != magic || bytes.U32(4) != kVersion) return std::nullopt;
  ForkParts parts;
  for (const ByteView entry : RecordArray(bytes, kEntriesAt, bytes.U16(kEntryCountAt), kEntrySize)) {
    const auto content = WholeSlice(bytes, entry.U32(4), entry.U32(8));
    if (!content) continue;
    const uint32_t id = entry.U32(0);
    if (id == kDataFork && !parts.data) parts.data = content;
    if (id == kResourceFork && !parts.resource) parts.resource = content;
    if (id == kFinderInfo && !parts.type && content->Holds(0, 4)) parts.type = content->U32(0);
  }
  return parts;
}

/// CRC-16/XMODEM: polynomial 0x1021, from 0, most significant bit first.
uint16_t Crc(ByteView bytes) {
  uint32_t crc = 0;
  for (uint64_t at = 0; at < bytes.Size(); ++at) {
    crc ^= uint32_t{bytes.U8(at)} << 8;
    for (int bit = 0; bit < 8; ++bit) crc = crc << 1 ^ (crc & 0x8000 ? 0x1021 : 0);
  }
  return Wrap16(crc);
}

uint64_t RoundedUp(uint64_t length) { return (length + kHeaderSize - 1) / kHeaderSize * kHeaderSize; }

std::optional<ForkParts> ReadHeaderForm(ByteView bytes) {
  const uint8_t nameLength = bytes.U8(1);
  const bool plausible = bytes.Holds(0, kHeaderSize) && bytes.U8(0) == 0 && nameLength > 0 &&
                         nameLength <= kMaximumNameLength && bytes.U8(74) == 0;
  if (!plausible || Crc(bytes.Slice(0, 124)) != bytes.U16(124)) return std::nullopt;
  const uint64_t dataLength = bytes.U32(83);
  ForkParts parts;
  parts.data = WholeSlice(bytes, kHeaderSize, dataLength);
  parts.resource = WholeSlice(bytes, kHeaderSize + RoundedUp(dataLength), bytes.U32(87));
  parts.type = bytes.U32(65);
  if (!parts.data) return std::nullopt;
  return parts;
}

}  // namespace

std::optional<ForkParts> ReadSidecar(ByteView bytes) {
  auto parts = ReadEntryTable(bytes, kSidecarMagic);
  if (parts) parts->data.reset();  // which is the file beside it
  return parts;
}

std::optional<ForkParts> ReadOneFile(ByteView bytes) {
  if (auto parts = ReadEntryTable(bytes, kOneFileMagic)) {
    if (!parts->data) parts->data = bytes.Slice(0, 0);
    return parts;
  }
  return ReadHeaderForm(bytes);
}

}  // namespace Tova
