#include <gtest/gtest.h>

#include <cstdio>
#include <limits>

#include "support/Values.h"

namespace {

using namespace test;
using Tova::FormatArgument;

/// The rendered text; "none" for none.
std::string Render(std::string_view format, std::initializer_list<FormatArgument> arguments) {
  const Tova::String text = Tova::Format(format, arguments);
  return text ? std::string(Tova::Text(text)) : "none";
}

template <class T>
std::string Printf(const std::string& format, T value) {
  char buffer[256];
  std::snprintf(buffer, sizeof(buffer), format.c_str(), value);
  return buffer;
}

/// Every mix of flags, and a few fields and precisions.
std::vector<std::string> DirectiveStarts() {
  std::vector<std::string> starts;
  for (int flags = 0; flags < 32; ++flags) {
    std::string start = "[%";
    for (int i = 0; i < 5; ++i) {
      if (flags >> i & 1) start += "-+ #0"[i];
    }
    for (const char* field : {"", "3", "12", ".0", ".2", "9.4"}) starts.push_back(start + field);
  }
  return starts;
}

#pragma GCC diagnostic ignored "-Wformat-nonliteral"

TEST(Format, IntegersAndRealsPrintAsTheSystemPrintsThem) {
  const int64_t integers[] = {0, 1, -1, 255, -300, 70000, INT32_MIN, INT64_MIN, INT64_MAX};
  const double reals[] = {0.0, -0.0, 1.0, -2.5, 1234.5678, 1e-7, 6.02e23, std::numeric_limits<double>::infinity()};
  for (const std::string& start : DirectiveStarts()) {
    for (const int64_t value : integers) {
      for (const char conversion : std::string("diuxXo")) {
        for (const char* size : {"", "h", "hh", "l"}) {
          const std::string format = start + size + conversion + "]";
          const std::string expected = *size == 'l' ? Printf(format, value) : Printf(format, static_cast<int>(value));
          EXPECT_EQ(Render(format, {value}), expected) << format;
        }
      }
    }
    for (const double value : reals) {
      // With '#', %g may print a zero after the point where the system prints none.
      const bool alternate = start.find('#') != std::string::npos;
      for (const char conversion : std::string(alternate ? "feE" : "feEgG")) {
        const std::string format = start + conversion + "]";
        EXPECT_EQ(Render(format, {value}), Printf(format, value)) << format;
      }
    }
  }
}

TEST(Format, TextsValuesAndNumberedArguments) {
  const auto text = Tova::MakeString("h\xC3\xA9llo");
  const auto array = Array({text.get(), Tova::Adopt(TovaNumberCreateWithInteger(-7)).get()});
  const struct {
    std::string_view format;
    std::initializer_list<FormatArgument> arguments;
    std::string expected;
  } cases[] = {
      {"%@: %@", {text, array}, "h\xC3\xA9llo: {h\xC3\xA9llo, -7}"},
      {"%.2@|%7@|%-7@|", {text, text, text}, "h\xC3\xA9|  h\xC3\xA9llo|h\xC3\xA9llo  |"},
      {"%s|%.2s|%5s", {"abc", "\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC", "ab"}, "abc|\xE2\x82\xAC\xE2\x82\xAC|   ab"},
      {"%s", {"bad\xFFtail"}, "bad\xEF\xBF\xBDtail"},
      {"%@ %s", {static_cast<TovaTypeRef>(nullptr), static_cast<const char*>(nullptr)}, "(null) (null)"},
      {"%c%c%c", {'A', 0x20AC, 0xD800}, "A\xE2\x82\xAC\xEF\xBF\xBD"},
      {"%2$d of %1$d, 100%%", {5, 3}, "3 of 5, 100%"},
      {"plain", {1, 2}, "plain"}};
  for (const auto& c : cases) EXPECT_EQ(Render(c.format, c.arguments), c.expected) << c.format;
}

TEST(Format, WhatDoesNotFitTheArgumentsGivesNoText) {
  for (const std::string_view format : {"%",    "%5",   "%.",     "%l",     "%q",     "%n",
                                        "%p",   "%*d",  "%.*d",   "%5%",    "%1001d", "%.99999999999999999999d",
                                        "%hs",  "%l@",  "%Lf",    "%hf",    "%lllx",  "%d%d",
                                        "%0$d", "%2$d", "%1$d%d", "%d%1$d", "%1$d%",  "%s",
                                        "%@",   "%f"}) {
    EXPECT_EQ(Render(format, {1}), "none") << format;
  }
  const auto text = Tova::MakeString("x");
  for (const std::string_view format : {"%d", "%s", "%f", "%c"}) EXPECT_EQ(Render(format, {text}), "none");
  EXPECT_EQ(Render("%d", {1.0}), "none");
}

}  // namespace
