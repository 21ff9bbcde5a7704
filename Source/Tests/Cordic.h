#pragma once

#include <cstdint>

/// Rotates the vector (length, 0) counter-clockwise by an angle: the outputs, either of which may be null, become
/// length * cos(angle) and length * sin(angle). All values are 16.16, the angle in degrees; results are right to a few
/// units of the last place.
void Cordic(int32_t iLength, int32_t iAngle, int32_t* oX, int32_t* oY);

/// The integer nearest to a 16.16 value; halves are rounded up.
constexpr int32_t Fix2Long(int32_t iValue) { return static_cast<int32_t>((int64_t{iValue} + 0x8000) >> 16); }
