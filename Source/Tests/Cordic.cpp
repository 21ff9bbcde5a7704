#include "Tests/Cordic.h"

#include <array>
#include <cstddef>

#include "Platform/ByteView.h"

namespace {

// Degrees in 16.16.
constexpr int64_t k45Degrees = 45 << 16;
constexpr int64_t k90Degrees = 90 << 16;
constexpr int64_t k180Degrees = 180 << 16;
constexpr int64_t k360Degrees = 360 << 16;

/// Twice what all the steps together, the first by 45 degrees included, shorten a vector by (0.6072529); 2.30.
constexpr int64_t kDoubleGain = 1304065748;

/// atan(2^-i) for i from 1 on, in units of 2^-25 degree. The last decides nothing, since no step follows it.
constexpr std::array<int32_t, 30> kSteps = {
    891375203, 470978177, 239075877, 120001869, 60059434, 30037045, 15019439, 7509834, 3754931, 1877468,
    938734,    469367,    234684,    117342,    58671,    29335,    14668,    7334,    3667,    1833,
    917,       458,       229,       115,       57,       29,       14,       7,       4,       1};

struct Vector {
  int64_t x;
  int64_t y;
};

/// The vector of this length at an angle from 0 to 90 degrees.
Vector RotateInFirstQuadrant(int64_t iLength, int64_t iAngle) {
  const int64_t tProduct = (iLength * kDoubleGain + (int64_t{1} << 29)) >> 30;
  const int64_t tStart = (tProduct + 1) >> 1;
  Vector tVector = {tStart, tStart};  // at 45 degrees
  int64_t tResidual = (iAngle - k45Degrees) * 512;
  for (int i = 1; i <= static_cast<int>(kSteps.size()); ++i) {
    const int64_t tHalf = int64_t{1} << (i - 1);
    const int64_t tTurn = tResidual < 0 ? -1 : 1;
    const Vector tChange = {(tVector.y + tHalf) >> i, (tVector.x + tHalf) >> i};
    tVector.x -= tTurn * tChange.x;
    tVector.y += tTurn * tChange.y;
    tResidual -= tTurn * kSteps[static_cast<size_t>(i - 1)];
  }
  return tVector;
}

int32_t Cut(int64_t iValue) { return static_cast<int32_t>(Tova::Wrap32(static_cast<uint64_t>(iValue))); }

}  // namespace

void Cordic(int32_t iLength, int32_t iAngle, int32_t* oX, int32_t* oY) {
  int64_t tAngle = iAngle % k360Degrees;
  if (tAngle < 0) tAngle += k360Degrees;
  const bool tBelow = tAngle > k180Degrees;
  if (tBelow) tAngle = k360Degrees - tAngle;
  const bool tLeft = tAngle > k90Degrees;
  if (tLeft) tAngle = k180Degrees - tAngle;
  const Vector tVector = RotateInFirstQuadrant(iLength, tAngle);
  if (oX) *oX = Cut(tLeft ? -tVector.x : tVector.x);
  if (oY) *oY = Cut(tBelow ? -tVector.y : tVector.y);
}
