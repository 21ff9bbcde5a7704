#include <gtest/gtest.h>

#include <Tova/Tova.hpp>
#include <string>
#include <string_view>

namespace {

using std::string_view_literals::operator""sv;

/// The decoded text; "none" for none.
std::string Decode(std::string_view bytes, TovaTextEncoding encoding) {
  const auto* data = reinterpret_cast<const uint8_t*>(bytes.data());
  const auto text = Tova::Adopt(TovaStringCreateWithBytes(data, bytes.size(), encoding));
  return text ? std::string(Tova::Text(text)) : "none";
}

TEST(Strings, OnlyWellFormedUtf8IsAccepted) {
  const struct {
    std::string_view bytes, lossy;
  } cases[] = {{"\x80", "\uFFFD"},
               {"\xC0\xAF", "\uFFFD\uFFFD"},
               {"\xE0\x9F\xBF", "\uFFFD\uFFFD\uFFFD"},
               {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
               {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
               {"ascii text \xE2\x82", "ascii text \uFFFD"},
               {"\xF0\x9F\x98x", "\uFFFDx"},
               {"\xFF", "\uFFFD"}};
  for (const auto& c : cases) {
    EXPECT_FALSE(Tova::MakeString(c.bytes)) << c.lossy;
    const auto lossy = Tova::Adopt(TovaStringCreateWithLossyUTF8(c.bytes.data(), c.bytes.size()));
    EXPECT_EQ(Tova::Text(lossy), c.lossy);
  }
  for (const std::string_view text :
       {""sv, "a\0b"sv, "\u007F\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF"sv}) {
    EXPECT_EQ(Tova::Text(Tova::MakeString(text)), text);
  }
}

TEST(TextEncodings, KnownBytesDecodeAndEncodeBack) {
  const struct {
    TovaTextEncoding encoding;
    std::string_view bytes, text;
  } cases[] = {{kTovaTextEncodingRoman, "caf\x8E\xCA\xDB", "caf\u00E9\u00A0\u20AC"},
               {1, "\x83\x65\x83\x58\x83\x67", "\u30C6\u30B9\u30C8"},
               {2, "\xA4\xA4\xA4\xE5", "\u4E2D\u6587"},
               {3, "\xC7\xD1\xB1\xDB", "\uD55C\uAE00"},
               {4, "\xC7\xE4", "\u0627\u0644"},
               {5, "\xF9\xEC", "\u05E9\u05DC"},
               {6, "\xE1", "\u03B1"},
               {7, "\x80\xE0", "\u0410\u0430"},
               {21, "\xA1", "\u0E01"},
               {25, "\xD6\xD0\xCE\xC4", "\u4E2D\u6587"},
               {29, "\x8B", "\u010D"},
               {kTovaTextEncodingUTF16BigEndian, "\0A\x20\xAC\xD8\x3D\xDE\x00"sv, "A\u20AC\U0001F600"},
               {kTovaTextEncodingISOLatin1, "\xE9\x80", "\u00E9\u0080"},
               {kTovaTextEncodingDOSJapanese, "\x82\xA0\xB1\x87\x40", "\u3042\uFF71\u2460"},
               {kTovaTextEncodingDOSSimplifiedChinese, "\x81\x40\xD6\xD0", "\u4E02\u4E2D"},
               {kTovaTextEncodingDOSKorean, "\x81\x41\xC7\xD1", "\uAC02\uD55C"},
               {kTovaTextEncodingDOSTraditionalChinese, "\xA4\xA4", "\u4E2D"},
               {kTovaTextEncodingWindowsKoreanJohab, "\xD0\x65\x8B\x69", "\uD55C\uAE00"}};
  for (const auto& c : cases) {
    EXPECT_EQ(Decode(c.bytes, c.encoding), c.text) << c.encoding;
    uint8_t buffer[32];
    size_t length = 0;
    const auto text = Tova::MakeString(c.text);
    ASSERT_TRUE(TovaStringGetBytes(text.get(), c.encoding, buffer, sizeof(buffer), &length)) << c.encoding;
    EXPECT_EQ(std::string_view(reinterpret_cast<char*>(buffer), length), c.bytes) << c.encoding;
    EXPECT_FALSE(TovaStringGetBytes(text.get(), c.encoding, buffer, length - 1, &length)) << c.encoding;

    std::string ascii;
    for (char byte = ' '; byte < 0x7F; ++byte) {
      if (byte != '\\' || c.encoding != kTovaTextEncodingWindowsKoreanJohab) ascii += byte;
    }
    if (c.encoding != kTovaTextEncodingUTF16BigEndian) {
      EXPECT_EQ(Decode(ascii, c.encoding), ascii) << c.encoding;
    }
    EXPECT_EQ(Decode("", c.encoding), "");
  }
}

TEST(TextEncodings, BytesWithoutAMeaningGiveNoText) {
  // clang-format off
  const std::pair<TovaTextEncoding, std::string_view> cases[] = {
      {kTovaTextEncodingUTF16BigEndian, "\0A\0"sv}, {kTovaTextEncodingUTF16BigEndian, "\xD8\x00"sv},
      {kTovaTextEncodingUTF16BigEndian, "\xD8\x00\0A"sv}, {kTovaTextEncodingUTF16BigEndian, "\xDC\x00\xD8\x00"sv},
      {kTovaTextEncodingDOSJapanese, "a\x83"}, {kTovaTextEncodingDOSSimplifiedChinese, "\x81\x7F"},
      {kTovaTextEncodingDOSKorean, "\xC7"}, {kTovaTextEncodingWindowsKoreanJohab, "\xD0"},
      {3, "\xC7 "}, {5, "\x80"}, {25, "\xD6\x20"}, {8, "text"}, {32, "text"}, {33, "text"},
      {kTovaTextEncodingInvalid, "text"}};
  // clang-format on
  for (const auto& [encoding, bytes] : cases) EXPECT_EQ(Decode(bytes, encoding), "none") << encoding;
  const auto text = Tova::MakeString("\u20AC\u4E2D");
  uint8_t buffer[32];
  EXPECT_FALSE(TovaStringGetBytes(text.get(), kTovaTextEncodingISOLatin1, buffer, sizeof(buffer), nullptr));
  EXPECT_FALSE(TovaStringGetBytes(text.get(), kTovaTextEncodingRoman, buffer, sizeof(buffer), nullptr));
}

}  // namespace
