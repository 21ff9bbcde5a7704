#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "support/TableBuilder.h"

namespace test {

/// The big-endian bytes of UTF-16 text.
std::string Utf16(std::u16string_view text);

/// A record of the 'name' table; its text as bytes.
struct NameRecord {
  uint16_t platform;
  uint16_t script;
  uint16_t language;
  uint16_t code;
  std::string bytes;
};
/// A record of platform 3, script 1, language 0x409, of ASCII text.
NameRecord MicrosoftName(uint16_t code, std::string_view text, uint16_t language = 0x409);

/// The 'name' table, of format 1 when there are language tags. Labels: "format", "count", "stringOffset", and with the
/// index of the record "language0", "code0", "length0", "offset0"; of the tag "tagLength0", "tagOffset0".
TableBuilder NameRecordsTable(const std::vector<NameRecord>& records, const std::vector<std::string>& tags = {});

/// 'post' with names by index: format 2.0. Labels as PostTable's, and "numGlyphs", "index0", "length0" (of a name).
TableBuilder StoredNamesTable(const std::vector<uint16_t>& indices, const std::vector<std::string>& names);
/// 'post' of format 2.5.
TableBuilder NameOffsetsTable(const std::vector<int8_t>& offsets);

/// 'OS/2' of a version from 0 to 5, with fields that fit GoodFont. Labelled as the OpenType specification names them,
/// the PANOSE digits "panose0" to "panose9".
TableBuilder OS2Table(uint16_t version);

}  // namespace test
