#include <gtest/gtest.h>

#include <Tova/Tova.hpp>
#include <string>
#include <string_view>

namespace {

using std::string_view_literals::operator""sv;

TEST(Strings, OnlyWellFormedUtf8IsAccepted) {
  const struct {
    std::string_view bytes, lossy;
  } cases[] = {{"\x80", "\uFFFD"},
               {"\xC0\xAF", "\uFFFD\uFFFD"},
               {"\xE0\x9F\xBF", "\uFFFD\uFFFD\uFFFD"},
               {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
               {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
               {"ascii text \xE2\x82", "ascii text \uFFFD"},
               {"\xF0\x9F\x98x", "\uFFFDx"}};
  for (const auto& c : cases) {
    EXPECT_FALSE(Tova::MakeString(c.bytes)) << c.lossy;
    const auto lossy = Tova::Adopt(TovaStringCreateWithLossyUTF8(c.bytes.data(), c.bytes.size()));
    EXPECT_EQ(Tova::Text(lossy), c.lossy);
  }
  constexpr auto kLimits = "a\0\u007F\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF"sv;
  EXPECT_EQ(Tova::Text(Tova::MakeString(kLimits)), kLimits);
}

/// Which converter an encoding's number stands for, and what the converters of our own add to those of the library.
TEST(TextEncodings, KnownBytesDecodeAndEncodeBackAndOthersGiveNoText) {
  const struct {
    TovaTextEncoding encoding;
    std::string_view bytes, text;  // no text: the bytes are malformed
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
               {kTovaTextEncodingDOSJapanese, "\x82\xA0\xB1\x87\x40", "\u3042\uFF71\u2460"},
               {kTovaTextEncodingDOSJapanese, "\xFA\x40", "\u2170"},  // 0xEEEF, too
               {kTovaTextEncodingDOSJapanese, "\x82", ""},
               {kTovaTextEncodingDOSSimplifiedChinese, "\x81\x40\xD6\xD0", "\u4E02\u4E2D"},
               {kTovaTextEncodingDOSKorean, "\x81\x41\xC7\xD1", "\uAC02\uD55C"},
               {kTovaTextEncodingDOSTraditionalChinese, "\xA4\xA4", "\u4E2D"},
               {kTovaTextEncodingWindowsKoreanJohab, "\xD0\x65\x8B\x69", "\uD55C\uAE00"},
               {kTovaTextEncodingWindowsKoreanJohab, "\xD0", ""},
               {kTovaTextEncodingUTF16BigEndian, "\0A\0"sv, ""},
               {kTovaTextEncodingUTF16BigEndian, "\xD8\x00\0A"sv, ""},
               {3, "\xC7 ", ""},
               {5, "\x80", ""},
               {8, "text", ""},
               {33, "text", ""}};
  for (const auto& c : cases) {
    const auto* data = reinterpret_cast<const uint8_t*>(c.bytes.data());
    const auto text = Tova::Adopt(TovaStringCreateWithBytes(data, c.bytes.size(), c.encoding));
    ASSERT_EQ(!text, c.text.empty()) << c.encoding;
    if (!text) continue;
    EXPECT_EQ(Tova::Text(text), c.text) << c.encoding;
    uint8_t buffer[32];
    size_t length = 0;
    ASSERT_TRUE(TovaStringGetBytes(text.get(), c.encoding, buffer, sizeof(buffer), &length)) << c.encoding;
    EXPECT_EQ(std::string_view(reinterpret_cast<char*>(buffer), length), c.bytes) << c.encoding;
    EXPECT_FALSE(TovaStringGetBytes(text.get(), c.encoding, buffer, length - 1, &length)) << c.encoding;
  }
}

}  // namespace
