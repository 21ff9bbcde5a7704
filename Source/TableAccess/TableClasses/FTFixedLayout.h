#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "Platform/ByteView.h"

/// The pattern of the tables whose fields lie at fixed places. A table lists its fields once, in table order, as
///
///   #define FT_HHEA_FIELDS(FIELD) FIELD(uint32_t, Version) FIELD(int16_t, Ascender) ...
///
/// and its class takes the members, the reading and the accessors from that list:
///
///   class FTFontTable_hhea : public FTFontTable {
///     FT_FIXED_LAYOUT(FT_HHEA_FIELDS, 36)
///   };
///
/// where 36 is the size that the table's public description gives. Bytes that a short table lacks read as 0.
namespace FTFixedLayout {

template <class T>
struct Reading {
  static T From(Tova::ByteReader& ioReader) { return ioReader.Read<T>(); }
};
template <class T, size_t N>
struct Reading<std::array<T, N>> {
  static std::array<T, N> From(Tova::ByteReader& ioReader) {
    std::array<T, N> tValues;
    for (T& tValue : tValues) tValue = ioReader.Read<T>();
    return tValues;
  }
};

}  // namespace FTFixedLayout

#define FT_FIELD_MEMBER(type, name) type name = {};
#define FT_FIELD_SIZE(type, name) +sizeof(type)  // NOLINT(bugprone-macro-parentheses): a summand
#define FT_FIELD_READ(type, name) tFields.name = FTFixedLayout::Reading<type>::From(tReader);
#define FT_FIELD_ACCESSOR(type, name) \
  type name() const {                 \
    ReadData();                       \
    return _fFields.name;             \
  }

#define FT_FIXED_LAYOUT(FIELDS, size)                                                                       \
 private:                                                                                                   \
  struct Fields {                                                                                           \
    FIELDS(FT_FIELD_MEMBER)                                                                                 \
  };                                                                                                        \
  static_assert(0 FIELDS(FT_FIELD_SIZE) == (size), "the fields add up to the published size of the table"); \
  static Fields ReadFields(Tova::ByteView iBytes) {                                                         \
    Tova::ByteReader tReader(iBytes);                                                                       \
    Fields tFields;                                                                                         \
    FIELDS(FT_FIELD_READ)                                                                                   \
    return tFields;                                                                                         \
  }                                                                                                         \
  mutable Fields _fFields;                                                                                  \
                                                                                                            \
 public:                                                                                                    \
  void ReadDataInternal() const override { _fFields = ReadFields(FixedPart(Bytes())); }                     \
  FIELDS(FT_FIELD_ACCESSOR)

/// The bytes that the fields are read from: all of them, unless a class says otherwise by hiding this function.
inline Tova::ByteView FixedPart(Tova::ByteView iBytes) { return iBytes; }

/// What every accessor class begins with: its tag, and construction from a directory entry or from another table.
#define FT_TABLE_CLASS(class, base, tag)                      \
 public:                                                      \
  static constexpr uint32_t kTag = FTTag(tag);                \
  using base::base;                                           \
  class() = default;                                          \
  explicit class(const FTFontTable& iTable) : base(iTable) {} \
  uint32_t GetTag() const override { return kTag; }
