#include <gtest/gtest.h>

#include "support/Values.h"

namespace {

using namespace test;
using std::string_view_literals::operator""sv;

/// The value that the text holds; none, and one line of reason, for text that is no property list.
Tova::Value Read(std::string_view xml) {
  TovaStringRef reason = nullptr;
  const auto data = Tova::Adopt(TovaDataCreate(reinterpret_cast<const uint8_t*>(xml.data()), xml.size()));
  auto value = Tova::Adopt(TovaPropertyListCreateWithData(data.get(), &reason));
  const std::string_view text = reason ? Tova::Text(reason) : "";
  EXPECT_EQ(static_cast<bool>(value), text.empty()) << xml;
  EXPECT_EQ(text.find('\n'), text.npos);
  TovaRelease(reason);
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
  <key>empty</key><string/>
  <key>integer</key><integer> -42 </integer><key>real</key><real>0.1</real>
  <key>yes</key><true/><key>no</key><false/> <!-- a comment -->
  <key>date</key><date>2026-01-31T09:30:00Z</date>
  <key>data</key><data> AAH/
 /g== </data><key>more</key><data>AAEC</data><key>odd</key><data>AAE=</data>
  <key>array</key><array> <string>x</string> <array/> <dict/> </array>
</dict></plist>)";
  const auto value = Read(xml);
  ASSERT_TRUE(value);
  EXPECT_EQ(Description(value.get()),
            "{text:  a <&\u00E9 <b>, empty: , integer: -42, real: 0.1, yes: true, no: false, "
            "date: 2026-01-31T09:30:00Z, data: <0001fffe>, more: <000102>, odd: <0001>, array: {x, {}, {}}}");
  const auto again = Read(Write(value.get()));
  EXPECT_TRUE(TovaEqual(value.get(), again.get())) << Write(value.get());
  EXPECT_EQ(Write(Array({FileUrl("/x").get()}).get()), "none");
}

TEST(PropertyLists, TextThatXmlCannotCarryIsReplaced) {
  const auto text = Tova::MakeString("<&>\"'\r\n\t]]>\x01\0\uFFFF\uFFFD\U0001F600"sv);
  const auto again = Read(Write(text.get()));
  EXPECT_EQ(Tova::Text(Tova::AsString(again.get())), "<&>\"'\r\n\t]]>\uFFFD\uFFFD\uFFFD\uFFFD\U0001F600");
}

TEST(PropertyLists, MalformedInputGivesOneLineOfReason) {
  EXPECT_TRUE(Read(Nested(512)));
  const std::string deep = Nested(513), deeper = Nested(100000);
  for (const std::string_view input :
       {"", "junk", "<plist>", "<plist/>", "<dict/>", "<plist><array></dict></plist>", "<plist><true/></plist><plist/>",
        "<plist><true/><false/></plist>", "<plist>text<true/></plist>", "<plist><string>\xFF</string></plist>",
        deep.c_str(), deeper.c_str()}) {
    EXPECT_FALSE(Read(input)) << input;
  }
  const std::pair<std::string, std::vector<std::string>> elements[] = {
      {"unknown", {""}},
      {"string", {"&foo;", "a<b/>"}},
      {"true", {"x"}},
      {"array", {"x"}},
      {"integer", {"", "1x", "9223372036854775808"}},
      {"real", {"one"}},
      {"date", {"2026-02-30T00:00:00Z", "yesterday"}},
      {"data", {"AAA", "A===", "AA==AA==", "A*=="}},
      {"dict", {"<key>k</key>", "<true/>", "<key>k</key>x<true/>", "<key>k</key><true/><key>k</key><true/>"}}};
  for (const auto& [name, contents] : elements) {
    for (const std::string& content : contents) {
      EXPECT_FALSE(Read("<plist><" + name + ">" + content + "</" + name + "></plist>")) << name << content;
    }
  }
}

}  // namespace
