#include <gtest/gtest.h>

#include <string>

#include "TableAccess/AncillaryClasses/FTException.h"

namespace {

TEST(Exception, TheDetailedMessageNamesConditionPlaceAndDetail) {
  EXPECT_STREQ(FTException().GetDetailedMessage(), "");
  EXPECT_STREQ(FTException("a == b", 10, "Core/VornFontTest", 723).GetDetailedMessage(),
               "Error 10 (a == b) in file Core/VornFontTest, line 723");
  EXPECT_STREQ(FTException("a == b", -1, "It broke", nullptr, 7).GetDetailedMessage(),
               "Error -1 (a == b) in file , line 7 (It broke)");
}

TEST(Exception, TextsBeyondTheirBuffersAreCut) {
  const std::string endless(5000, 'x');
  const FTException exception(endless.c_str(), -1, endless.c_str(), endless.c_str(), 1);
  EXPECT_EQ(std::string(exception.GetFile()).size(), 1023u);
  EXPECT_EQ(std::string(exception.GetDetailedMessage()).size(), 2047u);
}

TEST(ErrorCodes, EveryCodeHasAText) {
  for (int32_t code = 0; code < kVornFTErrorCodeCount; ++code) {
    const std::string text(Tova::Text(GetUIMessageString(code)));
    EXPECT_FALSE(text.empty() || text.starts_with("kVorn")) << code << ": " << text;
  }
}

}  // namespace
