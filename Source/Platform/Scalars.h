#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Platform/Value.h"

/// An integer or a real. An integer and a real of the same value are equal.
struct TovaNumber final : Tova::Object {
  explicit TovaNumber(int64_t value) : Object(kTovaTypeNumber), integer(value) {}
  explicit TovaNumber(double value) : Object(kTovaTypeNumber), isReal(true), real(value) {}

  bool IsEqual(const Object& other, int depth) const override;
  size_t Hash(int depth) const override;
  void Describe(std::string& out, int depth) const override;
  void Destroy() const override { delete this; }

  /// The value as an integer when it is one exactly.
  std::optional<int64_t> Exact() const;

  const bool isReal = false;
  const int64_t integer = 0;
  const double real = 0;
};

/// One of the two truth values; immortal.
struct TovaBoolean final : Tova::Object {
  constexpr explicit TovaBoolean(bool truth) : Object(kTovaTypeBoolean, Lifetime::kImmortal), value(truth) {}

  bool IsEqual(const Object& other, int depth) const override;
  size_t Hash(int depth) const override;
  void Describe(std::string& out, int depth) const override;
  void Destroy() const override {}

  const bool value;
};

/// A moment, in seconds since 1970-01-01 00:00:00 UTC.
struct TovaDate final : Tova::Object {
  explicit TovaDate(TovaAbsoluteTime moment) : Object(kTovaTypeDate), time(moment) {}

  bool IsEqual(const Object& other, int depth) const override;
  size_t Hash(int depth) const override;
  void Describe(std::string& out, int depth) const override;
  void Destroy() const override { delete this; }

  const TovaAbsoluteTime time;
};

/// Immutable bytes.
struct TovaData final : Tova::Object {
  explicit TovaData(std::string contents) : Object(kTovaTypeData), bytes(std::move(contents)) {}

  bool IsEqual(const Object& other, int depth) const override;
  size_t Hash(int depth) const override;
  void Describe(std::string& out, int depth) const override;
  void Destroy() const override { delete this; }

  const std::string bytes;
};

namespace Tova {

/// ISO 8601 in UTC, to the second: 2026-01-31T09:30:00Z. Moments outside the years 0 to 9999 are moved to the nearest
/// inside.
std::string FormatTime(TovaAbsoluteTime time);
/// Reads that form back; none when the text is not of it, or no such date exists.
std::optional<TovaAbsoluteTime> ParseTime(std::string_view text);

/// A real as short as reads back as the same value.
std::string FormatReal(double value);

}  // namespace Tova
