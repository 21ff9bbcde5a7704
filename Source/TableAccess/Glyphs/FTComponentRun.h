#pragma once

#include <bitset>
#include <cstdint>
#include <memory>
#include <optional>

#include "Platform/ByteView.h"

/// One component of a compound glyph.
struct FTComponent {
  uint16_t flags = 0;
  uint16_t glyph = 0;
};

/// Walks the components of a compound glyph.
///
/// Bytes after the header of the glyph's record: a run of components, each a flags word u16, a glyph index u16, two
/// arguments (bytes or words) and a transform of no, one, two or four 2.14 values, as the flags say; flag 0x0020
/// announces another. See "Composite Glyph Description" of the OpenType specification's 'glyf'.
///
/// The offset of a component is a 16-bit number: a run that is longer goes on at the record's start, and ends where it
/// meets a component again.
class FTComponentRun {
 public:
  /// iBytes reach from the record's start to the end of the table; iLength is the record's length, which may be more.
  FTComponentRun(Tova::ByteView iBytes, uint64_t iLength);

  /// None after the last.
  std::optional<FTComponent> Next();

  /// The size in bytes of a component with these flags.
  static uint16_t SizeFromFlags(uint16_t iFlags);

 private:
  using Offsets = std::bitset<0x8000>;  // by half the offset, which is always even

  bool IsMet(uint16_t iOffset);

  Tova::ByteView _fBytes;
  uint16_t _fAt;
  bool _fMore;
  std::unique_ptr<Offsets> _fMet;  // made when the run first goes back: until then offsets only grow
};
