#include <gtest/gtest.h>

#include <Tova/Tova.hpp>
#include <string>

namespace {

void Say(const char* line) { TovaLogLine(Tova::MakeString(line).get()); }

TEST(Log, LinesGoToStandardErrorWithoutWhatDrivesATerminal) {
  testing::internal::CaptureStderr();
  Say("na\xC3\xAFve \x1B[2J\n\x7F \xC2\x9B \xE2\x80\xAE.");
  TovaLogLine(nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "na\xC3\xAFve \\x1b[2J\\x0a\\x7f \\u009b \\u202e.\n");
}

TEST(Log, ASinkTakesTheLinesUntilItIsSetBack) {
  std::string taken;
  TovaLogSetSink([](TovaStringRef line,
                    void* context) { *static_cast<std::string*>(context) += std::string(Tova::Text(line)) + ";"; },
                 &taken);
  testing::internal::CaptureStderr();
  Say("one\x1B");
  Say("two");
  TovaLogSetSink(nullptr, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(taken, "one\x1B;two;");
  testing::internal::CaptureStderr();
  Say("three");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "three\n");
}

}  // namespace
