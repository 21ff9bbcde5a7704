#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "Tests/Cordic.h"

namespace {

constexpr int32_t kOne = 1 << 16;

void ExpectRotation(int32_t length, int64_t angle, double tolerance) {
  int32_t x = 0;
  int32_t y = 0;
  Cordic(length, static_cast<int32_t>(angle), &x, &y);
  const double radians = static_cast<double>(angle) / kOne * std::numbers::pi / 180;
  ASSERT_NEAR(x, length * std::cos(radians), tolerance) << angle;
  ASSERT_NEAR(y, length * std::sin(radians), tolerance) << angle;
}

TEST(Cordic, AgreesWithTheMathLibraryOverTheWholeCircle) {
  // Steps of a sixteenth of a degree, and the angles beside the ones where quadrants meet.
  for (int64_t angle = -720 * kOne; angle <= 720 * kOne; angle += kOne / 16) ExpectRotation(kOne, angle, 12);
  for (int64_t corner = -360; corner <= 360; corner += 45) {
    for (const int64_t beside : {-1, 1}) ExpectRotation(kOne, corner * kOne + beside, 12);
  }
  for (const int64_t angle : {std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()}) {
    ExpectRotation(kOne, angle, 12);
    ExpectRotation(-100 * kOne, angle, 12);
    ExpectRotation(std::numeric_limits<int32_t>::max(), angle, 24);
  }
}

TEST(Cordic, RoundingTakesHalvesUp) {
  EXPECT_EQ(Fix2Long(0x7FFF), 0);
  EXPECT_EQ(Fix2Long(0x8000), 1);
  EXPECT_EQ(Fix2Long(-0x8000), 0);
  EXPECT_EQ(Fix2Long(-0x8001), -1);
}

}  // namespace
