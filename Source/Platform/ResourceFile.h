#pragma once

#include <cstdint>
#include <optional>

#include "Platform/ByteView.h"

namespace Tova {

/// One resource: views of the fork it lies in.
struct Resource {
  uint32_t type;  ///< four characters
  int16_t id;
  ByteView name;  ///< at most 255 bytes, without the length byte; empty where it has none
  ByteView data;
};

/// The resources of one type in a resource file, by index from 0.
class ResourceList {
 public:
  ResourceList() = default;

  /// As many as the map claims.
  uint32_t Count() const { return count_; }
  /// None when the reference or the resource's data does not lie in the file.
  std::optional<Resource> operator[](uint32_t index) const;

 private:
  friend class ResourceFile;
  ByteView data_;
  ByteView map_;
  uint32_t type_ = 0;
  uint32_t count_ = 0;
  uint64_t references_ = 0;  // where they start in the map
};

/// A fork read as a resource file. Owns nothing: the fork's bytes must outlive it and all that it gives out.
///
/// Bytes: a header of data offset, map offset, data length, map length (u32 each). In the map, at 24 the offset of the
/// type list, at 26 that of the name list (u16 each, from the map's start). Type list: count - 1 (u16, 0xFFFF: none),
/// then type u32, count - 1 u16, offset of its references from the list's start u16. A reference: ID s16, offset in the
/// name list u16 (0xFFFF: none), attributes u8, offset in the data u24, reserved u32. In the data each resource is a
/// length u32 and so many bytes; a name is a length u8 and so many characters.
class ResourceFile {
 public:
  /// None when the header or the map does not lie in the fork, the map is shorter than 30 bytes, or its type list does
  /// not lie in it.
  static std::optional<ResourceFile> Open(ByteView fork);

  ResourceList List(uint32_t type) const;

 private:
  ResourceFile(ByteView data, ByteView map) : data_(data), map_(map) {}
  ByteView data_;
  ByteView map_;
};

}  // namespace Tova
