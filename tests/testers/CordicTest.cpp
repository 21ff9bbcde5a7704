#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "Tests/Cordic.h"

namespace {

TEST(Cordic, AgreesWithTheMathLibraryOverTheWholeCircle) {
  constexpr int32_t kOne = 1 << 16;
  const auto expectRotation = [](int32_t length, int32_t angle, double tolerance) {
    int32_t x = 0, y = 0;
    Cordic(length, angle, &x, &y);
    const double radians = static_cast<double>(angle) / kOne * std::numbers::pi / 180;
    ASSERT_NEAR(x, length * std::cos(radians), tolerance) << angle;
    ASSERT_NEAR(y, length * std::sin(radians), tolerance) << angle;
  };
  // Steps of an eighth of a degree, and the angles beside them, those where quadrants meet among them.
  for (int32_t angle = -720 * kOne; angle <= 720 * kOne; angle += kOne / 8) {
    for (const int beside : {-1, 0, 1}) expectRotation(kOne, angle + beside, 12);
  }
  for (const int32_t angle : {INT32_MIN, INT32_MAX}) {
    expectRotation(-100 * kOne, angle, 12);
    expectRotation(INT32_MAX, angle, 24);
  }
}

TEST(Cordic, RoundingTakesHalvesUp) {
  for (const auto& [fixed, rounded] : {std::pair(0x7FFF, 0), {0x8000, 1}, {-0x8000, 0}, {-0x8001, -1}}) {
    EXPECT_EQ(Fix2Long(fixed), rounded) << fixed;
  }
}

}  // namespace
