#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/ByteView.h"

/// The strings and names of the styles of a family, read from its style mapping table (see FTFont_FOND). A view of the
/// resource. Positions count from the resource's start, as there.
class FTStyleNames {
 public:
  /// Styles are numbered by their bits (bold 1, italic 2, ...), up to here.
  static constexpr int kStyleCount = 48;

  /// iResource: all bytes of the family; iTable: where the style mapping table starts in them.
  FTStyleNames(Tova::ByteView iResource, int64_t iTable) : _fResource(iResource), _fTable(iTable) {}

  /// The PostScript names of all styles, each once, in the order of the styles. Throws "The 'FOND' resource has a
  /// corrupt PostScript name" for one of more than 255 characters, and "The 'FOND' resource has bad data in its style
  /// name table" when a string leads out of the resource.
  std::vector<Tova::String> MakePostScriptNames() const;

  /// The index of a style, or what stands where it would.
  int8_t GetIndex(int iStyle) const;
  /// Where a string stands; its number counts from 1, and 0 is the first as well. None when the strings before it reach
  /// the end of the resource.
  std::optional<int64_t> FindString(int iNumber) const;
  /// The characters of a string.
  std::string ReadString(int64_t iString) const;

 private:
  void AppendString(std::string& ioName, int iNumber) const;
  std::string MakeName(int iIndex) const;
  int64_t FindStringOrThrow(int iNumber) const;
  uint8_t U8At(int64_t iAt) const { return _fResource.U8(static_cast<uint64_t>(iAt)); }

  Tova::ByteView _fResource;
  int64_t _fTable;
  mutable std::vector<int64_t> _fStrings;  // where those found so far stand
};
