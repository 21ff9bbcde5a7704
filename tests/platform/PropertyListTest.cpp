#include <gtest/gtest.h>

#include <cstdio>
#include <memory>

#include "support/Values.h"

namespace {

using namespace test;
using std::string_view_literals::operator""sv;

Tova::Data MakeData(std::string_view bytes) {
  return Tova::Adopt(TovaDataCreate(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()));
}

Tova::Value Read(std::string_view xml, std::string* reason = nullptr) {
  TovaStringRef error = nullptr;
  auto value = Tova::Adopt(TovaPropertyListCreateWithData(MakeData(xml).get(), &error));
  const auto owned = Tova::Adopt(error);
  EXPECT_NE(static_cast<bool>(value), static_cast<bool>(owned));
  if (reason) *reason = Tova::Text(owned);
  return value;
}

std::string Write(TovaTypeRef value) {
  const auto data = Tova::Adopt(TovaPropertyListCreateXMLData(value));
  if (!data) return "none";
  return std::string(reinterpret_cast<const char*>(TovaDataGetBytes(data.get())), TovaDataGetLength(data.get()));
}

std::string Nested(int depth) {
  std::string xml = "<plist>";
  for (int i = 0; i < depth; ++i) xml += "<array>";
  for (int i = 0; i < depth; ++i) xml += "</array>";
  return xml + "</plist>";
}

TEST(PropertyLists, EveryTypeIsReadAndWrittenBack) {
  const char* xml = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist SYSTEM "PropertyList-1.0.dtd">
<plist version="1.0"><dict>
  <key>text</key><string> a &lt;&amp;&#233; <![CDATA[<b>]]></string>
  <key>blank</key><string> </string><key>empty</key><string/>
  <key>integer</key><integer> -42 </integer><key>real</key><real>0.1</real>
  <key>yes</key><true/><key>no</key><false/> <!-- a comment -->
  <key>date</key><date>2026-01-31T09:30:00Z</date>
  <key>data</key><data> AAH/
 /g== </data>
  <key>array</key><array> <string>x</string> <array/> <dict/> </array>
</dict></plist>)";
  const auto value = Read(xml);
  ASSERT_TRUE(value);
  EXPECT_EQ(Description(value.get()),
            "{text:  a <&\u00E9 <b>, blank:  , empty: , integer: -42, real: 0.1, yes: true, no: false, "
            "date: 2026-01-31T09:30:00Z, data: <0001fffe>, array: {x, {}, {}}}");
  const auto again = Read(Write(value.get()));
  EXPECT_TRUE(TovaEqual(value.get(), again.get())) << Write(value.get());
  EXPECT_EQ(Write(value.get()), Write(again.get()));
}

TEST(PropertyLists, TextThatXmlCannotCarryIsReplaced) {
  const auto text = Tova::MakeString("<&>\"'\r\n\t]]>\x01\0\uFFFF\uFFFD\U0001F600"sv);
  const auto again = Read(Write(text.get()));
  EXPECT_EQ(Tova::Text(Tova::AsString(again.get())), "<&>\"'\r\n\t]]>\uFFFD\uFFFD\uFFFD\uFFFD\U0001F600");
}

TEST(PropertyLists, DataOfEveryLengthSurvives) {
  std::string bytes;
  for (int i = 0; i < 9; ++i) {
    const auto again = Read(Write(MakeData(bytes).get()));
    EXPECT_TRUE(TovaEqual(again.get(), MakeData(bytes).get())) << i;
    bytes += static_cast<char>(0xFF - i * 29);
  }
}

TEST(PropertyLists, MalformedInputGivesOneLineOfReason) {
  std::vector<std::string> inputs = {"",
                                     "junk",
                                     "<plist>",
                                     "<plist/>",
                                     "<dict/>",
                                     "<plist><array></dict></plist>",
                                     "<plist><true/></plist><plist/>",
                                     "<plist>text<true/></plist>",
                                     Nested(513),
                                     Nested(100000),
                                     "<plist><string>\xFF</string></plist>"};
  // clang-format off
  for (const char* content : {
           "<true/><false/>", "<unknown/>", "<string>&foo;</string>", "<string>a & b</string>", "<string>a<b/></string>", "<true>x</true>", "<array>x</array>",
           "<integer/>", "<integer>1x</integer>", "<integer>9223372036854775808</integer>", "<integer>+-1</integer>",
           "<real>one</real>", "<date>2026-02-30T00:00:00Z</date>", "<date>yesterday</date>",
           "<data>AAA</data>", "<data>A===</data>", "<data>AA==AA==</data>", "<data>A*==</data>",
           "<dict><key>k</key></dict>", "<dict><true/></dict>", "<dict><key>k</key><key>l</key></dict>",
           "<dict><key>k</key>x<true/></dict>", "<dict><key>k</key><true/><key>k</key><true/></dict>"}) {
    inputs.push_back("<plist>" + std::string(content) + "</plist>");
  }
  // clang-format on
  for (const std::string& input : inputs) {
    std::string reason;
    EXPECT_FALSE(Read(input, &reason)) << input;
    EXPECT_FALSE(reason.empty()) << input;
    EXPECT_EQ(reason.find('\n'), std::string::npos);
  }
  EXPECT_TRUE(Read(Nested(512)));
}

TEST(PropertyLists, AStreamIsReadFromWhereItStands) {
  const std::unique_ptr<FILE, int (*)(FILE*)> stream(std::tmpfile(), &std::fclose);
  ASSERT_TRUE(stream);
  std::fputs("skipped<plist><integer>7</integer></plist>", stream.get());
  std::fseek(stream.get(), 7, SEEK_SET);
  const auto value = Tova::Adopt(TovaPropertyListCreateWithStream(stream.get(), nullptr));
  EXPECT_EQ(TovaNumberGetInteger(Tova::AsNumber(value.get())), 7);
}

TEST(PropertyLists, ValuesWithoutAFormAreNotWritten) {
  EXPECT_EQ(Write(Array({FileUrl("/x").get()}).get()), "none");
  EXPECT_EQ(Write(nullptr), "none");
}

}  // namespace
