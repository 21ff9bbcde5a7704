#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>

#include "Platform/Scalars.h"

namespace Tova {
namespace {

constexpr double kFirstSecond = -62167219200.0;  // 0000-01-01T00:00:00Z
constexpr double kLastSecond = 253402300799.0;   // 9999-12-31T23:59:59Z
constexpr int64_t kSecondsPerDay = 86400;

}  // namespace

std::string FormatTime(TovaAbsoluteTime time) {
  const double clamped = std::isnan(time) ? 0 : std::clamp(std::floor(time), kFirstSecond, kLastSecond);
  const std::chrono::sys_seconds moment{std::chrono::seconds(static_cast<int64_t>(clamped))};
  const auto day = std::chrono::floor<std::chrono::days>(moment);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(moment - day);
  char text[40];
  std::snprintf(text, sizeof(text), "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  return text;
}

std::optional<TovaAbsoluteTime> ParseTime(std::string_view text) {
  constexpr std::string_view kPattern = "0000-00-00T00:00:00Z";
  if (text.size() != kPattern.size()) return std::nullopt;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool digit = text[i] >= '0' && text[i] <= '9';
    if (kPattern[i] == '0' ? !digit : text[i] != kPattern[i]) return std::nullopt;
  }
  const auto number = [&](size_t at, size_t length) {
    int value = 0;
    for (const char digit : text.substr(at, length)) value = value * 10 + (digit - '0');
    return value;
  };
  const std::chrono::year_month_day date(std::chrono::year(number(0, 4)),
                                         std::chrono::month(static_cast<unsigned>(number(5, 2))),
                                         std::chrono::day(static_cast<unsigned>(number(8, 2))));
  const int64_t hour = number(11, 2);
  const int64_t minute = number(14, 2);
  const int64_t second = number(17, 2);
  if (!date.ok() || hour > 23 || minute > 59 || second > 60) return std::nullopt;
  const int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
  return static_cast<double>(days * kSecondsPerDay + hour * 3600 + minute * 60 + second);
}

}  // namespace Tova

bool TovaDate::IsEqual(const Object& other, int /*depth*/) const {
  return time == static_cast<const TovaDate&>(other).time;
}

size_t TovaDate::Hash(int /*depth*/) const { return std::hash<double>()(time); }

void TovaDate::Describe(std::string& out, int /*depth*/) const { out += Tova::FormatTime(time); }

TovaAbsoluteTime TovaAbsoluteTimeGetCurrent(void) {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

TovaDateRef TovaDateCreate(TovaAbsoluteTime time) {
  return Tova::Guarded([&] { return new TovaDate(time); });
}

TovaAbsoluteTime TovaDateGetAbsoluteTime(TovaDateRef date) { return date ? date->time : 0; }

TovaStringRef TovaDateCopyISO8601(TovaDateRef date) { return TovaCopyDescription(date); }
