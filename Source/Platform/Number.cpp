#include <charconv>
#include <cmath>
#include <functional>
#include <limits>

#include "Platform/Scalars.h"

namespace {

constexpr double kIntegerLimit = 9223372036854775808.0;  // 2^63, the first real past the integers

constinit const TovaBoolean gTrue(true);
constinit const TovaBoolean gFalse(false);

}  // namespace

std::string Tova::FormatReal(double value) {
  char digits[32];
  const auto result = std::to_chars(digits, digits + sizeof(digits), value);
  return std::string(digits, result.ptr);
}

std::optional<int64_t> TovaNumber::Exact() const {
  if (!isReal) return integer;
  if (!(real >= -kIntegerLimit && real < kIntegerLimit) || std::trunc(real) != real) return std::nullopt;
  return static_cast<int64_t>(real);
}

bool TovaNumber::IsEqual(const Object& other, int /*depth*/) const {
  const auto& number = static_cast<const TovaNumber&>(other);
  const auto exact = Exact();
  if (exact || number.Exact()) return exact == number.Exact();
  return real == number.real || (std::isnan(real) && std::isnan(number.real));
}

size_t TovaNumber::Hash(int /*depth*/) const {
  if (const auto exact = Exact()) return std::hash<int64_t>()(*exact);
  return std::isnan(real) ? 0 : std::hash<double>()(real);
}

void TovaNumber::Describe(std::string& out, int /*depth*/) const {
  out += isReal ? Tova::FormatReal(real) : std::to_string(integer);
}

TovaNumberRef TovaNumberCreateWithInteger(int64_t value) {
  return Tova::Guarded([&] { return new TovaNumber(value); });
}

TovaNumberRef TovaNumberCreateWithReal(double value) {
  return Tova::Guarded([&] { return new TovaNumber(value); });
}

bool TovaNumberIsReal(TovaNumberRef number) { return number && number->isReal; }

int64_t TovaNumberGetInteger(TovaNumberRef number) {
  if (!number || !number->isReal) return number ? number->integer : 0;
  if (std::isnan(number->real)) return 0;
  if (number->real >= kIntegerLimit) return std::numeric_limits<int64_t>::max();
  if (number->real < -kIntegerLimit) return std::numeric_limits<int64_t>::min();
  return static_cast<int64_t>(number->real);
}

double TovaNumberGetReal(TovaNumberRef number) {
  if (!number) return 0;
  return number->isReal ? number->real : static_cast<double>(number->integer);
}

bool TovaBoolean::IsEqual(const Object& other, int /*depth*/) const {
  return value == static_cast<const TovaBoolean&>(other).value;
}

size_t TovaBoolean::Hash(int /*depth*/) const { return value ? 1 : 2; }

void TovaBoolean::Describe(std::string& out, int /*depth*/) const { out += value ? "true" : "false"; }

const TovaBooleanRef kTovaBooleanTrue = &gTrue;
const TovaBooleanRef kTovaBooleanFalse = &gFalse;

bool TovaBooleanGetValue(TovaBooleanRef boolean) { return boolean && boolean->value; }
