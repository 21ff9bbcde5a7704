#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>

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

#pragma GCC diagnostic ignored "-Wformat-nonliteral"

TEST(Format, IntegersAndRealsPrintAsTheSystemPrintsThem) {
  for (int mix = 0; mix < 32 * 6; ++mix) {  // of flags, fields and precisions
    std::string start = "[%";
    for (int i = 0; i < 5; ++i) start += mix >> i & 1 ? std::string(1, "-+ #0"[i]) : "";
    start += std::array{"", "3", "12", ".0", ".2", "9.4"}[static_cast<size_t>(mix / 32)];
    for (const int64_t value : {int64_t{0}, int64_t{1}, int64_t{-300}, int64_t{70000}, INT64_MIN, INT64_MAX}) {
      for (const char* end : {"d]", "u]", "x]", "hX]", "hho]", "ld]", "lx]"}) {
        const std::string expected =
            *end == 'l' ? Printf(start + end, value) : Printf(start + end, static_cast<int>(value));
        EXPECT_EQ(Render(start + end, {value}), expected) << start + end;
      }
    }
    for (const double value : {0.0, -0.0, -2.5, 1234.5678, 1e-7, 6.02e23, HUGE_VAL}) {
      for (const char* end : {"f]", "e]", "E]", "g]", "G]"}) {
        // With '#', %g may print a zero after the point where the system prints none.
        if (start.find('#') != start.npos && end[0] != 'f' && end[0] != 'e') continue;
        EXPECT_EQ(Render(start + end, {value}), Printf(start + end, value)) << start + end;
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
