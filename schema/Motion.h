#pragma once

namespace trelvo::schema {

// The ranges of a motion, in a position estimate and in a satellite fix alike. A NaN is in none.

/// Metres a second.
constexpr bool isSpeed(double value) { return value >= 0.0; }
/// Metres a second.
constexpr bool isSpeedUncertainty(double value) { return value > 0.0; }
/// Degrees.
constexpr bool isCourse(double value) { return value >= -180.0 && value < 180.0; }
/// Degrees.
constexpr bool isCourseUncertainty(double value) { return value > 0.0 && value < 180.0; }

}  // namespace trelvo::schema
