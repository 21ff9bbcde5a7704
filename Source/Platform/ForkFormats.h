#pragma once

#include <cstdint>
#include <optional>

#include "Platform/ByteView.h"

namespace Tova {

/// What a file says of another's forks, or of its own where it holds both in one: views of its bytes.
struct ForkParts {
  std::optional<ByteView> data;
  std::optional<ByteView> resource;
  std::optional<uint32_t> type;  ///< the file's type, four characters
};

/// Reads a sidecar, the file "._NAME" that holds what the file system has no room for beside the data of NAME. Bytes:
/// magic 0x00051607 u32, version 0x00020000 u32, 16 bytes of filler, entry count u16, entries of id, offset from the
/// start and length (u32 each); see RFC 1740. Entry 2 is the resource fork, entry 9 starts with the file's type; an
/// entry that does not lie in the file is none. None for anything else.
std::optional<ForkParts> ReadSidecar(ByteView bytes);

/// Reads a file that holds both forks. Bytes: as a sidecar, with the magic 0x00051600 and the data fork as entry 1; or
/// a header of 128 bytes (0 u8, length 1 to 63 of the name u8, the name; at 65 the type and the creator, u32 each, at
/// 74 0 u8, at 83 and 87 the lengths of the data and the resource fork, u32 each, at 124 the CRC-16/XMODEM of the bytes
/// before it, u16) and the two forks, each from a multiple of 128 bytes on. None for anything else.
std::optional<ForkParts> ReadOneFile(ByteView bytes);

}  // namespace Tova
