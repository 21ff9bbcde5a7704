#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace test {

using Bytes = std::vector<uint8_t>;

/// Writes the big-endian bytes of a table value by value. A value may carry a label, by which it can be found and
/// damaged later: table.U16(3, "numGlyphs"); table.Patch("numGlyphs", 0);
class TableBuilder {
 public:
  TableBuilder& U8(uint64_t value, const std::string& label = "") { return Put(value, 1, label); }
  TableBuilder& U16(uint64_t value, const std::string& label = "") { return Put(value, 2, label); }
  TableBuilder& U24(uint64_t value, const std::string& label = "") { return Put(value, 3, label); }
  TableBuilder& U32(uint64_t value, const std::string& label = "") { return Put(value, 4, label); }
  TableBuilder& U64(uint64_t value, const std::string& label = "") { return Put(value, 8, label); }
  TableBuilder& S8(int64_t value, const std::string& label = "") { return U8(static_cast<uint64_t>(value), label); }
  TableBuilder& S16(int64_t value, const std::string& label = "") { return U16(static_cast<uint64_t>(value), label); }
  TableBuilder& S32(int64_t value, const std::string& label = "") { return U32(static_cast<uint64_t>(value), label); }
  TableBuilder& Text(std::string_view text, const std::string& label = "");
  TableBuilder& Append(const Bytes& bytes, const std::string& label = "");
  TableBuilder& Zeros(size_t count, const std::string& label = "") { return Append(Bytes(count), label); }

  /// Overwrites a labelled value, in the width it was written with.
  TableBuilder& Patch(const std::string& label, uint64_t value);
  /// A copy with the value overwritten.
  TableBuilder With(const std::string& label, uint64_t value) const { return TableBuilder(*this).Patch(label, value); }
  /// Cuts the table off after so many bytes.
  TableBuilder& Truncate(size_t size);

  size_t Offset(const std::string& label) const { return labels_.at(label).offset; }
  size_t Size() const { return bytes_.size(); }
  const Bytes& Data() const { return bytes_; }
  operator const Bytes&() const { return bytes_; }  // NOLINT(google-explicit-constructor): a table is its bytes

 private:
  struct Place {
    size_t offset;
    size_t width;
  };
  TableBuilder& Put(uint64_t value, size_t width, const std::string& label);
  void Label(const std::string& label, size_t width);

  Bytes bytes_;
  std::map<std::string, Place> labels_;
};

}  // namespace test
