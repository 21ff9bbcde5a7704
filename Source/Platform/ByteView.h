#pragma once

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

namespace Tova {

/// A run of bytes that was found to exist as a whole, for loops too hot to check every read: positions are the caller's
/// to keep inside (asserted in debug builds). Made by ByteView::Run only.
class ByteRun {
 public:
  uint64_t Size() const { return size_; }
  uint8_t operator[](uint64_t at) const {
    assert(at < size_);
    return data_[at];  // NOLINT(clang-analyzer-core.NullDereference): there is no position in an empty run
  }
  uint16_t U16(uint64_t at) const {
    assert(size_ >= 2 && at <= size_ - 2);
    // NOLINTNEXTLINE(clang-analyzer-core.NullDereference): there is no position in an empty run
    return static_cast<uint16_t>(data_[at] << 8 | data_[at + 1]);
  }

 private:
  friend class ByteView;
  ByteRun(const uint8_t* data, uint64_t size) : data_(data), size_(size) {}
  const uint8_t* data_;
  uint64_t size_;
};

/// Read-only view of big-endian bytes. A read that is not wholly inside gives 0; slices are clipped to the view.
/// Cheap to copy, owns nothing: the bytes must outlive it. Positions and lengths are in bytes.
class ByteView {
 public:
  ByteView() = default;
  ByteView(const uint8_t* data, uint64_t size) : data_(data), size_(data ? size : 0) {}

  uint64_t Size() const { return size_; }
  bool Empty() const { return size_ == 0; }
  /// Whether the count bytes from at on are all there.
  bool Holds(uint64_t at, uint64_t count) const { return count <= size_ && at <= size_ - count; }

  uint8_t U8(uint64_t at) const { return at < size_ ? data_[at] : uint8_t{0}; }
  uint16_t U16(uint64_t at) const {
    return Holds(at, 2) ? static_cast<uint16_t>(data_[at] << 8 | data_[at + 1]) : uint16_t{0};
  }
  uint32_t U24(uint64_t at) const {
    return Holds(at, 3) ? uint32_t{data_[at]} << 16 | uint32_t{data_[at + 1]} << 8 | data_[at + 2] : 0;
  }
  uint32_t U32(uint64_t at) const {
    return Holds(at, 4) ? uint32_t{data_[at]} << 24 | uint32_t{data_[at + 1]} << 16 | uint32_t{data_[at + 2]} << 8 |
                              data_[at + 3]
                        : 0;
  }
  uint64_t U64(uint64_t at) const { return Holds(at, 8) ? uint64_t{U32(at)} << 32 | U32(at + 4) : 0; }
  int8_t S8(uint64_t at) const { return static_cast<int8_t>(U8(at)); }
  int16_t S16(uint64_t at) const { return static_cast<int16_t>(U16(at)); }
  int32_t S32(uint64_t at) const { return static_cast<int32_t>(U32(at)); }
  int64_t S64(uint64_t at) const { return static_cast<int64_t>(U64(at)); }

  /// The value as a little-endian machine reads the bytes unswapped, on every machine.
  uint16_t LittleU16(uint64_t at) const { return __builtin_bswap16(U16(at)); }
  uint32_t LittleU32(uint64_t at) const { return __builtin_bswap32(U32(at)); }

  /// The part of [at, at + length) that exists.
  ByteView Slice(uint64_t at, uint64_t length) const {
    if (at >= size_) return ByteView(data_ + size_, 0);
    return ByteView(data_ + at, std::min(length, size_ - at));
  }
  /// Everything from at on.
  ByteView From(uint64_t at) const { return Slice(at, size_); }

  /// The run [at, at + length) when all of it exists.
  std::optional<ByteRun> Run(uint64_t at, uint64_t length) const {
    if (!Holds(at, length)) return std::nullopt;
    return ByteRun(length ? data_ + at : nullptr, length);
  }

  /// Whether the bytes at the position are those of text.
  bool Matches(uint64_t at, std::string_view text) const {
    return Holds(at, text.size()) && (text.empty() || std::memcmp(data_ + at, text.data(), text.size()) == 0);
  }
  /// The position of the first such byte at or after from; Size() when there is none.
  uint64_t Find(uint8_t byte, uint64_t from = 0) const {
    if (from >= size_) return size_;
    const void* found = std::memchr(data_ + from, byte, size_ - from);
    return found ? static_cast<uint64_t>(static_cast<const uint8_t*>(found) - data_) : size_;
  }

  /// Whether the bytes are the same, wherever they lie.
  bool operator==(const ByteView& other) const {
    return size_ == other.size_ && (size_ == 0 || std::memcmp(data_, other.data_, size_) == 0);
  }

  /// Where this view begins in a view that it is a part of.
  uint64_t OffsetIn(const ByteView& whole) const {
    assert(data_ >= whole.data_ && data_ <= whole.data_ + whole.size_);
    return static_cast<uint64_t>(data_ - whole.data_);
  }

  /// The bytes for interfaces that must hand out or take a raw pointer; nobody computes with it.
  const uint8_t* Data() const { return data_; }

 private:
  const uint8_t* data_ = nullptr;
  uint64_t size_ = 0;
};

/// Reads consecutive big-endian values of a view; past its end 0.
class ByteReader {
 public:
  explicit ByteReader(ByteView bytes, uint64_t at = 0) : bytes_(bytes), at_(at) {}

  template <class T>
  T Read() {
    static_assert(sizeof(T) == 1 || sizeof(T) == 2 || sizeof(T) == 4 || sizeof(T) == 8);
    const uint64_t at = at_;
    at_ += sizeof(T);
    if constexpr (sizeof(T) == 1) return static_cast<T>(bytes_.U8(at));
    if constexpr (sizeof(T) == 2) return static_cast<T>(bytes_.U16(at));
    if constexpr (sizeof(T) == 4) return static_cast<T>(bytes_.U32(at));
    if constexpr (sizeof(T) == 8) return static_cast<T>(bytes_.U64(at));
  }

 private:
  ByteView bytes_;
  uint64_t at_;
};

/// Records of one size in a view, as many as a count field claims. Iterating visits the records that start inside the
/// view, so a hostile 32-bit count costs no more than the bytes there are; the last may be cut short (its reads give
/// 0).
class RecordArray {
 public:
  RecordArray(ByteView bytes, uint64_t at, uint64_t claimed, uint64_t stride)
      : bytes_(bytes.From(at)), claimed_(claimed), stride_(stride) {}

  uint64_t Claimed() const { return claimed_; }
  /// How many of the claimed records start inside the view.
  uint64_t Held() const { return std::min(claimed_, (bytes_.Size() + stride_ - 1) / stride_); }
  ByteView operator[](uint64_t index) const { return bytes_.Slice(index * stride_, stride_); }

  class Iterator {
   public:
    Iterator(const RecordArray* records, uint64_t index) : records_(records), index_(index) {}
    ByteView operator*() const { return (*records_)[index_]; }
    Iterator& operator++() {
      ++index_;
      return *this;
    }
    bool operator==(const Iterator& other) const { return index_ == other.index_; }

   private:
    const RecordArray* records_;
    uint64_t index_;
  };
  Iterator begin() const { return Iterator(this, 0); }
  Iterator end() const { return Iterator(this, Held()); }

 private:
  ByteView bytes_;
  uint64_t claimed_;
  uint64_t stride_;
};

/// Arithmetic that wraps on purpose.
constexpr uint16_t Wrap16(uint64_t value) { return static_cast<uint16_t>(value); }
constexpr int16_t WrapSigned16(int64_t value) { return static_cast<int16_t>(static_cast<uint16_t>(value)); }
constexpr uint32_t Wrap32(uint64_t value) { return static_cast<uint32_t>(value); }

}  // namespace Tova
