#pragma once

#include <cmath>

// What several sources of this folder inline: a call costs them a tenth of their time.

namespace trelvo::geometry {

// The ellipsoid serves the local factors, the sphere serves distances; they are not reconciled.
inline constexpr double kSemiMajorAxis = 6378137.0;  // metres
inline constexpr double kFirstEccentricitySquared = 0.006694380004260814;
inline constexpr double kInversePolarFactor = 1.578422502929283e-07;  // 1 / (a * (1 - e^2))

inline constexpr double kPi = 3.141592653589793;
inline constexpr double kHalfPi = 1.5707963267948966;
inline constexpr double kDegreesPerRadian = 57.29577951308232;

struct SinCos {
  double sin;
  double cos;
};

/// Side by side, so that the compiler takes both from one evaluation.
inline SinCos sinCos(double radians) noexcept { return {std::sin(radians), std::cos(radians)}; }

/// How many degrees one metre spans.
struct LocalScale {
  double lonDegreesPerMeter = 0.0;
  double latDegreesPerMeter = 0.0;
};

/// @return false, with zeros in `scale`, at the poles exactly.
inline bool localScale(double latitude, LocalScale& scale) noexcept {
  const double x = latitude * kPi / 180.0;
  if (x == kHalfPi || x == -kHalfPi) {
    scale = {};
    return false;
  }
  const auto [s, c] = sinCos(x);
  const double w = std::sqrt(1.0 - s * (s * kFirstEccentricitySquared));
  scale.lonDegreesPerMeter = w * kDegreesPerRadian * (1.0 / (c * kSemiMajorAxis));
  scale.latDegreesPerMeter = w * w * w * kDegreesPerRadian * kInversePolarFactor;
  return true;
}

/// `longitude` on the side of the date line where `reference` is.
inline double besideReference(double longitude, double reference) noexcept {
  const double difference = longitude - reference;
  if (difference > 180.0) return longitude - 360.0;
  if (difference < -180.0) return longitude + 360.0;
  return longitude;
}

}  // namespace trelvo::geometry
