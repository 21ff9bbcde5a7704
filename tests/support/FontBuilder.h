#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "support/TableBuilder.h"

namespace test {

/// Makes an sfnt font from tables, in the order they were given, with a right directory and right checksums, and breaks
/// it at will.
class FontBuilder {
 public:
  FontBuilder& Scaler(uint32_t scaler) {
    scaler_ = scaler;
    return *this;
  }
  /// Adds the table, or replaces the one with this tag.
  FontBuilder& Table(const std::string& tag, Bytes bytes);
  FontBuilder& Remove(const std::string& tag);
  /// Keeps only the first bytes of a table.
  FontBuilder& Truncate(const std::string& tag, size_t size);
  /// The bytes of a table, to be changed in place.
  Bytes& operator[](const std::string& tag);
  /// Adds a directory entry as it stands, with no bytes behind it.
  FontBuilder& Entry(const std::string& tag, uint32_t offset, uint32_t length);
  /// States another number of tables than there are.
  FontBuilder& TableCount(uint16_t count) {
    statedCount_ = count;
    return *this;
  }

  /// The font; offsets count from base, where the directory will stand in a collection.
  Bytes Build(size_t base = 0) const;

 private:
  struct Part {
    std::string tag;
    Bytes bytes;
    bool entryOnly = false;
    uint32_t offset = 0;
    uint32_t length = 0;
  };
  Part* Find(const std::string& tag);

  uint32_t scaler_ = 0x00010000;
  int statedCount_ = -1;
  std::vector<Part> parts_;
};

/// A collection of fonts, each with tables of its own.
Bytes BuildCollection(const std::vector<FontBuilder>& fonts);

/// Tables with usual contents, their fields labelled as the OpenType specification names them.
TableBuilder HeadTable();
TableBuilder HheaTable(uint16_t longMetrics);
TableBuilder MaxpTable(uint16_t glyphs);
TableBuilder PostTable();
/// A 'name' table of platform 3, script 1, language 0x409 records: name code and ASCII text.
TableBuilder NameTable(const std::vector<std::pair<uint16_t, std::string>>& names);
/// 'hmtx' (or 'vmtx') with a long entry for every pair of advance and side bearing.
TableBuilder MetricsTable(const std::vector<std::pair<uint16_t, int16_t>>& metrics);

/// A TrueType font of three glyphs (a square, an empty glyph mapped from the space, a triangle mapped from 'A') in
/// which no test of this library finds anything wrong, but for the contour maximum of 'maxp', which is judged by
/// components.
FontBuilder GoodFont();

}  // namespace test
