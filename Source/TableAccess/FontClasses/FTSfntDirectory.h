#pragma once

#include <cstdint>

#include "Platform/ByteView.h"

/// One entry of a table directory. The offset counts from the start of the file.
struct FTSfntDirectoryEntry {
  uint32_t tag;
  uint32_t checksum;
  uint32_t offset;
  uint32_t length;
};

/// The table directory of an sfnt font, read straight from the bytes: 12 bytes (scaler type u32, numTables u16 and
/// three u16 for searching), then numTables entries of 16 bytes. See "The OpenType Font File" in the OpenType
/// specification. Entries past the end of the data read as zeros.
class FTSfntDirectory {
 public:
  /// iFile: all bytes of the file; iOffset: where the directory starts in them.
  FTSfntDirectory(Tova::ByteView iFile, uint64_t iOffset) : _fFile(iFile), _fDirectory(iFile.From(iOffset)) {}

  uint32_t GetScaler() const { return _fDirectory.U32(0); }
  uint16_t CountEntries() const { return _fDirectory.U16(4); }
  /// The bytes it takes by its own count.
  uint64_t GetSize() const;
  FTSfntDirectoryEntry GetEntry(uint64_t iIndex) const;

  /// What is wrong with the directory, as the detail text of an exception; null when it can be used. Checked entry by
  /// entry in directory order: the range lies in the file; it does not partly overlap a later entry's, nor contain it
  /// (lying wholly inside a later entry's is allowed). Then all ranges that are not inside another, and the directory,
  /// must add up to no more than the file.
  struct Fault {
    const char* assertion = nullptr;
    const char* detail = nullptr;
    bool tooMuchData = false;
  };
  Fault Validate() const;

 private:
  Tova::ByteView _fFile;
  Tova::ByteView _fDirectory;
};
